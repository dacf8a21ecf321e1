#include "app_options.h"

#include <unistd.h>

#include <cstring>

#include "options.h"

const char* appUsage() {
    return "usage: stagebeacon [options]\n"
           "  --headless                no window; notifications go to the log\n"
           "  --log FILE                write the log to FILE (default standard output)\n"
           "  --plugin FILE             the plug-in to load (default: installed beside stagebeacon)\n"
           "  --size WxH                the calendar's size when none was saved (default 1100x700)\n"
           "  --exit-after-first-frame  quit once the first frame is drawn\n"
           "  --bare-window             an empty window without the plug-in\n"
           "  --help                    this text\n";
}

AppOptionsResult parseAppOptions(int argc, char** argv, AppOptions& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        bool takesValue = std::strcmp(arg, "--log") == 0 || std::strcmp(arg, "--plugin") == 0 ||
                          std::strcmp(arg, "--size") == 0;
        if (takesValue && i + 1 >= argc) {
            error = std::string(arg) + " needs a value";
            return AppOptionsResult::UsageError;
        }
        if (std::strcmp(arg, "--help") == 0) return AppOptionsResult::Help;
        if (std::strcmp(arg, "--headless") == 0) {
            options.headless = true;
        } else if (std::strcmp(arg, "--exit-after-first-frame") == 0) {
            options.exitAfterFirstFrame = true;
        } else if (std::strcmp(arg, "--bare-window") == 0) {
            options.bareWindow = true;
        } else if (std::strcmp(arg, "--log") == 0) {
            options.logPath = argv[++i];
        } else if (std::strcmp(arg, "--plugin") == 0) {
            options.pluginPath = argv[++i];
        } else if (std::strcmp(arg, "--size") == 0) {
            if (!parseWindowSize(argv[++i], options.width, options.height)) {
                error = std::string("--size wants WxH (1 to 32767 each), not '") + argv[i] + "'";
                return AppOptionsResult::UsageError;
            }
        } else {
            error = std::string("unknown argument ") + arg;
            return AppOptionsResult::UsageError;
        }
    }
    return AppOptionsResult::Run;
}

std::string pluginBesideProgram(const std::string& programPath) {
    size_t slash = programPath.rfind('/');
    std::string folder = slash == std::string::npos ? "." : programPath.substr(0, slash);
    for (const char* relative :
         {"/../lib/stagebeacon/libstagebeacon.so", "/../plugin/libstagebeacon.so"}) {
        std::string candidate = folder + relative;
        if (access(candidate.c_str(), R_OK) == 0) return candidate;
    }
    return "";
}
