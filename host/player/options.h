// The player's command line:
//   stagebeacon-player [options] PLUGIN.so
//   --headless          run without a window, reading the script from stdin
//   --script FILE       run FILE's commands headless ('-' reads stdin)
//   --log FILE          the log (default standard output)
//   --library FILE      the music library the player bar steps through
//   --size WxH          the window's start size (default 1100x700)
//   --help
#pragma once

#include <string>

struct PlayerOptions {
    std::string pluginPath;
    bool headless = false;
    std::string scriptPath; // empty: none given (headless reads stdin)
    std::string logPath;    // empty: standard output
    std::string libraryPath;
    int width = 1100;
    int height = 700;
};

enum class OptionsResult { Run, Help, UsageError };

// Fills options from argv. UsageError leaves a one-line reason in error.
// The library path defaults to the player's usual place under $HOME.
[[nodiscard]] OptionsResult parsePlayerOptions(int argc, char** argv, PlayerOptions& options,
                                               std::string& error);

// "WxH" with both sides from 1 to 32767 (the port's rectangle is int16).
[[nodiscard]] bool parseWindowSize(const char* text, int& width, int& height);

// The --help text.
const char* playerUsage();
