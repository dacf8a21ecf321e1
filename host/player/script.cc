#include "script.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "display_buffer.h"

namespace {

// Argument patterns: 'n' a count (0 or more), 'i' a signed integer, 'c' a port coordinate (int16),
// 's' a text word, 'k' a key, 'd' seconds (decimal), 'a' default|cancel, 'T' the rest of the line
// (or one quoted word).
struct VerbRow {
    const char* name;
    ScriptVerb verb;
    const char* pattern;
};

const VerbRow kVerbs[] = {
    {"show", ScriptVerb::Show, "cccc"},
    {"resize", ScriptVerb::Resize, "cccc"},
    {"hide", ScriptVerb::Hide, ""},
    {"idle", ScriptVerb::Idle, "n"},
    {"down", ScriptVerb::Down, "cc"},
    {"up", ScriptVerb::Up, "cc"},
    {"ctrl-up", ScriptVerb::CtrlUp, "cc"},
    {"right", ScriptVerb::Right, "cc"},
    {"move", ScriptVerb::Move, "cc"},
    {"wheel", ScriptVerb::Wheel, "cci"},
    {"key", ScriptVerb::Key, "k"},
    {"type", ScriptVerb::Type, "T"},
    {"track", ScriptVerb::Track, "ss"},
    {"play", ScriptVerb::Play, "ss"},
    {"pause", ScriptVerb::Pause, ""},
    {"unpause", ScriptVerb::Unpause, ""},
    {"configure", ScriptVerb::Configure, ""},
    {"snapshot", ScriptVerb::Snapshot, "s"},
    {"wait-updates", ScriptVerb::WaitUpdates, "d"},
    {"answer", ScriptVerb::Answer, "a"},
    {"choose", ScriptVerb::Choose, "s"},
    {"choose-cancel", ScriptVerb::ChooseCancel, ""},
    {"sleep", ScriptVerb::Sleep, "n"},
    {"quit", ScriptVerb::Quit, ""},
};

struct KeyName {
    const char* name;
    int code;
};

const KeyName kKeyNames[] = {{"tab", 9},       {"return", 13}, {"enter", 13},
                             {"backspace", 8}, {"left", 28},   {"right", 29},
                             {"up", 30},       {"down", 31},   {"space", 32}};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string trim(const std::string& text) {
    size_t first = 0;
    while (first < text.size() && isBlank(text[first]))
        ++first;
    size_t last = text.size();
    while (last > first && isBlank(text[last - 1]))
        --last;
    return text.substr(first, last - first);
}

bool parseInteger(const std::string& word, long low, long high, long& value) {
    if (word.empty()) return false;
    errno = 0;
    char* end = nullptr;
    long parsed = std::strtol(word.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || parsed < low || parsed > high) return false;
    value = parsed;
    return true;
}

bool parseSeconds(const std::string& word, double& value) {
    if (word.empty()) return false;
    char* end = nullptr;
    double parsed = std::strtod(word.c_str(), &end);
    // A day is more than any script should wait; past it is a typo.
    if (*end != '\0' || !(parsed >= 0 && parsed <= 86400)) return false;
    value = parsed;
    return true;
}

// Checks one argument against its pattern letter and stores it.
bool takeArgument(char kind, const std::string& word, ScriptCommand& command, std::string& error) {
    long number = 0;
    switch (kind) {
    case 'n':
        if (!parseInteger(word, 0, 2147483647L, number)) {
            error = command.name + ": '" + word + "' is not a number (0 or more)";
            return false;
        }
        command.numbers.push_back(number);
        return true;
    case 'i':
        if (!parseInteger(word, -2147483647L, 2147483647L, number)) {
            error = command.name + ": '" + word + "' is not a whole number";
            return false;
        }
        command.numbers.push_back(number);
        return true;
    case 'c':
        if (!parseInteger(word, -32768, 32767, number)) {
            error = command.name + ": '" + word + "' is not a coordinate (-32768 to 32767)";
            return false;
        }
        command.numbers.push_back(number);
        return true;
    case 'k':
        number = keyCodeFromWord(word);
        if (number < 0) {
            error = command.name + ": '" + word + "' is not a key code (0 to 255) or key name";
            return false;
        }
        command.numbers.push_back(number);
        return true;
    case 'd':
        if (!parseSeconds(word, command.seconds)) {
            error = command.name + ": '" + word + "' is not a number of seconds";
            return false;
        }
        return true;
    case 'a':
        if (word != "default" && word != "cancel") {
            error = command.name + ": expected default or cancel, not '" + word + "'";
            return false;
        }
        command.numbers.push_back(word == "cancel" ? 1 : 0);
        return true;
    default:
        command.texts.push_back(word);
        return true;
    }
}

// Window rectangles must have a size and fit the player's largest port.
bool checkWindow(const ScriptCommand& command, std::string& error) {
    long x = command.numbers[0], y = command.numbers[1];
    long width = command.numbers[2], height = command.numbers[3];
    if (x < 0 || y < 0 || width < 1 || height < 1 || x + width > kMaxPortSide ||
        y + height > kMaxPortSide) {
        error = command.name + ": X Y W H must be at least 0 0 1 1 and X+W, Y+H at most " +
                std::to_string(kMaxPortSide);
        return false;
    }
    return true;
}

} // namespace

