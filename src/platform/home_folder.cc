// Home folder lookup: the environment first, as every Linux program does, so
// that tests and sandboxes can point it elsewhere.
#include "platform/home_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

std::string homeFolder() {
    const char* home = getenv("HOME");
    if (home && *home) return home;

    long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<size_t>(suggested) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir)
        return found->pw_dir;
    return std::string();
}
