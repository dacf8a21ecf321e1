// http_fetch: one GET, following redirects, into a malloc'd page.
//
// The exchange, step by step:
//   1. The request goes out in one piece: "GET <path> HTTP/1.1", then Host
//      (as written in the URL, port included), Referer and User-Agent when
//      not hidden, and "Connection: Close".
//   2. The header is read one byte per read() so that no body byte is taken
//      by the header reader, until an empty line or kHttpHeaderMax bytes; the
//      last three bytes (the closing line breaks) are cut off. A longer
//      header is cut there and the rest of it reaches the body.
//   3. 200-299 is final; 300-307 is a redirect to the Location text (a
//      relative one fails at resolution, having no host); anything else
//      fails. The connection that answered with a redirect stays open until
//      the whole fetch ends: peers have always seen it that way.
//   4. The body is read until the server closes, in reads of the
//      Content-Length (when given) or 200 KiB; the length is only a read
//      size, never a promise.
// Every wait is bounded by `timeout` and watches the cancel signal (a stop
// ends the fetch between any two steps or inside any wait, with ECANCELED);
// every socket and buffer is owned, so no failure path leaks either.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <sys/mman.h>
#include <vector>

#include "net/http_fetch_internal.h"
#include "net/page_buffer.h"

using http_internal::UniqueSocket;
using http_internal::Wait;

namespace {

constexpr const char* kDefaultAgent = "HTTP Fetcher/0.1";

// strtol with the habits of "%d": leading blanks and a sign are accepted,
// the value is clamped to int. False when no digit follows.
bool readInt(const char* text, int* value) {
    char* end = nullptr;
    errno = 0;
    long parsed = strtol(text, &end, 10);
    if (end == text) return false;
    if (parsed > INT_MAX) parsed = INT_MAX;
    if (parsed < INT_MIN) parsed = INT_MIN;
    *value = static_cast<int>(parsed);
    return true;
}

// Request text for `url`; *host receives the host part as written.
std::string buildRequest(const std::string& url, std::string* host) {
    size_t scheme = url.find("://");
    size_t hostStart = scheme == std::string::npos ? 0 : scheme + 3;
    size_t pathStart = url.find('/', hostStart);
    *host = url.substr(hostStart,
                       pathStart == std::string::npos ? std::string::npos : pathStart - hostStart);
    std::string request;
    request.reserve(1024);
    request += "GET ";
    request += pathStart == std::string::npos ? std::string("/") : url.substr(pathStart);
    request += " HTTP/1.1\r\n";
    request += "Host: " + *host + "\r\n";
    if (!hideReferer && referer) request += std::string("Referer: ") + referer + "\r\n";
    if (!hideUserAgent) {
        request += std::string("User-Agent: ") + (userAgent ? userAgent : kDefaultAgent) + "\r\n";
    }
    request += "Connection: Close\r\n\r\n";
    return request;
}

// Sends the whole request on the non-blocking socket; false with the error
// state set.
bool sendAll(int fd, const std::string& request) {
    size_t sent = 0;
    while (sent < request.size()) {
        if (http_internal::cancelled()) {
            http_internal::failSystem(ECANCELED);
            return false;
        }
        long n = my_writesocket(fd, request.data() + sent, request.size() - sent);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            Wait waited = http_internal::waitWritable(fd, timeout);
            if (waited == Wait::Ready) continue;
            if (waited == Wait::TimedOut) http_internal::failSystem(ETIMEDOUT);
            else if (waited == Wait::Cancelled) http_internal::failSystem(ECANCELED);
            else http_internal::failSystem();
            return false;
        }
        if (n <= 0) {
            http_internal::failSystem();
            return false;
        }
        sent += static_cast<size_t>(n);
    }
    return true;
}

// A read that found nothing after all (the descriptor is non-blocking):
// wait again.
bool nothingYet(long n) {
    return n < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK);
}

constexpr int kNoMetadata = 3; // http_errlist: time-out before a header byte
constexpr int kNoData = 4;     // http_errlist: time-out before a body byte

