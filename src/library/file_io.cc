#include "library/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t kReadChunk = 1 << 16;

ssize_t readRetrying(int fd, void* data, size_t size) {
    ssize_t n;
    do {
        n = read(fd, data, size);
    } while (n < 0 && errno == EINTR);
    return n;
}

bool writeAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        ssize_t n = fileWriteCall(fd, data, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        size -= static_cast<size_t>(n);
    }
    return true;
}

} // namespace

FileWriteCall fileWriteCall = ::write;

FileDescriptor::~FileDescriptor() { reset(); }

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        reset();
        fd = other.release();
    }
    return *this;
}

int FileDescriptor::release() {
    int kept = fd;
    fd = -1;
    return kept;
}

void FileDescriptor::reset() {
    // close is not retried on EINTR: on Linux the descriptor is gone anyway.
    if (fd >= 0) ::close(fd);
    fd = -1;
}

FileDescriptor openForReading(const char* path) {
    if (!path || !*path) return FileDescriptor();
    int fd;
    do {
        fd = ::open(path, O_RDONLY | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    return FileDescriptor(fd);
}

bool canOpenForReading(const char* path) { return openForReading(path).isOpen(); }

LineReader::LineReader(const char* path, size_t maxLine)
    : file(openForReading(path)), maxLine(maxLine), buffer(kReadChunk) {}

bool LineReader::refill() {
    if (atEnd || !file.isOpen()) return false;
    ssize_t n = readRetrying(file.get(), buffer.data(), buffer.size());
    if (n <= 0) {
        atEnd = true;
        return false;
    }
    begin = 0;
    end = static_cast<size_t>(n);
    return true;
}

void LineReader::keep(const char* data, size_t size) {
    size_t room = maxLine - pending.size();
    if (size > room) {
        cut = true;
        size = room;
    }
    pending.append(data, size);
}

bool LineReader::next(std::string_view* line) {
    pending.clear();
    cut = false;
    bool started = false;
    for (;;) {
        if (begin == end && !refill()) {
            if (!started) return false;
            break; // last line without a line feed
        }
        const char* from = buffer.data() + begin;
        const char* newline = static_cast<const char*>(memchr(from, '\n', end - begin));
        if (!newline) {
            keep(from, end - begin);
            begin = end;
            started = true;
            continue;
        }
        size_t length = static_cast<size_t>(newline - from);
        begin += length + 1;
        if (!started && length <= maxLine) {
            // The common case: the whole line lies in the buffer.
            if (length > 0 && from[length - 1] == '\r') --length;
            *line = std::string_view(from, length);
            return true;
        }
        keep(from, length);
        break;
    }
    if (!cut && !pending.empty() && pending.back() == '\r') pending.pop_back();
    *line = pending;
    return true;
}

bool readFilePrefix(const char* path, size_t limit, std::string* out) {
    FileDescriptor file = openForReading(path);
    if (!file.isOpen()) return false;
    out->assign(limit, '\0');
    size_t filled = 0;
    while (filled < limit) {
        ssize_t n = readRetrying(file.get(), &(*out)[filled], limit - filled);
        if (n <= 0) break;
        filled += static_cast<size_t>(n);
    }
    out->resize(filled);
    return true;
}

bool replaceFile(const char* path, const void* data, size_t size, mode_t mode) {
    if (!path || !*path) return false;
    std::string temporary = std::string(path) + ".XXXXXX";
    int fd = mkostemp(&temporary[0], O_CLOEXEC);
    if (fd < 0) return false;
    FileDescriptor file(fd);
    errno = 0;
    bool written = fchmod(fd, mode) == 0 &&
                   writeAll(fd, static_cast<const char*>(data), size) && fsync(fd) == 0;
    int failure = written ? 0 : (errno != 0 ? errno : EIO);
    file.reset();
    if (written && rename(temporary.c_str(), path) == 0) return true;
    if (written) failure = errno;
    unlink(temporary.c_str());
    errno = failure;
    return false;
}

bool replaceFile(const char* path, const std::string& text, mode_t mode) {
    return replaceFile(path, text.data(), text.size(), mode);
}

bool makeFolders(const std::string& path) {
    struct stat info {};
    if (path.empty()) return false;
    if (stat(path.c_str(), &info) == 0) return S_ISDIR(info.st_mode);
    size_t slash = path.find_last_of('/', path.size() > 1 ? path.size() - 2 : 0);
    if (slash != std::string::npos && slash > 0) makeFolders(path.substr(0, slash));
    if (mkdir(path.c_str(), 0755) == 0 || errno == EEXIST)
        return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    return false;
}
