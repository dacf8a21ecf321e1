// File helpers for the settings files and the library scan: an owner for a
// file descriptor, a streaming line reader with a bound on what one line may
// cost, bounded reads of small files, safe whole-file replacement and folder
// creation without a shell.
//
// Threads: any thread; the objects are not shared between threads.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

// Owns one open file descriptor; closes it quietly when destroyed.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : fd(fd) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor&& other) noexcept : fd(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return fd; }
    bool isOpen() const { return fd >= 0; }
    int release();
    void reset();

  private:
    int fd = -1;
};

FileDescriptor openForReading(const char* path);
// True when `path` names a file or folder that opens for reading.
bool canOpenForReading(const char* path);

// Reads a file as a stream of lines with a fixed-size buffer, so memory stays
// the same whatever the file's size. A line ends at "\n"; the "\n", and a
// "\r" just before it, are not part of it; a last line without "\n" still
// counts. A line longer than `maxLine` bytes is cut to its first `maxLine`
// bytes (truncated() then says so) and the rest of it is skipped, so the next
// line always starts at the right place.
class LineReader {
  public:
    static constexpr size_t kDefaultMaxLine = 1 << 20;

    explicit LineReader(const char* path, size_t maxLine = kDefaultMaxLine);
    bool isOpen() const { return file.isOpen(); }

    // The next line, valid until the following call; false at the end of the
    // file or on a read error.
    [[nodiscard]] bool next(std::string_view* line);
    bool truncated() const { return cut; }

  private:
    bool refill();
    void keep(const char* data, size_t size);

    FileDescriptor file;
    size_t maxLine;
    std::vector<char> buffer;
    size_t begin = 0;
    size_t end = 0;
    bool atEnd = false;
    std::string pending; // a line that spans buffer refills
    bool cut = false;
};

// Reads at most `limit` bytes from the start of the file into `out`. False
// when the file does not open; a shorter file gives what it holds.
[[nodiscard]] bool readFilePrefix(const char* path, size_t limit, std::string* out);

// Writes `size` bytes to a new file beside `path` (named `path` plus "."
// and six letters or digits) with permissions `mode`, flushes it and renames
// it over `path`, so that a reader or a crash sees the old file or the new
// one, never a mixture. False, errno saying why, and no file left behind
// when any step fails.
[[nodiscard]] bool replaceFile(const char* path, const void* data, size_t size, mode_t mode);
[[nodiscard]] bool replaceFile(const char* path, const std::string& text, mode_t mode);

// The write(2) behind replaceFile: a seam so that tests can make a disk
// full (ENOSPC) or failing (EIO). Set it only while no save runs.
using FileWriteCall = ssize_t (*)(int fd, const void* data, size_t size);
extern FileWriteCall fileWriteCall;

// Permissions of ordinary settings files and of secret ones.
constexpr mode_t kSettingsFileMode = 0644;
constexpr mode_t kSecretFileMode = 0600;

// Creates the folder `path` and any missing parents (mode 0755). True when
// the folder exists afterwards.
bool makeFolders(const std::string& path);
