// The HTTP front: see server.h.
#include "server.h"

#include <httplib.h>

#include "query.h"

#include <sys/socket.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <strings.h>

namespace service {
namespace {

// Only GET requests are served; a body has nowhere to go.
constexpr size_t kMaxPayload = 64 * 1024;
constexpr time_t kTimeoutSeconds = 5;
constexpr size_t kCachedReplies = 4096;
// Longest wait for the accept loop to begin, in milliseconds.
constexpr int kStartWaitMs = 5000;
// A keep-alive client may send this many requests on one connection.
constexpr size_t kRequestsPerConnection = 100;

// The plug-in sends "Connection: Close" and reads until the server closes,
// but this library only knows the lower-case token and would keep the
// connection for the keep-alive timeout, stalling every plug-in request.
// The library stops serving a connection when a body provider reports
// failure, so the body is handed over through a provider that writes all of
// it and then answers false: the reply is complete, then the connection
// ends. The library's request object is its own non-const local (handed to
// us as const), so the token is also normalised for the reply header.
void closeAfterReply(const httplib::Request& request, httplib::Response& response) {
    httplib::Request& own = const_cast<httplib::Request&>(request);
    own.headers.erase("Connection");
    own.set_header("Connection", "close");
    // An empty body would never reach the provider; a line feed is harmless
    // to every reader of the plug-in (an empty line).
    auto body = std::make_shared<std::string>(response.body.empty() ? "\n" : response.body);
    std::string type = response.get_header_value("Content-Type");
    response.body.clear();
    response.headers.erase("Content-Type");
    response.set_content_provider(
        body->size(), type.empty() ? "text/plain" : type,
        [body](size_t offset, size_t length, httplib::DataSink& sink) {
            sink.write(body->data() + offset, length);
            return false;
        });
}

bool wantsClose(const httplib::Request& request) {
    return strcasecmp(request.get_header_value("Connection").c_str(), "close") == 0;
}

bool isRefusedQuery(const httplib::Request& request) {
    const std::string& target = request.target;
    size_t first = target.find('?');
    return request.method == "GET" && !request.path.empty() && request.path[0] == '/' &&
           first != std::string::npos && target.find('?', first + 1) != std::string::npos;
}

} // namespace

void reply(httplib::Response& response, const std::string& body, const char* type) {
    response.status = 200;
    response.set_content(body, type);
}

void replyError(httplib::Response& response, int status, const std::string& message) {
    response.status = status;
    response.set_content("Error: " + message + "\n", "text/plain; charset=ISO-8859-1");
}

void redirect(httplib::Response& response, const std::string& location) {
    response.status = 302;
    response.set_header("Location", location);
    response.set_content("Moved to " + location + "\n", "text/plain; charset=ISO-8859-1");
}

std::optional<Query> checkedQuery(const httplib::Request& request, httplib::Response& response,
                                  const std::vector<std::string>& keys,
                                  const std::vector<std::string>& optionalKeys) {
    std::vector<std::string> all = keys;
    all.insert(all.end(), optionalKeys.begin(), optionalKeys.end());
    Query query(rawQuery(request.target), all);
    if (query.problem() == Query::Problem::ValueTooLong) {
        replyError(response, 400, "value longer than " + std::to_string(kMaxValueLength));
        return std::nullopt;
    }
    if (query.problem() == Query::Problem::ControlCharacter) {
        replyError(response, 400, "control character in the query");
        return std::nullopt;
    }
    std::string missing = query.firstMissing(keys);
    if (!missing.empty()) {
        replyError(response, 400, "missing " + missing);
        return std::nullopt;
    }
    return query;
}

Service::Service(Storage& storage, ServiceConfig config)
    : storage_(storage), config_(std::move(config)),
      cache_(std::chrono::milliseconds(config_.cacheMilliseconds), kCachedReplies),
      context_(new RouteContext{storage_, config_, config_.publicUrl, cache_}),
      server_(new httplib::Server) {
    addCatalogRoutes(routes_, *context_);
    addPageRoutes(routes_, *context_);
    addAccountRoutes(routes_, *context_);

    const size_t threads = config_.threads > 0 ? static_cast<size_t>(config_.threads) : 1;
    server_->new_task_queue = [threads] { return new httplib::ThreadPool(threads); };
    server_->set_payload_max_length(kMaxPayload);
    // Header and body go out in separate writes; without this a keep-alive
    // client waits for the delayed acknowledgement (40 ms) on every reply.
    server_->set_tcp_nodelay(true);
    server_->set_read_timeout(kTimeoutSeconds);
    server_->set_write_timeout(kTimeoutSeconds);
    server_->set_keep_alive_max_count(kRequestsPerConnection);
    server_->set_keep_alive_timeout(kTimeoutSeconds);
    // The library listens with a backlog of 5, which drops connections when
    // many clients arrive together; the socket is noted here so bind() can
    // widen the backlog (listen() again on a listening socket does that).
    server_->set_socket_options([this](socket_t socket) {
        httplib::default_socket_options(socket);
        listenSocket_ = socket;
    });
    server_->set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            dispatch(request, response);
            if (wantsClose(request)) closeAfterReply(request, response);
            return httplib::Server::HandlerResponse::Handled;
        });
    // Failures the library detects itself (an over-long request line, a
    // malformed header) get a readable body too. One of them is not the
    // client's fault: the library refuses a target with a second "?", which
    // the plug-in sends whenever a show address has its own query (the
    // click-through and ADD_SHOW). The library has already read method and
    // target then, so such a request is served from here, and the
    // connection closed after the reply (its header lines are left unread).
    // Lines that are no request at all get an empty body.
    server_->set_error_handler(httplib::Server::HandlerWithResponse(
        [this](const httplib::Request& request, httplib::Response& response) {
            if (response.status == 400 && isRefusedQuery(request)) {
                dispatch(request, response);
                closeAfterReply(request, response);
                return httplib::Server::HandlerResponse::Handled;
            }
            if (response.has_header("Content-Type")) // our own reply, already complete
                return httplib::Server::HandlerResponse::Handled;
            if (request.method.empty() || request.path.empty() || request.path[0] != '/') {
                response.body.clear();
                return httplib::Server::HandlerResponse::Handled;
            }
            if (response.body.empty())
                response.set_content("Error: request refused (status " +
                                         std::to_string(response.status) + ")\n",
                                     "text/plain; charset=ISO-8859-1");
            return httplib::Server::HandlerResponse::Handled;
        }));
}

