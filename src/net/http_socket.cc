// The HTTP client's socket layer: connecting to "host[:port]" and the thin
// read, write, close and wait calls on the descriptor. Waits use poll, so a
// descriptor number above FD_SETSIZE is no danger.
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include "net/fetch_cancel.h"
#include "net/http_fetch_internal.h"

const FetchCancel* http_cancel = nullptr;

void http_setCancel(const FetchCancel* cancel) {
    http_cancel = cancel;
}

namespace http_internal {

namespace {

using Clock = std::chrono::steady_clock;

// poll() for `events` within `seconds` (negative: no limit), restarting
// after signals with the time that is left. The cancel signal's descriptor
// is watched beside the socket: a stop request ends the wait at once.
Wait waitFor(int fd, short events, int seconds) {
    const FetchCancel* cancel = http_cancel;
    if (cancel && cancel->requested()) return Wait::Cancelled;
    const auto deadline = Clock::now() + std::chrono::seconds(seconds < 0 ? 0 : seconds);
    for (;;) {
        int waitMs = -1;
        if (seconds >= 0) {
            auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            waitMs = left.count() > 0 ? static_cast<int>(left.count()) : 0;
        }
        pollfd entries[2] = {{fd, events, 0}, {cancel ? cancel->wakeFd() : -1, POLLIN, 0}};
        int ready = poll(entries, 2, waitMs);
        if (cancel && cancel->requested()) return Wait::Cancelled;
        if (ready > 0 && entries[0].revents != 0) return Wait::Ready;
        if (ready > 0) continue; // a stale wake-up: the flag is clear again
        if (ready == 0) return Wait::TimedOut;
        if (errno != EINTR) return Wait::Failed;
    }
}

int resolverErrorFor(int gaiError) {
    switch (gaiError) {
    case EAI_AGAIN:
        return TRY_AGAIN;
    case EAI_NONAME:
#ifdef EAI_NODATA
    case EAI_NODATA:
#endif
        return HOST_NOT_FOUND;
    default:
        return NO_RECOVERY;
    }
}

// Connects the non-blocking socket within `seconds`, then makes it blocking
// again: a host that never answers must not hang the update thread.
bool connectWithin(int fd, const sockaddr* address, socklen_t length, int seconds) {
    if (connect(fd, address, length) != 0) {
        if (errno != EINPROGRESS) return false;
        Wait waited = waitFor(fd, POLLOUT, seconds);
        if (waited == Wait::TimedOut) errno = ETIMEDOUT;
        if (waited == Wait::Cancelled) errno = ECANCELED;
        if (waited != Wait::Ready) return false;
        int pending = 0;
        socklen_t size = sizeof pending;
        if (getsockopt(fd, SOL_SOCKET, SO_ERROR, &pending, &size) != 0) return false;
        if (pending != 0) {
            errno = pending;
            return false;
        }
    }
    // The socket stays non-blocking: every read and write is preceded by a
    // wait that also watches the cancel signal.
    return true;
}

} // namespace

Wait waitReadable(int fd, int seconds) {
    return waitFor(fd, POLLIN, seconds);
}

Wait waitWritable(int fd, int seconds) {
    return waitFor(fd, POLLOUT, seconds);
}

bool cancelled() {
    return http_cancel && http_cancel->requested();
}

} // namespace http_internal

using http_internal::UniqueSocket;

int makeSocket(const char* hostText) {
    std::string host = hostText ? hostText : "";
    int port = 80;
    size_t colon = host.find(':');
    if (colon != std::string::npos) {
        port = atoi(host.c_str() + colon + 1);
        host.resize(colon);
    }
    if (host.empty()) {
        http_internal::failResolver(HOST_NOT_FOUND);
        return -1;
    }
    if (port < 1 || port > 65535) {
        http_internal::failSystem(EINVAL);
        return -1;
    }

    if (http_internal::cancelled()) {
        http_internal::failSystem(ECANCELED);
        return -1;
    }
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    int gaiError = getaddrinfo(host.c_str(), nullptr, &hints, &found);
    if (gaiError != 0 || !found) {
        if (gaiError == EAI_SYSTEM) {
            http_internal::failSystem();
        } else {
            http_internal::failResolver(http_internal::resolverErrorFor(gaiError));
        }
        if (found) freeaddrinfo(found);
        return -1;
    }
    sockaddr_storage address{};
    socklen_t length = found->ai_addrlen;
    memcpy(&address, found->ai_addr, length);
    int family = found->ai_family;
    freeaddrinfo(found);
    if (http_internal::cancelled()) {
        http_internal::failSystem(ECANCELED);
        return -1;
    }
    reinterpret_cast<sockaddr_in*>(&address)->sin_port = htons(static_cast<uint16_t>(port));

    UniqueSocket socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.valid() ||
        !http_internal::connectWithin(socket.get(), reinterpret_cast<sockaddr*>(&address), length,
                                      timeout)) {
        http_internal::failSystem();
        return -1;
    }
    return socket.release();
}

long my_readsocket(int fd, void* buffer, size_t length) {
    return read(fd, buffer, length);
}

long my_writesocket(int fd, const void* buffer, size_t length) {
    return send(fd, buffer, length, MSG_NOSIGNAL);
}

int my_closesocket(int fd) {
    return close(fd);
}
