// A scripted HTTP peer on loopback; see loopback_server.h.
#include "loopback_server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr size_t kMaxRequestBytes = 64 * 1024;
constexpr int kRequestTimeoutMs = 5000;
constexpr size_t kMaxHeld = 64;
constexpr size_t kSendChunk = 256 * 1024;

using Clock = std::chrono::steady_clock;

int msLeft(Clock::time_point deadline) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

// True when the peer has closed (or reset) its side of `fd`.
bool peerClosed(int fd) {
    char byte;
    ssize_t n = recv(fd, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    if (n == 0) return true;
    return n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR;
}

} // namespace

ScriptedReply ScriptedReply::status(int code, const std::string& reason, const std::string& fields,
                                    const std::string& body) {
    ScriptedReply reply;
    reply.head = "HTTP/1.1 " + std::to_string(code) + " " + reason + "\r\n" + fields + "\r\n";
    reply.body = body;
    return reply;
}

ScriptedReply ScriptedReply::ok(const std::string& body) {
    return status(200, "OK", "Content-Length: " + std::to_string(body.size()) + "\r\n", body);
}

ScriptedReply ScriptedReply::redirect(int code, const std::string& location) {
    return status(code, "Moved", "Location: " + location + "\r\nContent-Length: 0\r\n");
}

bool RecordedRequest::header(const std::string& name, std::string* value) const {
    const std::string prefix = "\r\n" + name + ":";
    size_t at = raw.find(prefix);
    if (at == std::string::npos) return false;
    size_t start = at + prefix.size();
    if (start < raw.size() && raw[start] == ' ') ++start;
    size_t end = raw.find("\r\n", start);
    if (value)
        *value = raw.substr(start, end == std::string::npos ? std::string::npos : end - start);
    return true;
}

LoopbackServer::LoopbackServer() {
    if (pipe2(stopPipe, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    listenFd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t length = sizeof address;
    if (listenFd < 0 ||
        bind(listenFd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listenFd, 64) != 0 ||
        getsockname(listenFd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        if (listenFd >= 0) close(listenFd);
        close(stopPipe[0]);
        close(stopPipe[1]);
        throw std::runtime_error("cannot listen on 127.0.0.1");
    }
    listenPort = ntohs(address.sin_port);
    worker = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
    stop();
}

void LoopbackServer::stop() {
    if (!worker.joinable()) return;
    char byte = 1;
    ssize_t written = write(stopPipe[1], &byte, 1);
    (void)written;
    worker.join();
    std::lock_guard<std::mutex> lock(mutex);
    for (int fd : held)
        close(fd);
    held.clear();
    close(listenFd);
    close(stopPipe[0]);
    close(stopPipe[1]);
}

std::string LoopbackServer::hostPort() const {
    return "127.0.0.1:" + std::to_string(listenPort);
}

std::string LoopbackServer::url(const std::string& target) const {
    return "http://" + hostPort() + target;
}

void LoopbackServer::onPath(const std::string& target, const ScriptedReply& reply) {
    std::lock_guard<std::mutex> lock(mutex);
    byTarget[target] = std::make_shared<const ScriptedReply>(reply);
}

void LoopbackServer::enqueue(const ScriptedReply& reply) {
    std::lock_guard<std::mutex> lock(mutex);
    queue.push_back(std::make_shared<const ScriptedReply>(reply));
}

std::vector<RecordedRequest> LoopbackServer::requests() const {
    std::lock_guard<std::mutex> lock(mutex);
    return received;
}

size_t LoopbackServer::requestCount() const {
    std::lock_guard<std::mutex> lock(mutex);
    return received.size();
}

bool LoopbackServer::waitForRequests(size_t count, int timeoutMs) const {
    std::unique_lock<std::mutex> lock(mutex);
    return arrived.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                            [&] { return received.size() >= count; });
}

int LoopbackServer::openHeldConnections() const {
    std::lock_guard<std::mutex> lock(mutex);
    return countOpenHeld();
}

int LoopbackServer::countOpenHeld() const {
    int open = 0;
    for (int fd : held)
        open += peerClosed(fd) ? 0 : 1;
    return open;
}

void LoopbackServer::serve() {
    for (;;) {
        pollfd watch[2] = {{listenFd, POLLIN, 0}, {stopPipe[0], POLLIN, 0}};
        if (poll(watch, 2, -1) < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (watch[1].revents) return;
        if (!(watch[0].revents & POLLIN)) continue;
        int fd = accept4(listenFd, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd >= 0) handle(fd);
    }
}

bool LoopbackServer::pause(int ms) {
    if (ms <= 0) return true;
    pollfd watch{stopPipe[0], POLLIN, 0};
    const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
        int ready = poll(&watch, 1, msLeft(deadline));
        if (ready > 0) return false;
        if (ready == 0) return true;
        if (errno != EINTR) return false;
    }
}

bool LoopbackServer::readRequest(int fd, std::string* raw) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(kRequestTimeoutMs);
    char chunk[4096];
    while (raw->find("\r\n\r\n") == std::string::npos && raw->size() < kMaxRequestBytes) {
        pollfd watch[2] = {{fd, POLLIN, 0}, {stopPipe[0], POLLIN, 0}};
        int ready = poll(watch, 2, msLeft(deadline));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0 || watch[1].revents) return false;
        ssize_t n = recv(fd, chunk, sizeof chunk, 0);
        if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (n <= 0) break;
        raw->append(chunk, static_cast<size_t>(n));
    }
    size_t end = raw->find("\r\n\r\n");
    if (end != std::string::npos) raw->resize(end + 4);
    return !raw->empty();
}

