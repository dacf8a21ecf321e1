// Text helpers the data sources share for reading replies and building
// query values. All work on NUL-terminated byte strings; positions are byte
// indexes from the start of the text. Null texts are treated as not found
// or left alone.
//
// Threads: any; they touch only their arguments.
#pragma once

#include <string_view>

// Index of the first `needle` at or after `start`, or -1 (also when the text
// is shorter than `start`, or `start` is negative).
[[nodiscard]] int strFind(const char* text, const char* needle, int start);
// As strFind, but -1 unless end > start and the whole occurrence ends at or
// before `end`.
[[nodiscard]] int strFindBetween(const char* text, const char* needle, int start, int end);
// Remove blanks (" " only) at the end / at the start, in place.
void strRemoveTrailingSpaces(char* text);
void strRemoveLeadingSpaces(char* text);
// Turns every blank into "+", in place: the only escaping query values get.
void replaceSpacesWithPluses(char* text);

// The text between the first `open` in `line` and the first `close` after
// it: true and `value` set, or false when either is missing. Replies are
// read element by element this way, one line at a time.
bool elementBetween(std::string_view line, std::string_view open, std::string_view close,
                    std::string_view& value);
