// PlayerLog: the player's log, one line at a time (standard output or the
// file given with --log). The plug-in writes to it through the host
// services from any of its threads, so every line is written whole under a
// mutex and flushed at once: a test or a user tailing the log sees each
// line as soon as it is written.
#pragma once

#include <cstdio>
#include <mutex>
#include <string>

class PlayerLog {
  public:
    PlayerLog() = default;
    ~PlayerLog();
    PlayerLog(const PlayerLog&) = delete;
    PlayerLog& operator=(const PlayerLog&) = delete;

    // Opens path for writing (truncated), or standard output when path is
    // empty. false with a reason in error when the file cannot be opened.
    [[nodiscard]] bool open(const std::string& path, std::string& error);

    // Writes text and a newline. Any thread.
    void writeLine(const std::string& text);

  private:
    std::mutex mutex;
    FILE* file = nullptr;
    bool ownsFile = false;
};
