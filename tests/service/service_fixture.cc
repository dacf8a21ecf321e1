// The running-service fixture: see service_fixture.h.
#include "service_fixture.h"

#include "geo.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace service_test {

TempFolder::TempFolder() {
    char pattern[] = "/tmp/stagebeacon-service-test-XXXXXX";
    const char* made = mkdtemp(pattern);
    if (!made) throw std::runtime_error("mkdtemp failed");
    path_ = made;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

service::Catalog testCatalog() {
    service::Catalog catalog;
    catalog.places = {{"Origin", "ZZ", 0.0, 0.0},
                      {"Half Degree", "ZZ", 0.5, 0.0},
                      {"One Degree", "ZZ", 1.0, 0.0},
                      {"Far Away", "ZZ", 30.0, 0.0}};
    // Site 1 covers only around the origin; site 2 is centred 100 miles
    // north with a reach of 20; site 3 sells tickets and covers far away.
    catalog.sites = {{1, "Origin Stages", 0.0, 0.0, 10.0, false},
                     {2, "Northern Nights", 1.4457, 0.0, 20.0, false},
                     {3, "Faraway Tickets", 30.0, 0.0, 10.0, true}};
    auto event = [](int64_t site, int days, std::vector<std::string> artists,
                    const std::string& venue, const std::string& city, double lat) {
        service::Event e;
        e.siteId = site;
        e.date = service::isoDateFromToday(days);
        e.artists = std::move(artists);
        e.venue = venue;
        e.city = city;
        e.state = "ZZ";
        e.url = "/show.php?artist=" + e.artists[0];
        e.latitude = lat;
        return e;
    };
    catalog.events = {event(1, 1, {"Near Band"}, "Origin Hall", "Origin", 0.0),
                      event(1, 2, {"Half Band", "Opener One", "Opener Two"}, "Half Club",
                            "Half Degree", 0.5),
                      event(1, 3, {"Edge Band"}, "Edge Arena", "One Degree", 1.0),
                      event(1, -1, {"Past Band"}, "Origin Hall", "Origin", 0.0),
                      event(3, 4, {"Far Band"}, "Far Hall", "Far Away", 30.0)};
    for (int i = 0; i < 25; ++i) {
        char asin[16];
        std::snprintf(asin, sizeof asin, "B%09d", i);
        catalog.releases.push_back({service::isoDateFromToday(i + 1), "Artist " + std::to_string(i),
                                    "Album " + std::to_string(i), {"Import", "Live"}, asin,
                                    i == 0 ? "https://store.example/album0" : ""});
    }
    catalog.releases.push_back({service::isoDateFromToday(-3), "Old Artist", "Old Album", {},
                                "BOLD", ""});
    catalog.ipRanges = {{0x7f000002, 0x7f000002, "CANADA", "ONTARIO", "TORONTO"}};
    return catalog;
}

void ServiceTest::SetUp() {
    ASSERT_TRUE(service::initPasswords());
    config_.host = "127.0.0.1";
    config_.port = 0;
    config_.threads = 4;
    config_.passwordLimits = service::PasswordLimits::minimum();
    config_.cacheMilliseconds = 0; // tests change the catalogue under a running service
    startService();
    storage_->replaceCatalog(testCatalog());
}

void ServiceTest::TearDown() { stopService(); }

void ServiceTest::startService() {
    stopService();
    storage_ = std::make_unique<service::SqliteStorage>(dbPath());
    service_ = std::make_unique<service::Service>(*storage_, config_);
    ASSERT_TRUE(service_->start());
}

void ServiceTest::stopService() {
    service_.reset();
    storage_.reset();
}

httplib::Result ServiceTest::getResult(const std::string& target) {
    httplib::Client client("127.0.0.1", service_->port());
    client.set_connection_timeout(5);
    client.set_read_timeout(5);
    // The plug-in escapes nothing but blanks; the client must not either.
    client.set_url_encode(false);
    return client.Get(target.c_str());
}

std::string ServiceTest::get(const std::string& target, int* status) {
    httplib::Result result = getResult(target);
    if (!result) {
        ADD_FAILURE() << "no reply to " << target.substr(0, 200);
        return std::string();
    }
    if (status) *status = result->status;
    return result->body;
}

RawConnection::RawConnection(int port) {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd_ >= 0 && ::connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd_);
        fd_ = -1;
    }
    closed_ = fd_ < 0;
}

RawConnection::~RawConnection() {
    if (fd_ >= 0) ::close(fd_);
}

void RawConnection::send(const std::string& bytes) {
    size_t sent = 0;
    while (fd_ >= 0 && sent < bytes.size()) {
        ssize_t n = ::send(fd_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n <= 0) return;
        sent += static_cast<size_t>(n);
    }
}

std::string RawConnection::receive(const std::string& ending, int quietMs) {
    std::string received;
    char buffer[4096];
    pollfd waiting{fd_, POLLIN, 0};
    while (fd_ >= 0 && !closed_ && ::poll(&waiting, 1, quietMs) > 0) {
        ssize_t n = ::recv(fd_, buffer, sizeof buffer, 0);
        if (n <= 0) {
            closed_ = true;
            break;
        }
        received.append(buffer, static_cast<size_t>(n));
        if (!ending.empty() && received.size() >= ending.size() &&
            received.compare(received.size() - ending.size(), ending.size(), ending) == 0)
            break;
    }
    return received;
}

std::string ServiceTest::rawExchange(const std::string& bytes, int quietMs) {
    RawConnection connection(service_->port());
    connection.send(bytes);
    return connection.receive(std::string(), quietMs);
}

} // namespace service_test
