#include "options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

bool parseWindowSize(const char* text, int& width, int& height) {
    char* end = nullptr;
    long w = std::strtol(text, &end, 10);
    if (end == text || (*end != 'x' && *end != 'X')) return false;
    const char* second = end + 1;
    long h = std::strtol(second, &end, 10);
    if (end == second || *end != '\0') return false;
    if (w < 1 || h < 1 || w > 32767 || h > 32767) return false;
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    return true;
}

namespace {

std::string defaultLibraryPath() {
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/Music/iTunes/iTunes Music Library.xml";
}

} // namespace

const char* playerUsage() {
    return "usage: stagebeacon-player [options] PLUGIN.so\n"
           "  --headless        run without a window (commands from stdin)\n"
           "  --script FILE     run FILE's commands headless ('-' for stdin)\n"
           "  --log FILE        write the log to FILE (default standard output)\n"
           "  --library FILE    the music library whose tracks the player bar plays\n"
           "  --size WxH        the window's start size (default 1100x700)\n"
           "  --help            this text\n";
}

OptionsResult parsePlayerOptions(int argc, char** argv, PlayerOptions& options,
                                 std::string& error) {
    options.libraryPath = defaultLibraryPath();
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        bool takesValue = std::strcmp(arg, "--script") == 0 || std::strcmp(arg, "--log") == 0 ||
                          std::strcmp(arg, "--library") == 0 || std::strcmp(arg, "--size") == 0;
        if (takesValue && i + 1 >= argc) {
            error = std::string(arg) + " needs a value";
            return OptionsResult::UsageError;
        }
        if (std::strcmp(arg, "--help") == 0) {
            return OptionsResult::Help;
        } else if (std::strcmp(arg, "--headless") == 0) {
            options.headless = true;
        } else if (std::strcmp(arg, "--script") == 0) {
            options.scriptPath = argv[++i];
            options.headless = true;
        } else if (std::strcmp(arg, "--log") == 0) {
            options.logPath = argv[++i];
        } else if (std::strcmp(arg, "--library") == 0) {
            options.libraryPath = argv[++i];
        } else if (std::strcmp(arg, "--size") == 0) {
            if (!parseWindowSize(argv[++i], options.width, options.height)) {
                error = std::string("--size wants WxH (1 to 32767 each), not '") + argv[i] + "'";
                return OptionsResult::UsageError;
            }
        } else if (arg[0] == '-' && arg[1] != '\0') {
            error = std::string("unknown option ") + arg;
            return OptionsResult::UsageError;
        } else if (options.pluginPath.empty()) {
            options.pluginPath = arg;
        } else {
            error = std::string("more than one plug-in given: ") + arg;
            return OptionsResult::UsageError;
        }
    }
    if (options.pluginPath.empty()) {
        error = "no plug-in given";
        return OptionsResult::UsageError;
    }
    return OptionsResult::Run;
}
