// stagebeacon-player: loads a visual plug-in (libstagebeacon.so or any
// library with the entry point of player_api.h) and drives it with the
// player's messages, in a GTK window or headless from a script.
//
// Exit status: 0 done, 1 failure (plug-in, script, files), 2 usage.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

#include "headless_run.h"
#include "host_services.h"
#include "log.h"
#include "options.h"
#include "session.h"
#include "window_run.h"

namespace {

int fail(const std::string& message) {
    std::fprintf(stderr, "stagebeacon-player: %s\n", message.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    PlayerOptions options;
    std::string error;
    switch (parsePlayerOptions(argc, argv, options, error)) {
    case OptionsResult::Help:
        std::fputs(playerUsage(), stdout);
        return 0;
    case OptionsResult::UsageError:
        std::fprintf(stderr, "stagebeacon-player: %s (see --help)\n", error.c_str());
        return 2;
    case OptionsResult::Run:
        break;
    }

    PlayerLog log;
    if (!log.open(options.logPath, error)) return fail(error);

    std::ifstream scriptFile;
    std::istream* script = &std::cin;
    std::string scriptName = "stdin";
    if (options.headless && !options.scriptPath.empty() && options.scriptPath != "-") {
        scriptFile.open(options.scriptPath);
        if (!scriptFile)
            return fail("cannot read script " + options.scriptPath + ": " + std::strerror(errno));
        script = &scriptFile;
        scriptName = options.scriptPath;
    }
    if (!options.headless && !openDisplay(&argc, &argv))
        return fail("cannot open a display; run it with --headless --script FILE instead");

    HostServices services(log, options.headless);
    VisualSession session;
    if (!session.start(options.pluginPath, services.record(), error)) return fail(error);

    if (options.headless) return runHeadless(session, services, log, *script, scriptName);
    return runWindowed(session, log,
                       WindowSettings{options.width, options.height, options.libraryPath});
}
