// HostServices: the PlayerHostServices record handed to the plug-in at
// init. Its log goes to the player's log; its alert and file-dialog
// answers come from queues the headless script fills (`answer`,
// `choose`, `choose-cancel`). A windowed player sets headless to 0 and
// the plug-in shows its own dialogs; the queues then stay empty.
//
// Threads: the plug-in may call the services from any thread; the queues
// are guarded by a mutex, the log has its own.
#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

#include "log.h"
#include "player_api.h"

class HostServices {
  public:
    HostServices(PlayerLog& log, bool headless);
    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

    const PlayerHostServices* record() const { return &services; }

    // answer: 0 the default button, 1 the cancel button.
    void queueAlertAnswer(int32_t answer);
    // chosen false: the dialog is cancelled.
    void queueFileChoice(bool chosen, const std::string& path);

  private:
    struct FileChoice {
        bool chosen;
        std::string path;
    };
    static void logLine(void* hostData, const char* line);
    static int32_t takeAlertAnswer(void* hostData);
    static int32_t takeFileChoice(void* hostData, char* path, size_t size);

    PlayerHostServices services{};
    PlayerLog& log;
    std::mutex mutex;
    std::deque<int32_t> alertAnswers;
    std::deque<FileChoice> fileChoices;
};
