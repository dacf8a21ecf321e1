#include "log.h"

#include <cerrno>
#include <cstring>

PlayerLog::~PlayerLog() {
    if (ownsFile && file) std::fclose(file);
}

bool PlayerLog::open(const std::string& path, std::string& error) {
    if (path.empty()) {
        file = stdout;
        return true;
    }
    file = std::fopen(path.c_str(), "w");
    if (!file) {
        error = "cannot open log " + path + ": " + std::strerror(errno);
        return false;
    }
    ownsFile = true;
    return true;
}

void PlayerLog::writeLine(const std::string& text) {
    std::lock_guard<std::mutex> guard(mutex);
    if (!file) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fputc('\n', file);
    std::fflush(file);
}
