// LoopbackServer: a scripted HTTP peer on 127.0.0.1 and an ephemeral port,
// for tests and benchmarks that play the service host or a concert site.
//
// It answers one connection at a time on its own thread with raw bytes the
// test wrote (so it can send broken headers, stall, or hang up mid-body),
// and records every request it receives so tests can check the request line
// and header fields. Replies are picked by request target (exact, then the
// path without its query), else taken in order from a queue, else a 404.
//
// Bounds: a request header is read up to 64 KiB and 5 seconds; at most 64
// connections are held open at once (the oldest is closed first); every wait
// also watches the stop signal, so stop() and the destructor return
// promptly even in the middle of a delay or a large body.
//
// Threads: every public member may be called from any thread. Never reaches
// an address outside 127.0.0.1.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct ScriptedReply {
    std::string head; // status line and header fields with their empty line, sent as is
    std::string body;
    int delayBeforeHeadMs = 0;
    int delayBeforeBodyMs = 0;
    // Early close: only this many body bytes are sent, then the connection closes.
    size_t bodyBytesBeforeClose = std::string::npos;
    // Keep the connection after sending until the client closes it or the
    // server stops (a client waiting for more then times out).
    bool holdOpen = false;

    // "HTTP/1.1 <code> <reason>", `fields` (each ending in "\r\n"), the empty line.
    static ScriptedReply status(int code, const std::string& reason, const std::string& fields = "",
                                const std::string& body = "");
    // 200 with a Content-Length that matches `body`.
    static ScriptedReply ok(const std::string& body);
    // A redirect with the given Location value.
    static ScriptedReply redirect(int code, const std::string& location);
};

struct RecordedRequest {
    std::string raw;         // every byte received, up to and including the empty line
    std::string requestLine; // first line, without its line break
    std::string target;      // the request target: "/path?query"
    // Connections held open by earlier replies that the client had not yet
    // closed when this request arrived.
    int earlierConnectionsOpen = 0;

    // True and *value set when a line "name: value" (exact name) is present.
    bool header(const std::string& name, std::string* value = nullptr) const;
};

class LoopbackServer {
  public:
    LoopbackServer(); // listening and serving when it returns
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    int port() const { return listenPort; }
    std::string hostPort() const; // "127.0.0.1:<port>"
    std::string url(const std::string& target = "/") const;

    void onPath(const std::string& target, const ScriptedReply& reply);
    void enqueue(const ScriptedReply& reply);

    std::vector<RecordedRequest> requests() const;
    size_t requestCount() const;
    // Waits until `count` requests arrived or `timeoutMs` passed.
    bool waitForRequests(size_t count, int timeoutMs) const;
    // Held connections the client has not closed yet.
    int openHeldConnections() const;

    void stop();

  private:
    void serve();
    void handle(int fd);
    bool readRequest(int fd, std::string* raw);
    // Shared, not copied: a reply may hold a body of many megabytes.
    std::shared_ptr<const ScriptedReply> pickReply(const std::string& target);
    bool pause(int ms);                                    // false when stopping
    bool sendAll(int fd, const char* data, size_t length); // false on failure or stop
    int countOpenHeld() const;                             // caller holds `mutex`

    int listenFd = -1;
    int listenPort = 0;
    int stopPipe[2] = {-1, -1};
    std::thread worker;

    mutable std::mutex mutex;
    mutable std::condition_variable arrived;
    std::map<std::string, std::shared_ptr<const ScriptedReply>> byTarget;
    std::deque<std::shared_ptr<const ScriptedReply>> queue;
    std::vector<RecordedRequest> received;
    std::deque<int> held;
};
