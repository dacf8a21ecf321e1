// The app's command line:
//   stagebeacon [options]
//   --headless                no window: the calendar is drawn unseen and
//                             notifications go to the log
//   --log FILE                the log (default standard output)
//   --plugin FILE             the plug-in (default: the one installed beside
//                             the program)
//   --size WxH                the unseen calendar's size, or the window's
//                             size on a first start (default 1100x700)
//   --exit-after-first-frame  quit once the first frame is on screen
//   --bare-window             an empty window without the plug-in (the
//                             start-up benchmark's floor)
//   --help
#pragma once

#include <string>

struct AppOptions {
    bool headless = false;
    std::string logPath;
    std::string pluginPath; // empty: beside the program
    int width = 1100;
    int height = 700;
    bool exitAfterFirstFrame = false;
    bool bareWindow = false;
};

enum class AppOptionsResult { Run, Help, UsageError };

[[nodiscard]] AppOptionsResult parseAppOptions(int argc, char** argv, AppOptions& options,
                                               std::string& error);
const char* appUsage();

// The plug-in installed with the program at `programPath`: lib/stagebeacon/
// of the same prefix, or, in a build tree, plugin/ beside host/. Empty when
// neither exists.
std::string pluginBesideProgram(const std::string& programPath);
