// stagebeacon-service's HTTP front: one cpp-httplib server whose requests
// are dispatched by exact path through a table of handlers (no per-request
// regular expressions), with bounded request sizes and error replies the
// plug-in can read.
//
// Thread contract: construct, start and stop from one controlling thread;
// handlers run on the server's worker threads, at most `threads` at once,
// and share only the Storage (itself thread-safe) and read-only settings.
#pragma once

#include "passwords.h"
#include "query.h"
#include "reply_cache.h"
#include "storage.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace service {

struct ServiceConfig {
    std::string host = "127.0.0.1";
    int port = 8470;              // 0 picks a free port
    std::string publicUrl;        // empty: "http://host:port" as bound
    int threads = 32;             // worker threads: open connections served at once
    std::string currentVersion = "2.9";
    // Where a loopback client is placed when no address range matches it:
    // country, region, city.
    std::string loopbackCountry = "UNITED STATES";
    std::string loopbackRegion = "MASSACHUSETTS";
    std::string loopbackCity = "BOSTON";
    PasswordLimits passwordLimits = PasswordLimits::interactive();
    // How long catalogue replies are reused (0 turns that off).
    int cacheMilliseconds = 1000;
};

using Handler = std::function<void(const httplib::Request&, httplib::Response&)>;
using RouteTable = std::unordered_map<std::string, Handler>;

// What the route files need; built once per Service.
struct RouteContext {
    Storage& storage;
    const ServiceConfig& config;
    std::string publicUrl;
    ReplyCache& cache;
};

void addCatalogRoutes(RouteTable& routes, const RouteContext& context);
void addPageRoutes(RouteTable& routes, const RouteContext& context);
void addAccountRoutes(RouteTable& routes, const RouteContext& context);

class Service {
public:
    Service(Storage& storage, ServiceConfig config);
    ~Service(); // stops and joins
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    // Binds the listening socket; false when the address cannot be bound.
    [[nodiscard]] bool bind();
    int port() const { return port_; }
    const std::string& publicUrl() const { return context_->publicUrl; }
    // Serves until stop(); blocks the calling thread.
    void run();
    // True from the start of run() until it returns.
    bool isServing() const { return serving_; }
    // bind() then serve on a thread of the Service's own (tests).
    [[nodiscard]] bool start();
    // Ends serving and joins start()'s thread; callable from any thread.
    // A run() that has not begun yet is not stopped: wait for isServing().
    void stop();

private:
    void dispatch(const httplib::Request& request, httplib::Response& response);

    Storage& storage_;
    ServiceConfig config_;
    ReplyCache cache_;
    std::unique_ptr<RouteContext> context_;
    RouteTable routes_;
    std::unique_ptr<httplib::Server> server_;
    std::thread thread_;
    int port_ = 0;
    int listenSocket_ = -1;
    std::atomic<bool> serving_{false};
};

// Helpers for route files.
void reply(httplib::Response& response, const std::string& body,
           const char* type = "text/plain; charset=ISO-8859-1");
void replyError(httplib::Response& response, int status, const std::string& message);
void redirect(httplib::Response& response, const std::string& location);
// Parses the request's query with the keys the route requires and those it
// may also receive (every key the plug-in sends must be named, or its piece
// is read as part of the value before it). On a malformed query or a missing
// required key answers 400 and returns nullopt.
std::optional<Query> checkedQuery(const httplib::Request& request, httplib::Response& response,
                                  const std::vector<std::string>& keys,
                                  const std::vector<std::string>& optionalKeys = {});

} // namespace service
