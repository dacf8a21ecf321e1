#include "platform/system_version.h"

#include <cerrno>
#include <cstdlib>

bool querySystemVersion(long* value) {
    const char* text = getenv("STAGEBEACON_SYSTEM_VERSION");
    if (!text || !*text) return false;
    char* end = nullptr;
    errno = 0;
    long parsed = strtol(text, &end, 0);
    if (errno != 0 || end == text || *end != '\0' || parsed < 0) return false;
    *value = parsed;
    return true;
}
