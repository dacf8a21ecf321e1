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

#include "net/http_fetch_internal.h"

namespace http_internal {

namespace {

using Clock = std::chrono::steady_clock;

// poll() for `events` within `seconds` (negative: no limit), restarting
// after signals with the time that is left.
Wait waitFor(int fd, short events, int seconds) {
    const auto deadline = Clock::now() + std::chrono::seconds(seconds < 0 ? 0 : seconds);
    for (;;) {
        int waitMs = -1;
        if (seconds >= 0) {
            auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            waitMs = left.count() > 0 ? static_cast<int>(left.count()) : 0;
        }
        pollfd entry{fd, events, 0};
        int ready = poll(&entry, 1, waitMs);
        if (ready > 0) return Wait::Ready;
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
        if (waited != Wait::Ready) return false;
        int pending = 0;
        socklen_t size = sizeof pending;
        if (getsockopt(fd, SOL_SOCKET, SO_ERROR, &pending, &size) != 0) return false;
        if (pending != 0) {
            errno = pending;
            return false;
        }
    }
    int flags = fcntl(fd, F_GETFL);
    return flags >= 0 && fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) == 0;
}

} // namespace

Wait waitReadable(int fd, int seconds) {
    return waitFor(fd, POLLIN, seconds);
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