// Waits up to `timeout` for the next byte; on expiry the error is
// `timeoutError` with the seconds as its number.
bool awaitData(int fd, int timeoutError) {
    Wait waited = http_internal::waitReadable(fd, timeout);
    if (waited == Wait::Ready) return true;
    if (waited == Wait::TimedOut) {
        http_internal::failClient(timeoutError, timeout);
    } else if (waited == Wait::Cancelled) {
        http_internal::failSystem(ECANCELED);
    } else {
        http_internal::failSystem();
    }
    return false;
}

// Reads the response header (see step 2 above) into `header`, NUL-terminated.
bool readHeader(int fd, char (&header)[kHttpHeaderMax + 1]) {
    int length = 0;
    int lineFeeds = 0;
    while (length < kHttpHeaderMax && lineFeeds < 2) {
        if (!awaitData(fd, kNoMetadata)) return false;
        char byte;
        long n = my_readsocket(fd, &byte, 1);
        if (nothingYet(n)) continue;
        if (n < 0) {
            http_internal::failSystem();
            return false;
        }
        if (n == 0) break; // closed early: judge what came
        header[length++] = byte;
        if (byte == '\r') continue;
        lineFeeds = byte == '\n' ? lineFeeds + 1 : 0;
    }
    header[length > 3 ? length - 3 : 0] = '\0';
    return true;
}

bool onlyWhiteSpace(const char* text) {
    for (; *text; ++text) {
        if (!strchr(" \t\r\n\f\v", *text)) return false;
    }
    return true;
}

using http_internal::Next;

// Judges the status line and, for a redirect, finds the new URL.
Next judgeHeader(const char* header, int redirects, std::string* location) {
    const char* http = strstr(header, "HTTP/");
    if (!http) {
        http_internal::failClient(5);
        return Next::Failed;
    }
    const char* blank = strchr(http, ' ');
    int status = 0;
    if (!blank || !readInt(blank, &status)) {
        http_internal::failClient(6);
        return Next::Failed;
    }
    if (status < 200 || status > 307) {
        http_internal::failClient(7, status);
        return Next::Failed;
    }
    if (status < 300) return Next::Final;

    const char* field = strstr(header, "Location:");
    if (!field || onlyWhiteSpace(field + 9)) {
        http_internal::failClient(10, status);
        return Next::Failed;
    }
    const char* value = field + 9;
    value += strspn(value, " \t");
    size_t length = strcspn(value, " \r\n");
    if (length == 0) return Next::Final; // an empty Location: this is the answer
    if (followRedirects >= 0 && redirects > followRedirects) {
        http_internal::failClient(11, followRedirects);
        return Next::Failed;
    }
    location->assign(value, length);
    return Next::Redirect;
}

// The read size for the body: *readSize, or false with the error set.
bool bodyReadSize(const char* header, size_t* readSize) {
    const char* field = strstr(header, "Content-Length:");
    if (!field) field = strstr(header, "Content-length:");
    if (!field) {
        *readSize = kHttpUnknownReadSize;
        return true;
    }
    int length = 0;
    if (strnlen(field, 16) < 16 || !readInt(field + 16, &length) || length < 0) {
        http_internal::failClient(8);
        return false;
    }
    if (static_cast<size_t>(length) > kHttpMaxBody) {
        http_internal::failSystem(EFBIG);
        return false;
    }
    *readSize = static_cast<size_t>(length);
    return true;
}

