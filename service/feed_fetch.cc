// Feed downloads: see feed_fetch.h.
#include "feed_fetch.h"

#include <curl/curl.h>

#include <cstring>
#include <memory>
#include <mutex>
#include <strings.h>

namespace service {
namespace {

struct Transfer {
    FetchResult* result;
    size_t maxBytes;
    const std::atomic<bool>* cancel;
    bool tooLarge = false;
};

int onProgress(void* context, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const std::atomic<bool>* cancel = static_cast<Transfer*>(context)->cancel;
    return cancel && cancel->load() ? 1 : 0; // non-zero aborts
}

size_t onBody(char* data, size_t size, size_t count, void* context) {
    Transfer& transfer = *static_cast<Transfer*>(context);
    const size_t bytes = size * count;
    if (transfer.result->body.size() + bytes > transfer.maxBytes) {
        transfer.tooLarge = true;
        return 0; // ends the transfer with CURLE_WRITE_ERROR
    }
    transfer.result->body.append(data, bytes);
    return bytes;
}

std::string trimmed(const char* data, size_t length) {
    size_t first = 0;
    while (first < length && (data[first] == ' ' || data[first] == '\t')) ++first;
    while (length > first && (data[length - 1] == '\r' || data[length - 1] == '\n' ||
                              data[length - 1] == ' '))
        --length;
    return std::string(data + first, length - first);
}

// Header lines of every reply on the way arrive here; a status line starts
// a new reply, so only the last one's validators are kept.
size_t onHeader(char* data, size_t size, size_t count, void* context) {
    FetchResult& result = *static_cast<Transfer*>(context)->result;
    const size_t bytes = size * count;
    if (bytes >= 5 && strncasecmp(data, "HTTP/", 5) == 0) {
        result.etag.clear();
        result.lastModified.clear();
        result.contentType.clear();
        return bytes;
    }
    const char* colon = static_cast<const char*>(memchr(data, ':', bytes));
    if (!colon) return bytes;
    const size_t nameLength = static_cast<size_t>(colon - data);
    std::string value = trimmed(colon + 1, bytes - nameLength - 1);
    auto is = [&](const char* name) {
        return nameLength == strlen(name) && strncasecmp(data, name, nameLength) == 0;
    };
    if (is("ETag")) result.etag = value;
    else if (is("Last-Modified")) result.lastModified = value;
    else if (is("Content-Type")) result.contentType = value;
    return bytes;
}

void initCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

struct CurlFree {
    void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

std::string failure(CURLcode code, const char* detail, const FetchLimits& limits) {
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return "no complete reply within " + std::to_string(limits.totalSeconds) + " s";
    case CURLE_TOO_MANY_REDIRECTS:
        return "more than " + std::to_string(limits.maxRedirects) + " redirects";
    case CURLE_ABORTED_BY_CALLBACK:
        return "stopped: the service is shutting down";
    case CURLE_FILESIZE_EXCEEDED:
        return "larger than the limit of " + std::to_string(limits.maxBytes) + " bytes";
    default:
        return detail[0] ? std::string(detail) : std::string(curl_easy_strerror(code));
    }
}

} // namespace

FetchResult fetchFeed(const std::string& url, const std::string& etag,
                      const std::string& lastModified, const FetchLimits& limits) {
    initCurlOnce();
    FetchResult result;
    std::unique_ptr<CURL, CurlFree> curl(curl_easy_init());
    if (!curl) {
        result.error = "cannot start a transfer";
        return result;
    }
    std::unique_ptr<curl_slist, CurlFree> headers;
    auto addHeader = [&headers](const std::string& line) {
        curl_slist* grown = curl_slist_append(headers.get(), line.c_str());
        if (grown) {
            (void)headers.release();
            headers.reset(grown);
        }
    };
    if (!etag.empty()) addHeader("If-None-Match: " + etag);
    if (!lastModified.empty()) addHeader("If-Modified-Since: " + lastModified);

    Transfer transfer{&result, limits.maxBytes, limits.cancel};
    char detail[CURL_ERROR_SIZE] = "";
    CURL* c = curl.get();
    curl_easy_setopt(c, CURLOPT_URL, url.c_str());
    curl_easy_setopt(c, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(c, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(c, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(c, CURLOPT_MAXREDIRS, limits.maxRedirects);
    curl_easy_setopt(c, CURLOPT_CONNECTTIMEOUT, limits.connectSeconds);
    curl_easy_setopt(c, CURLOPT_TIMEOUT, limits.totalSeconds);
    curl_easy_setopt(c, CURLOPT_NOSIGNAL, 1L); // time-outs without SIGALRM: we run on threads
    curl_easy_setopt(c, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(c, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!limits.caFile.empty()) curl_easy_setopt(c, CURLOPT_CAINFO, limits.caFile.c_str());
    curl_easy_setopt(c, CURLOPT_USERAGENT, limits.userAgent.c_str());
    curl_easy_setopt(c, CURLOPT_ACCEPT_ENCODING, ""); // what this libcurl can decode
    curl_easy_setopt(c, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits.maxBytes));
    curl_easy_setopt(c, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(c, CURLOPT_WRITEFUNCTION, onBody);
    curl_easy_setopt(c, CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(c, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(c, CURLOPT_HEADERDATA, &transfer);
    curl_easy_setopt(c, CURLOPT_ERRORBUFFER, detail);
    curl_easy_setopt(c, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(c, CURLOPT_XFERINFOFUNCTION, onProgress);
    curl_easy_setopt(c, CURLOPT_XFERINFODATA, &transfer);

    const CURLcode code = curl_easy_perform(c);
    long status = 0;
    curl_easy_getinfo(c, CURLINFO_RESPONSE_CODE, &status);
    if (transfer.tooLarge || code != CURLE_OK) {
        result.body.clear();
        result.error = transfer.tooLarge ? failure(CURLE_FILESIZE_EXCEEDED, detail, limits)
                                         : failure(code, detail, limits);
        return result;
    }
    if (status == 304) {
        result.status = FetchResult::Status::NotModified;
        result.body.clear();
    } else if (status == 200) {
        result.status = FetchResult::Status::Fetched;
    } else {
        result.body.clear();
        result.error = "the server answered HTTP " + std::to_string(status);
    }
    return result;
}

} // namespace service
