// Pieces the HTTP client's files share and nothing else needs: the owner of
// a socket descriptor, the wait for readability, and the setters of the
// error state.
//
// Threads: as the client itself: the thread running a fetch.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "net/http_fetch.h"
#include "net/page_buffer.h"

namespace http_internal {

// Move-only owner of a socket descriptor; closes it quietly on destruction
// (a failed close is not retried: the descriptor is gone either way).
class UniqueSocket {
  public:
    UniqueSocket() = default;
    explicit UniqueSocket(int fd) : fd(fd) {}
    ~UniqueSocket() { close(); }
    UniqueSocket(const UniqueSocket&) = delete;
    UniqueSocket& operator=(const UniqueSocket&) = delete;
    UniqueSocket(UniqueSocket&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
    UniqueSocket& operator=(UniqueSocket&& other) noexcept {
        if (this != &other) {
            close();
            fd = std::exchange(other.fd, -1);
        }
        return *this;
    }

    int get() const { return fd; }
    bool valid() const { return fd >= 0; }
    // Gives up ownership: the caller closes the descriptor.
    int release() { return std::exchange(fd, -1); }
    void close() {
        if (fd >= 0) my_closesocket(std::exchange(fd, -1));
    }

  private:
    int fd = -1;
};

enum class Wait { Ready, TimedOut, Failed, Cancelled };

// Waits until `fd` can be read (or has been closed by the peer) for at most
// `seconds`; negative waits for ever. Failed leaves the reason in errno.
Wait waitReadable(int fd, int seconds);
Wait waitWritable(int fd, int seconds);
// True once the installed cancel signal asks the fetch to stop.
bool cancelled();

// One response read from a connected descriptor: the header, judged, and
// for a final answer the body (kept in *body when `keep`, else counted).
// Redirect: *location holds the new URL. Failed: the error state says why.
// Separate from the connection so that it can be fed any bytes (fuzz/).
enum class Next { Final, Redirect, Failed };
Next readResponse(int fd, int redirects, std::string* location, bool keep, PageBuffer* body,
                  size_t* total);

// Error state setters. failSystem keeps errno so that the cleanup that
// follows a failure (closing sockets) cannot change the reported reason.
void failClient(int index, int number = 0);
void failSystem();
void failSystem(int errnoValue);
void failResolver(int resolverError);
// Puts the kept errno back; http_fetch calls it after its owners have run.
void restoreSystemErrno();

} // namespace http_internal
