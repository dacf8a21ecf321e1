#include "library/library_reader.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "library/key_text_filter.h"

LibraryReader::LibraryReader(const char* path) : file(openForReading(path)), buffer(kMaxLine) {}

bool LibraryReader::refill() {
    if (atEnd || !file.isOpen()) {
        atEnd = true;
        return false;
    }
    if (begin > 0) {
        memmove(buffer.data(), buffer.data() + begin, end - begin);
        end -= begin;
        begin = 0;
    }
    if (end == buffer.size()) return true; // full: the caller cuts the line
    ssize_t n;
    do {
        n = read(file.get(), buffer.data() + end, buffer.size() - end);
    } while (n < 0 && errno == EINTR);
    if (n <= 0) {
        atEnd = true;
        return false;
    }
    end += static_cast<size_t>(n);
    return true;
}

bool LibraryReader::give(std::string_view* line, size_t from, size_t to) {
    if (to > from && buffer[to - 1] == '\r') --to;
    *line = std::string_view(buffer.data() + from, to - from);
    return true;
}

bool LibraryReader::next(std::string_view* line, bool keyLinesOnly) {
    for (;;) {
        const char* data = buffer.data();
        if (skipping) {
            const void* newline = memchr(data + begin, '\n', end - begin);
            if (newline) {
                begin = static_cast<size_t>(static_cast<const char*>(newline) - data) + 1;
                skipping = false;
            } else {
                begin = end;
                if (!refill()) return false;
                continue;
            }
        }
        std::string_view unread(data + begin, end - begin);
        bool full = begin == 0 && end == buffer.size();

        size_t lineStart = 0; // from `begin`
        size_t searchFrom = 0;
        if (keyLinesOnly) {
            size_t at = findKeyTextStart(unread);
            if (at == std::string_view::npos) {
                // No key text fits on any whole line here: keep only the
                // last, unfinished line (already searched as far as a key
                // text could fit in it).
                if (atEnd) return false;
                const void* lastNewline = memrchr(unread.data(), '\n', unread.size());
                if (lastNewline) {
                    begin += static_cast<size_t>(static_cast<const char*>(lastNewline) -
                                                 unread.data()) + 1;
                } else if (full) {
                    begin = end; // a cut line without a key text: skip all of it
                    skipping = true;
                    continue;
                }
                refill();
                continue;
            }
            const void* before = memrchr(unread.data(), '\n', at);
            if (before)
                lineStart = static_cast<size_t>(static_cast<const char*>(before) - unread.data()) + 1;
            searchFrom = at;
        }

        const void* newline = memchr(unread.data() + searchFrom, '\n', unread.size() - searchFrom);
        if (newline) {
            size_t lineEnd = static_cast<size_t>(static_cast<const char*>(newline) - data);
            size_t from = begin + lineStart;
            begin = lineEnd + 1;
            return give(line, from, lineEnd);
        }
        if (atEnd) {
            if (lineStart == unread.size()) return false;
            size_t from = begin + lineStart;
            begin = end;
            return give(line, from, end);
        }
        if (full) {
            // Longer than the buffer: the first kMaxLine bytes are the line.
            *line = unread;
            begin = end;
            skipping = true;
            return true;
        }
        begin += lineStart;
        refill();
    }
}