// Large bodies are copied into fresh memory, where one page fault per 4 KiB
// costs more than the copy itself; asking for huge pages on the aligned
// inside of the block removes most of them. Only advice: ignored if refused.
void adviseHugePages(char* block, size_t capacity) {
    constexpr uintptr_t kHuge = 2u << 20;
    if (capacity < 2 * kHuge) return;
    uintptr_t start = (reinterpret_cast<uintptr_t>(block) + kHuge - 1) & ~(kHuge - 1);
    uintptr_t end = (reinterpret_cast<uintptr_t>(block) + capacity) & ~(kHuge - 1);
    if (end > start) madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

// Reads the body until the peer closes, each read asking for at most
// `readSize` bytes (a read size of 0 therefore ends the body at once). With
// `keep` false the bytes are counted and dropped in a block that never grows.
//
// The block holds the read size plus some slack from the start, so a body of
// known length fits, and the closing read finds room, without a
// reallocation; past that it at least doubles when it runs short.
bool readBody(int fd, size_t readSize, bool keep, PageBuffer* body, size_t* total) {
    constexpr size_t kSlack = 64u * 1024u;
    constexpr size_t kDropBlock = 1u << 20;
    size_t capacity = (keep ? readSize : std::min(readSize, kDropBlock)) + kSlack + 1;
    if (!body->reserve(capacity)) {
        http_internal::failSystem(ENOMEM);
        return false;
    }
    if (keep) adviseHugePages(body->mutableData(), capacity);
    size_t length = 0;
    *total = 0;
    for (;;) {
        size_t room = capacity - 1 - length;
        if (room < std::min(readSize, kSlack)) {
            capacity = std::max(capacity * 2, length + readSize + kSlack + 1);
            if (!body->reserve(capacity)) {
                http_internal::failSystem(ENOMEM);
                return false;
            }
            if (keep) adviseHugePages(body->mutableData(), capacity);
            room = capacity - 1 - length;
        }
        if (!awaitData(fd, kNoData)) return false;
        long n = my_readsocket(fd, body->mutableData() + length, std::min(readSize, room));
        if (nothingYet(n)) continue;
        if (n < 0) {
            http_internal::failSystem();
            return false;
        }
        if (n == 0) break;
        *total += static_cast<size_t>(n);
        if (*total > kHttpMaxBody) {
            http_internal::failSystem(EFBIG);
            return false;
        }
        if (keep) length += static_cast<size_t>(n);
    }
    if (keep) {
        if (!body->reserve(length + 1)) { /* a failed shrink keeps the larger block */
        }
        body->mutableData()[length] = '\0';
        body->setSize(length);
    }
    return true;
}

} // namespace

Next http_internal::readResponse(int fd, int redirects, std::string* location, bool keep,
                                 PageBuffer* body, size_t* total) {
    char header[kHttpHeaderMax + 1];
    if (!readHeader(fd, header)) return Next::Failed;
    Next next = judgeHeader(header, redirects, location);
    if (next != Next::Final) return next;
    size_t readSize = 0;
    if (!bodyReadSize(header, &readSize)) return Next::Failed;
    if (!readBody(fd, readSize, keep, body, total)) return Next::Failed;
    return Next::Final;
}

namespace {

int fetch(const char* url, char** fileBuf) {
    if (!url) {
        http_internal::failClient(2);
        return -1;
    }
    std::string current = url;
    std::vector<UniqueSocket> answeredRedirects;
    for (int redirects = 0;;) {
        if (http_internal::cancelled()) {
            http_internal::failSystem(ECANCELED);
            return -1;
        }
        std::string host;
        std::string request = buildRequest(current, &host);
        UniqueSocket socket(makeSocket(host.c_str()));
        if (!socket.valid()) return -1;
        if (!sendAll(socket.get(), request)) return -1;
        std::string location;
        PageBuffer body;
        size_t total = 0;
        Next next = http_internal::readResponse(socket.get(), redirects + 1, &location,
                                                fileBuf != nullptr, &body, &total);
        if (next == Next::Failed) return -1;
        if (next == Next::Redirect) {
            ++redirects;
            answeredRedirects.push_back(std::move(socket));
            current = location;
            continue;
        }
        if (fileBuf) *fileBuf = body.release();
        return static_cast<int>(total);
    }
}

} // namespace

int http_fetch(const char* url, char** fileBuf) {
    int result;
    try {
        result = fetch(url, fileBuf);
    } catch (const std::bad_alloc&) {
        http_internal::failSystem(ENOMEM);
        result = -1;
    }
    // The owners inside fetch() have closed their sockets by now; give the
    // caller the errno of the failure, not of the cleanup.
    if (result < 0) http_internal::restoreSystemErrno();
    return result;
}
