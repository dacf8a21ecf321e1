// Puts the HTTP client's process-wide settings back to their initial values
// (agent never set, referer hidden, 30 s, 3 redirects) so that one test's
// settings never leak into the next.
#pragma once

#include <cstdlib>

#include "net/http_fetch.h"

inline void resetHttpClient() {
    if (freeOldAgent) free(userAgent);
    if (freeOldReferer) free(referer);
    userAgent = nullptr;
    referer = nullptr;
    freeOldAgent = 0;
    freeOldReferer = 0;
    hideUserAgent = 0;
    hideReferer = 1;
    timeout = 30;
    followRedirects = 3;
}
