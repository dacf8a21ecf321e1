// Substring search within limits, blank trimming and query escaping.
#include "net/text_helpers.h"

#include <cstring>

int strFind(const char* text, const char* needle, int start) {
    if (!text || !needle || start < 0) return -1;
    size_t length = strlen(text);
    if (length < static_cast<size_t>(start)) return -1;
    const char* found = strstr(text + start, needle);
    return found ? static_cast<int>(found - text) : -1;
}

int strFindBetween(const char* text, const char* needle, int start, int end) {
    if (end <= start) return -1;
    int found = strFind(text, needle, start);
    if (found < 0) return -1;
    if (static_cast<long>(found) + static_cast<long>(strlen(needle)) > end) return -1;
    return found;
}

void strRemoveTrailingSpaces(char* text) {
    if (!text) return;
    size_t length = strlen(text);
    while (length > 0 && text[length - 1] == ' ')
        text[--length] = '\0';
}

void strRemoveLeadingSpaces(char* text) {
    if (!text) return;
    size_t blanks = strspn(text, " ");
    if (blanks > 0) memmove(text, text + blanks, strlen(text + blanks) + 1);
}

void replaceSpacesWithPluses(char* text) {
    if (!text) return;
    for (; *text; ++text) {
        if (*text == ' ') *text = '+';
    }
}

bool elementBetween(std::string_view line, std::string_view open, std::string_view close,
                    std::string_view& value) {
    size_t start = line.find(open);
    if (start == std::string_view::npos) return false;
    start += open.size();
    size_t end = line.find(close, start);
    if (end == std::string_view::npos) return false;
    value = line.substr(start, end - start);
    return true;
}
