#include "window_state.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Larger sides are no window anyone had.
const int kMaxSide = 32767;

bool makeFolders(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        std::string part = path.substr(0, slash);
        if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return false;
    }
    return true;
}

} // namespace

std::string windowStatePath() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config && config[0] == '/') return std::string(config) + "/stagebeacon/window";
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.config/stagebeacon/window";
}

bool readWindowGeometry(const std::string& path, WindowGeometry& geometry) {
    FILE* file = std::fopen(path.c_str(), "r");
    if (!file) return false;
    int width = 0, height = 0, x = 0, y = 0, maximized = 0;
    char line[128] = "";
    bool read = std::fgets(line, sizeof line, file) &&
                std::sscanf(line, "%d %d %d %d %d", &width, &height, &x, &y, &maximized) == 5;
    std::fclose(file);
    if (!read || width < 1 || height < 1 || width > kMaxSide || height > kMaxSide ||
        x < -kMaxSide || y < -kMaxSide || x > kMaxSide || y > kMaxSide)
        return false;
    geometry = WindowGeometry{width, height, x, y, true, maximized != 0};
    return true;
}

bool saveWindowGeometry(const std::string& path, const WindowGeometry& geometry,
                        std::string& error) {
    if (!makeFolders(path)) {
        error = "cannot make the folder of " + path + ": " + std::strerror(errno);
        return false;
    }
    std::string temporary = path + ".tmp";
    FILE* file = std::fopen(temporary.c_str(), "w");
    if (!file) {
        error = "cannot write " + temporary + ": " + std::strerror(errno);
        return false;
    }
    bool written = std::fprintf(file, "%d %d %d %d %d\n", geometry.width, geometry.height,
                                geometry.x, geometry.y, geometry.maximized ? 1 : 0) > 0;
    written = std::fflush(file) == 0 && written && fsync(fileno(file)) == 0;
    written = std::fclose(file) == 0 && written;
    if (!written || std::rename(temporary.c_str(), path.c_str()) != 0) {
        error = "cannot save " + path + ": " + std::strerror(errno);
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}
