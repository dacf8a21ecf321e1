#include "host_services.h"

#include <cstdio>

HostServices::HostServices(PlayerLog& playerLog, bool headless) : log(playerLog) {
    services.recordLength = sizeof services;
    services.headless = headless ? 1 : 0;
    services.hostData = this;
    services.log = logLine;
    services.takeAlertAnswer = takeAlertAnswer;
    services.takeFileChoice = takeFileChoice;
}

void HostServices::queueAlertAnswer(int32_t answer) {
    std::lock_guard<std::mutex> guard(mutex);
    alertAnswers.push_back(answer);
}

void HostServices::queueFileChoice(bool chosen, const std::string& path) {
    std::lock_guard<std::mutex> guard(mutex);
    fileChoices.push_back(FileChoice{chosen, path});
}

void HostServices::logLine(void* hostData, const char* line) {
    static_cast<HostServices*>(hostData)->log.writeLine(line ? line : "");
}

int32_t HostServices::takeAlertAnswer(void* hostData) {
    HostServices* self = static_cast<HostServices*>(hostData);
    std::lock_guard<std::mutex> guard(self->mutex);
    if (self->alertAnswers.empty()) return -1;
    int32_t answer = self->alertAnswers.front();
    self->alertAnswers.pop_front();
    return answer;
}

int32_t HostServices::takeFileChoice(void* hostData, char* path, size_t size) {
    HostServices* self = static_cast<HostServices*>(hostData);
    std::lock_guard<std::mutex> guard(self->mutex);
    if (self->fileChoices.empty()) return -1;
    FileChoice choice = self->fileChoices.front();
    self->fileChoices.pop_front();
    if (!choice.chosen) return 0;
    if (path && size > 0) std::snprintf(path, size, "%s", choice.path.c_str());
    return 1;
}
