// The shared state of the headless back ends: a bounded log and two queues
// of scripted answers.
#include "platform/headless.h"

#include <deque>
#include <mutex>

namespace {

struct HeadlessState {
    std::mutex mutex;
    std::deque<std::string> log;
    void (*sink)(const std::string&) = nullptr;
    std::deque<AlertButton> alertAnswers;
    std::deque<std::string> fileChoices; // "" stands for a cancel
};

HeadlessState& state() {
    static HeadlessState instance;
    return instance;
}

} // namespace

void headlessLog(const std::string& line) {
    void (*sink)(const std::string&) = nullptr;
    {
        std::lock_guard<std::mutex> guard(state().mutex);
        state().log.push_back(line);
        if (state().log.size() > kHeadlessLogLimit) state().log.pop_front();
        sink = state().sink;
    }
    if (sink) sink(line);
}

std::vector<std::string> headlessLogLines() {
    std::lock_guard<std::mutex> guard(state().mutex);
    return std::vector<std::string>(state().log.begin(), state().log.end());
}

void setHeadlessLogSink(void (*sink)(const std::string& line)) {
    std::lock_guard<std::mutex> guard(state().mutex);
    state().sink = sink;
}

void scriptAlertAnswer(AlertButton answer) {
    std::lock_guard<std::mutex> guard(state().mutex);
    state().alertAnswers.push_back(answer);
}

void scriptFileChoice(const std::string& path) {
    std::lock_guard<std::mutex> guard(state().mutex);
    state().fileChoices.push_back(path);
}

void scriptFileCancel() { scriptFileChoice(std::string()); }

void resetHeadless() {
    std::lock_guard<std::mutex> guard(state().mutex);
    state().log.clear();
    state().sink = nullptr;
    state().alertAnswers.clear();
    state().fileChoices.clear();
}

bool takeScriptedAlertAnswer(AlertButton* answer) {
    std::lock_guard<std::mutex> guard(state().mutex);
    if (state().alertAnswers.empty()) return false;
    *answer = state().alertAnswers.front();
    state().alertAnswers.pop_front();
    return true;
}

bool takeScriptedFileChoice(std::string* path) {
    std::lock_guard<std::mutex> guard(state().mutex);
    if (state().fileChoices.empty()) return false;
    *path = state().fileChoices.front();
    state().fileChoices.pop_front();
    return true;
}
