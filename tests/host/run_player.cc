#include "run_player.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>

PlayerRun runPlayer(const TempHome& home, const std::string& script, const std::string& plugin,
                    const std::vector<std::string>& arguments, const std::string& mode) {
    PlayerRun run;
    run.scriptPath = home.path() + "/script.txt";
    const std::string logPath = home.path() + "/player.log";
    const std::string errorPath = home.path() + "/stderr.txt";
    writeText(run.scriptPath, script);

    std::vector<std::string> words = {PLAYER_BINARY, "--script", run.scriptPath, "--log", logPath};
    words.insert(words.end(), arguments.begin(), arguments.end());
    if (!plugin.empty()) words.push_back(plugin);
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(&word[0]);
    argv.push_back(nullptr);

    pid_t pid = fork();
    if (pid == 0) {
        if (!mode.empty()) setenv("FAKE_PLUGIN_MODE", mode.c_str(), 1);
        if (!std::freopen(errorPath.c_str(), "w", stderr)) _exit(126);
        execv(PLAYER_BINARY, argv.data());
        _exit(127);
    }
    int status = 0;
    if (pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status))
        run.status = WEXITSTATUS(status);
    run.errors = exists(errorPath) ? readText(errorPath) : "";
    run.log = readLogLines(logPath);
    return run;
}

std::vector<std::string> readLogLines(const std::string& path) {
    std::vector<std::string> lines;
    std::istringstream text(exists(path) ? readText(path) : "");
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> linesStarting(const std::vector<std::string>& log,
                                       const std::string& prefix) {
    std::vector<std::string> found;
    for (const std::string& line : log)
        if (line.compare(0, prefix.size(), prefix) == 0) found.push_back(line);
    return found;
}
