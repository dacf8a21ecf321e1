// Runs the real stagebeacon-player headless on a script, in a fresh
// temporary home, and collects what it wrote.
#pragma once

#include <string>
#include <vector>

#include "temp_home.h"

struct PlayerRun {
    int status = -1;              // exit status, -1 when it did not exit normally
    std::string errors;           // standard error
    std::vector<std::string> log; // the log's lines
    std::string scriptPath;
};

// The player with "--script SCRIPT --log LOG", then arguments, then plugin.
// mode, when not empty, is given to the fake plug-in as FAKE_PLUGIN_MODE.
PlayerRun runPlayer(const TempHome& home, const std::string& script,
                    const std::string& plugin = FAKE_PLUGIN,
                    const std::vector<std::string>& arguments = {}, const std::string& mode = "");

// The lines of the log file at path (none when it does not exist).
std::vector<std::string> readLogLines(const std::string& path);

// The log lines starting with prefix, in order.
std::vector<std::string> linesStarting(const std::vector<std::string>& log,
                                       const std::string& prefix);
