// Script lines for the headless player.
//
// One command per line; blank lines and lines whose first non-blank
// character is '#' are ignored. Arguments are separated by blanks; a
// double-quoted argument may hold blanks and the escapes \" and \\. The
// player's own verbs are checked here (argument count, numbers, ranges);
// any other verb is kept with the rest of its line for the plug-in's
// scriptCommand to judge.
#pragma once

#include <string>
#include <vector>

enum class ScriptVerb {
    Show,
    Resize,
    Hide,
    Idle,
    Down,
    Up,
    CtrlUp,
    Right,
    Move,
    Wheel,
    Key,
    Type,
    Track,
    Play,
    Pause,
    Unpause,
    Configure,
    Snapshot,
    WaitUpdates,
    Answer,
    Choose,
    ChooseCancel,
    Sleep,
    Quit,
    PluginCommand // a verb the player does not know: for the plug-in
};

struct ScriptCommand {
    ScriptVerb verb = ScriptVerb::Quit;
    std::string name;               // the verb as written
    std::vector<long> numbers;      // numeric arguments (key: the code), in order
    std::vector<std::string> texts; // text arguments (track artist and album, path, typed text)
    double seconds = 0;             // wait-updates
    std::string rest;               // the raw text after the verb (plug-in commands)
};

enum class ParseResult { Command, Empty, Error };

// Parses one line. Error leaves what is wrong in error (without the
// file:line prefix, which the caller knows).
[[nodiscard]] ParseResult parseScriptCommand(const std::string& line, ScriptCommand& command,
                                             std::string& error);

// Splits text into words (quotes and escapes resolved). false with a
// reason in error on an unterminated quote or a stray escape at the end.
[[nodiscard]] bool splitScriptWords(const std::string& text, std::vector<std::string>& words,
                                    std::string& error);

// A key argument: a number from 0 to 255 or one of tab, return, enter,
// backspace, left, right, up, down, space. -1 when it is neither.
int keyCodeFromWord(const std::string& word);
