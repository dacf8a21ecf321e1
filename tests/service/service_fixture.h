// A running stagebeacon-service for HTTP-level tests: a fresh SQLite file in
// a temporary folder, the server on an ephemeral loopback port, a client
// that speaks to it, and a raw-socket helper for requests no well-behaved
// client would send.
#pragma once

#include "server.h"
#include "sqlite_storage.h"

#include <httplib.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace service_test {

// A folder under /tmp removed with its contents at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// A small catalogue with known distances: "Origin, ZZ" at 0,0, places due
// north at 0.5 (34.6 miles) and 1.0 degrees (69.2 miles), sites around them.
service::Catalog testCatalog();

// One client connection written and read by hand.
class RawConnection {
public:
    explicit RawConnection(int port);
    ~RawConnection();
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;
    void send(const std::string& bytes);
    // Reads until `ending` has arrived, the peer closed, or `quietMs` passed
    // without a byte. Returns what was read.
    std::string receive(const std::string& ending, int quietMs);
    bool closedByPeer() const { return closed_; }

private:
    int fd_ = -1;
    bool closed_ = false;
};

class ServiceTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Starts (or restarts) the service on the same database file.
    void startService();
    void stopService();

    // GET on the running service; the body, status in `status`.
    std::string get(const std::string& target, int* status = nullptr);
    httplib::Result getResult(const std::string& target);

    // Sends `bytes` as they are and returns everything the server wrote
    // before closing (or until `quietMs` pass without a byte).
    std::string rawExchange(const std::string& bytes, int quietMs = 2000);

    std::string dbPath() const { return folder_.path() + "/service.db"; }

    TempFolder folder_;
    std::unique_ptr<service::SqliteStorage> storage_;
    std::unique_ptr<service::Service> service_;
    service::ServiceConfig config_;
};

} // namespace service_test
