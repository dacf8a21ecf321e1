// The HTTP client's process-wide settings and error state, its error texts,
// and the calls that set and report them. The texts are the client's own and
// are shown to users verbatim.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netdb.h>

#include "net/http_fetch_internal.h"

char* userAgent = nullptr;
int hideUserAgent = 0;
char* referer = nullptr;
int hideReferer = 1;
int timeout = 30;
int followRedirects = 3;
int freeOldAgent = 0;
int freeOldReferer = 0;

int errorSource = 0;
int http_errno = 0;
int errorInt = 0;

const char* const http_errlist[kHttpErrlistSize] = {
    "Success",
    "Internal Error. What the hell?!",
    "Got NULL url",
    "Timed out, no metadata for %d seconds",
    "Timed out, no data for %d seconds",
    "Couldn't find return code in HTTP response",
    "Couldn't convert return code in HTTP response",
    "Request returned a status code of %d",
    "Couldn't convert Content-Length to integer",
    "Network error (description unavailable)",
    "Status code of %d but no Location: field",
    "Followed the maximum number of redirects (%d)",
};

namespace {

// Room for the longest text with "%d" replaced by any int.
char convertedError[128];
int keptErrno = 0;

// Replaces the copy in *copy (freeing it when *owned says so) by a copy of
// `text`, or drops it for null. Returns -1 (errorSource 1) when out of memory.
int replaceCopy(char** copy, int* owned, int* hide, const char* text) {
    char* fresh = nullptr;
    if (text) {
        fresh = strdup(text);
        if (!fresh) {
            http_internal::failSystem();
            return -1;
        }
    }
    if (*owned) free(*copy);
    *copy = fresh;
    *owned = fresh != nullptr;
    *hide = fresh == nullptr;
    return 0;
}

const char* clientText() {
    if (http_errno < 0 || http_errno >= kHttpErrlistSize) return http_errlist[1];
    return http_errlist[http_errno];
}

} // namespace

namespace http_internal {

void failClient(int index, int number) {
    errorSource = 0;
    http_errno = index;
    errorInt = number;
}

void failSystem() {
    failSystem(errno);
}

void failSystem(int errnoValue) {
    errorSource = 1;
    keptErrno = errnoValue;
    errno = errnoValue;
}

void failResolver(int resolverError) {
    errorSource = 2;
    h_errno = resolverError;
}

void restoreSystemErrno() {
    if (errorSource == 1) errno = keptErrno;
}

} // namespace http_internal

int http_setUserAgent(const char* agent) {
    return replaceCopy(&userAgent, &freeOldAgent, &hideUserAgent, agent);
}

int http_setReferer(const char* newReferer) {
    return replaceCopy(&referer, &freeOldReferer, &hideReferer, newReferer);
}

void http_setTimeout(int seconds) {
    timeout = seconds;
}

void http_setRedirects(int maximum) {
    followRedirects = maximum;
}

int http_parseFilename(const char* url, char** filename) {
    if (!url) {
        http_internal::failClient(2);
        return -1;
    }
    const char* slash = strrchr(url, '/');
    if (!slash || slash[1] == '\0') return 1;
    char* name = strdup(slash + 1);
    if (!name) {
        http_internal::failSystem();
        return -1;
    }
    *filename = name;
    return 0;
}

const char* http_strerror() {
    switch (errorSource) {
    case 1:
        return strerror(errno);
    case 2:
        return http_errlist[9];
    case 0: {
        const char* text = clientText();
        if (!strstr(text, "%d")) return text;
            // Every text holds at most one "%d" and no other conversion.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        snprintf(convertedError, sizeof convertedError, text, errorInt);
#pragma GCC diagnostic pop
        return convertedError;
    }
    default:
        return http_errlist[1];
    }
}

void http_perror(const char* prefix) {
    switch (errorSource) {
    case 1:
        perror(prefix);
        return;
    case 2:
        herror(prefix);
        return;
    case 0:
        // A text with a number is printed alone, without the prefix: users
        // have always seen it that way.
        if (strstr(clientText(), "%d")) {
            fprintf(stderr, "%s\n", http_strerror());
            return;
        }
        fprintf(stderr, "%s: %s\n", prefix ? prefix : "", clientText());
        return;
    default:
        fprintf(stderr, "%s: %s\n", prefix ? prefix : "", http_errlist[1]);
        return;
    }
}
