#include "temp_home.h"

#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

int removeEntry(const char* path, const struct stat*, int, FTW*) { return remove(path); }

} // namespace

TempHome::TempHome() {
    char pattern[] = "/tmp/stagebeacon-test-XXXXXX";
    if (!mkdtemp(pattern)) throw std::runtime_error("mkdtemp failed");
    root = pattern;
    const char* home = getenv("HOME");
    hadHome = home != nullptr;
    if (home) savedHome = home;
    setenv("HOME", root.c_str(), 1);
}

TempHome::~TempHome() {
    if (hadHome)
        setenv("HOME", savedHome.c_str(), 1);
    else
        unsetenv("HOME");
    nftw(root.c_str(), removeEntry, 16, FTW_DEPTH | FTW_PHYS);
}

std::string TempHome::support() const { return root + "/Library/Application Support/Stagebeacon/"; }

void writeText(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    if (!out) throw std::runtime_error("cannot write " + path);
}

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }
