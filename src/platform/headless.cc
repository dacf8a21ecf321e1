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
    const HeadlessAnswerSource* source = nullptr;
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
    state().source = nullptr;
}

void setHeadlessAnswerSource(const HeadlessAnswerSource* source) {
    std::lock_guard<std::mutex> guard(state().mutex);
    state().source = source;
}

bool takeScriptedAlertAnswer(AlertButton* answer) {
    const HeadlessAnswerSource* source = nullptr;
    {
        std::lock_guard<std::mutex> guard(state().mutex);
        if (!state().alertAnswers.empty()) {
            *answer = state().alertAnswers.front();
            state().alertAnswers.pop_front();
            return true;
        }
        source = state().source;
    }
    // Asked without the lock: the source may log.
    return source && source->alertAnswer && source->alertAnswer(answer);
}

bool takeScriptedFileChoice(std::string* path) {
    const HeadlessAnswerSource* source = nullptr;
    {
        std::lock_guard<std::mutex> guard(state().mutex);
        if (!state().fileChoices.empty()) {
            *path = state().fileChoices.front();
            state().fileChoices.pop_front();
            return true;
        }
        source = state().source;
    }
    return source && source->fileChoice && source->fileChoice(path);
}
