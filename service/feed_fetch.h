// Downloading a feed with libcurl, within hard limits: TLS certificates are
// verified, only http and https are spoken (redirects included), the
// connection and the whole transfer have time limits, the body has a size
// cap (checked while it arrives, so a 50 MB reply costs at most the cap),
// and redirects are counted. The last reply's validators (ETag,
// Last-Modified) are sent back next time, so an unchanged feed costs one
// short 304 reply.
//
// Thread contract: any thread; each call uses its own transfer and blocks
// until it ends (at most `totalSeconds`).
#pragma once

#include <atomic>
#include <cstddef>
#include <string>

namespace service {

struct FetchLimits {
    long connectSeconds = 10;
    long totalSeconds = 60;
    size_t maxBytes = 32 * 1024 * 1024;
    long maxRedirects = 5;
    std::string userAgent = "stagebeacon-service/1.0 (feed import)";
    // Certificates of the system store; tests point this elsewhere.
    std::string caFile;
    // Set by another thread to end transfers early (the service stopping).
    const std::atomic<bool>* cancel = nullptr;
};

struct FetchResult {
    enum class Status { Fetched, NotModified, Failed } status = Status::Failed;
    std::string body;
    std::string etag;
    std::string lastModified;
    std::string contentType;
    std::string error; // plain words when Failed
};

// Fetches `url`, asking only for a newer copy than `etag`/`lastModified`
// when either is given. An HTTP status other than 200 and 304 fails.
FetchResult fetchFeed(const std::string& url, const std::string& etag,
                      const std::string& lastModified, const FetchLimits& limits);

} // namespace service