bool LoopbackServer::sendAll(int fd, const char* data, size_t length) {
    size_t sent = 0;
    while (sent < length) {
        pollfd watch[2] = {{fd, POLLOUT, 0}, {stopPipe[0], POLLIN, 0}};
        int ready = poll(watch, 2, -1);
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0 || watch[1].revents) return false;
        size_t piece = std::min(length - sent, kSendChunk);
        ssize_t n = send(fd, data + sent, piece, MSG_NOSIGNAL);
        if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (n <= 0) return false;
        sent += static_cast<size_t>(n);
    }
    return true;
}

std::shared_ptr<const ScriptedReply> LoopbackServer::pickReply(const std::string& target) {
    std::lock_guard<std::mutex> lock(mutex);
    auto exact = byTarget.find(target);
    if (exact != byTarget.end()) return exact->second;
    auto byPath = byTarget.find(target.substr(0, target.find('?')));
    if (byPath != byTarget.end()) return byPath->second;
    if (!queue.empty()) {
        auto next = queue.front();
        queue.pop_front();
        return next;
    }
    return std::make_shared<const ScriptedReply>(
        ScriptedReply::status(404, "Not Found", "Content-Length: 0\r\n"));
}

void LoopbackServer::handle(int fd) {
    RecordedRequest request;
    if (!readRequest(fd, &request.raw)) {
        close(fd);
        return;
    }
    request.requestLine = request.raw.substr(0, request.raw.find("\r\n"));
    size_t firstBlank = request.requestLine.find(' ');
    size_t secondBlank = request.requestLine.find(' ', firstBlank + 1);
    if (firstBlank != std::string::npos) {
        request.target = request.requestLine.substr(
            firstBlank + 1,
            secondBlank == std::string::npos ? std::string::npos : secondBlank - firstBlank - 1);
    }
    {
        std::lock_guard<std::mutex> lock(mutex);
        request.earlierConnectionsOpen = countOpenHeld();
        received.push_back(request);
    }
    arrived.notify_all();

    std::shared_ptr<const ScriptedReply> picked = pickReply(request.target);
    const ScriptedReply& reply = *picked;
    size_t bodyBytes = std::min(reply.bodyBytesBeforeClose, reply.body.size());
    bool sent = pause(reply.delayBeforeHeadMs) &&
                sendAll(fd, reply.head.data(), reply.head.size()) &&
                pause(reply.delayBeforeBodyMs) && sendAll(fd, reply.body.data(), bodyBytes);
    if (!sent || !reply.holdOpen) {
        close(fd);
        return;
    }
    std::lock_guard<std::mutex> lock(mutex);
    held.push_back(fd);
    if (held.size() > kMaxHeld) {
        close(held.front());
        held.pop_front();
    }
}