Service::~Service() { stop(); }

bool Service::bind() {
    if (config_.port == 0) {
        port_ = server_->bind_to_any_port(config_.host);
        if (port_ <= 0) return false;
    } else {
        if (!server_->bind_to_port(config_.host, config_.port)) return false;
        port_ = config_.port;
    }
    if (listenSocket_ >= 0) ::listen(listenSocket_, SOMAXCONN);
    if (context_->publicUrl.empty())
        context_->publicUrl = "http://" + config_.host + ":" + std::to_string(port_);
    while (!context_->publicUrl.empty() && context_->publicUrl.back() == '/')
        context_->publicUrl.pop_back();
    return true;
}

void Service::run() {
    serving_ = true;
    server_->listen_after_bind();
    serving_ = false;
}

bool Service::start() {
    if (!bind()) return false;
    thread_ = std::thread([this] { run(); });
    // Return only once the accept loop runs, so an early stop() is not lost.
    for (int waited = 0; waited < kStartWaitMs && !server_->is_running(); ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return server_->is_running();
}

void Service::stop() {
    // The library ignores stop() until its accept loop has begun; a run()
    // that was entered but has not reached the loop yet is waited for.
    for (int waited = 0; waited < kStartWaitMs && serving_ && !server_->is_running(); ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    server_->stop();
    if (thread_.joinable()) thread_.join();
}

void Service::dispatch(const httplib::Request& request, httplib::Response& response) {
    if (request.method != "GET" && request.method != "HEAD") {
        replyError(response, 405, "only GET requests are served");
        return;
    }
    auto route = routes_.find(request.path);
    if (route == routes_.end()) {
        replyError(response, 404, "no such page");
        return;
    }
    try {
        route->second(request, response);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "stagebeacon-service: %s %s: %s\n", request.method.c_str(),
                     request.path.c_str(), failure.what());
        replyError(response, 500, "the service could not complete the request");
    }
}

} // namespace service
