// PageBuffer: owner of one downloaded page, a malloc'd, NUL-terminated block
// of bytes. The HTTP client grows its body buffer in one of these and hands
// the block to its caller; the engine keeps the last page it fetched in one
// (CalGetData::fetchBuffer), so a new download replaces the old page instead
// of leaking it.
//
// Threads: none of its own; whoever holds the internet lock owns the page.
#pragma once

#include <cstddef>
#include <cstdlib>

class PageBuffer {
  public:
    PageBuffer() = default;
    ~PageBuffer() { free(data); }
    PageBuffer(const PageBuffer&) = delete;
    PageBuffer& operator=(const PageBuffer&) = delete;
    PageBuffer(PageBuffer&& other) noexcept : data(other.data), length(other.length) {
        other.data = nullptr;
        other.length = 0;
    }
    PageBuffer& operator=(PageBuffer&& other) noexcept {
        if (this != &other) {
            adopt(other.data, other.length);
            other.data = nullptr;
            other.length = 0;
        }
        return *this;
    }

    // The page as text: never null ("" when nothing was fetched), always
    // NUL-terminated. Binary pages may hold NULs before size().
    const char* get() const { return data ? data : ""; }
    char* mutableData() { return data; }
    size_t size() const { return length; }
    bool empty() const { return length == 0; }

    // Takes ownership of a malloc'd block of `size` bytes plus a NUL; frees
    // the page held before.
    void adopt(char* block, size_t size) {
        if (block != data) free(data);
        data = block;
        length = size;
    }
    // Hands the block to the caller (who must free it) and forgets it.
    char* release() {
        char* block = data;
        data = nullptr;
        length = 0;
        return block;
    }
    void reset() { adopt(nullptr, 0); }

    // Makes room for `capacity` bytes, keeping the first size() bytes; the
    // size is left alone. False (and the page unchanged) when out of memory.
    [[nodiscard]] bool reserve(size_t capacity) {
        char* grown = static_cast<char*>(realloc(data, capacity ? capacity : 1));
        if (!grown) return false;
        data = grown;
        return true;
    }
    // Declares the first `size` bytes valid; the caller has made room.
    void setSize(size_t size) { length = size; }

  private:
    char* data = nullptr;
    size_t length = 0;
};
