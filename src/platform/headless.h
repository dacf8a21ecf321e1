// The script and the log of the headless back ends. A headless run (the
// player without a display, and the tests) decides in advance how alerts and
// file dialogs are answered, and reads back what would have been shown.
//
// Threads: every function may be called from any thread; all of them take
// one internal mutex and never block otherwise.
#pragma once

#include <string>
#include <vector>

#include "platform/alert.h"

// The log keeps at most this many lines, dropping the oldest.
constexpr size_t kHeadlessLogLimit = 1000;

void headlessLog(const std::string& line);
std::vector<std::string> headlessLogLines();
// Each logged line is also handed to `sink` (the player prints them); null
// for none.
void setHeadlessLogSink(void (*sink)(const std::string& line));

// Answers for the next alerts and file dialogs, used in order. With none
// queued an alert takes its default button and a file dialog is cancelled.
void scriptAlertAnswer(AlertButton answer);
void scriptFileChoice(const std::string& path);
void scriptFileCancel();

// Where answers come from once none is queued here: a host that keeps its
// own script (the player) answers through these. Each returns false when it
// has none; a file answer of "" stands for a cancel. Null for no source.
struct HeadlessAnswerSource {
    bool (*alertAnswer)(AlertButton* answer);
    bool (*fileChoice)(std::string* path);
};
void setHeadlessAnswerSource(const HeadlessAnswerSource* source);

// Forgets the log, the sink, the queued answers and the answer source.
void resetHeadless();

// For the headless back ends: the next queued answer, if any.
bool takeScriptedAlertAnswer(AlertButton* answer);
// True with a path, or true with an empty path for a scripted cancel.
bool takeScriptedFileChoice(std::string* path);
