// The HTTP client every download goes through: one blocking HTTP/1.1 GET per
// call over plain TCP (no TLS, no chunked decoding, no keep-alive), a bounded
// number of redirects, one time-out for every wait, and failures reported
// through a small table of fixed English texts.
//
// The settings and the error state are process-wide globals by design: the
// callers that share them all hold the application's internet lock
// (CalGetData::lockInternet), which serialises every use of this client.
//
// Threads: any one thread at a time (the holder of the internet lock). Every
// call blocks for at most `timeout` seconds per wait on the socket, and ends
// within milliseconds of a request on the installed cancel signal.
//
// Limits: a response header is read one byte at a time up to 1024 bytes; a
// body larger than kHttpMaxBody fails with the system text for EFBIG.
#pragma once

#include <cstddef>

class FetchCancel;

// Settings. A null agent or referer with its hide flag clear means "never
// set"; the agent then defaults to "HTTP Fetcher/0.1".
extern char* userAgent;
extern int hideUserAgent; // 1: no User-Agent header
extern char* referer;
extern int hideReferer;     // 1: no Referer header (the initial state)
extern int timeout;         // seconds for every wait; negative waits for ever
extern int followRedirects; // most redirects per fetch; negative: no limit
extern int freeOldAgent;    // the agent copy is ours to free
extern int freeOldReferer;  // the referer copy is ours to free

// Error state, overwritten by every failure and by nothing else.
// errorSource: 0 = the client's own error (http_errno indexes http_errlist),
// 1 = a system call failed (errno holds the reason), 2 = the host name did
// not resolve.
extern int errorSource;
extern int http_errno;
extern int errorInt; // the number that replaces "%d" in the message
extern const char* const http_errlist[];
constexpr int kHttpErrlistSize = 12;

// Bytes of a response header read before the rest counts as body.
constexpr int kHttpHeaderMax = 1024;
// Read size when the length of a body is unknown (200 KiB).
constexpr size_t kHttpUnknownReadSize = 204800;
// The largest body kept, and the largest Content-Length accepted.
constexpr size_t kHttpMaxBody = 64u * 1024u * 1024u;

// Copies `agent` (the old copy is released) and shows the header: 0. Null
// drops the copy and hides the header: 0. Out of memory: -1, errorSource 1.
[[nodiscard]] int http_setUserAgent(const char* agent);
// The same for the Referer header.
[[nodiscard]] int http_setReferer(const char* newReferer);
void http_setTimeout(int seconds);
// The stop signal every later fetch watches (null: none). A fetch that sees
// it fails at once with -1 and the system text for ECANCELED.
void http_setCancel(const FetchCancel* cancel);
extern const FetchCancel* http_cancel;
void http_setRedirects(int maximum);

// Downloads `url`. Success: the number of body bytes; when `fileBuf` is not
// null it receives a new malloc'd block holding the body and a NUL, which the
// caller frees; with a null `fileBuf` the body is read and dropped. Failure:
// -1, the error state says why, *fileBuf is untouched. Every socket and
// buffer opened on the way is closed or freed before the call returns.
[[nodiscard]] int http_fetch(const char* url, char** fileBuf);

// The text after the last "/" of `url`, in a new malloc'd buffer: 0. No "/"
// or nothing after it: 1. Null url (error 2) or out of memory: -1.
[[nodiscard]] int http_parseFilename(const char* url, char** filename);

// The message for the current error state. The pointer is valid until the
// next call (the "%d" form is rebuilt in a static buffer).
const char* http_strerror();
// Writes the message to stderr; client errors with a number are written
// without the prefix.
void http_perror(const char* prefix);

// Socket layer. makeSocket takes "host" or "host:port" (default port 80),
// resolves it, connects within `timeout` and answers the descriptor, or -1
// with the error state set (2: name did not resolve, 1: socket or connect).
[[nodiscard]] int makeSocket(const char* host);
// Direct read, write (never raising SIGPIPE) and close of a descriptor.
[[nodiscard]] long my_readsocket(int fd, void* buffer, size_t length);
[[nodiscard]] long my_writesocket(int fd, const void* buffer, size_t length);
int my_closesocket(int fd);