bool splitScriptWords(const std::string& text, std::vector<std::string>& words,
                      std::string& error) {
    size_t i = 0;
    while (i < text.size()) {
        if (isBlank(text[i])) {
            ++i;
            continue;
        }
        std::string word;
        if (text[i] == '"') {
            ++i;
            bool closed = false;
            while (i < text.size()) {
                char c = text[i++];
                if (c == '"') {
                    closed = true;
                    break;
                }
                if (c == '\\' && i < text.size() && (text[i] == '"' || text[i] == '\\'))
                    c = text[i++];
                word += c;
            }
            if (!closed) {
                error = "unterminated quote";
                return false;
            }
        } else {
            while (i < text.size() && !isBlank(text[i]))
                word += text[i++];
        }
        words.push_back(word);
    }
    return true;
}

int keyCodeFromWord(const std::string& word) {
    for (const KeyName& key : kKeyNames)
        if (word == key.name) return key.code;
    long code = 0;
    return parseInteger(word, 0, 255, code) ? static_cast<int>(code) : -1;
}

ParseResult parseScriptCommand(const std::string& line, ScriptCommand& command,
                               std::string& error) {
    command = ScriptCommand();
    std::string text = trim(line);
    if (text.empty() || text[0] == '#') return ParseResult::Empty;

    size_t verbEnd = 0;
    while (verbEnd < text.size() && !isBlank(text[verbEnd]))
        ++verbEnd;
    command.name = text.substr(0, verbEnd);
    command.rest = trim(text.substr(verbEnd));

    std::vector<std::string> words;
    if (!splitScriptWords(command.rest, words, error)) return ParseResult::Error;

    const VerbRow* row = nullptr;
    for (const VerbRow& candidate : kVerbs)
        if (command.name == candidate.name) row = &candidate;
    if (!row) {
        command.verb = ScriptVerb::PluginCommand;
        return ParseResult::Command;
    }
    command.verb = row->verb;

    if (std::strcmp(row->pattern, "T") == 0) {
        // Unquoted, the rest of the line is the text, blanks included.
        bool quoted = !command.rest.empty() && command.rest[0] == '"';
        if (command.rest.empty() || (quoted && words.size() != 1)) {
            error = command.name + ": expected one text (the rest of the line or one quoted text)";
            return ParseResult::Error;
        }
        command.texts.push_back(quoted ? words[0] : command.rest);
        return ParseResult::Command;
    }

    size_t wanted = std::strlen(row->pattern);
    if (words.size() != wanted) {
        error = command.name + ": expected " + std::to_string(wanted) + " argument" +
                (wanted == 1 ? "" : "s") + ", got " + std::to_string(words.size());
        return ParseResult::Error;
    }
    for (size_t i = 0; i < wanted; ++i)
        if (!takeArgument(row->pattern[i], words[i], command, error)) return ParseResult::Error;
    if ((command.verb == ScriptVerb::Show || command.verb == ScriptVerb::Resize) &&
        !checkWindow(command, error))
        return ParseResult::Error;
    return ParseResult::Command;
}
