// Splitting the "@@"-joined lines of the preference file.
//
// Threads: plain functions on caller-owned text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The pieces of `line` that are followed by "@@", in order; the text after
// the last "@@" (normally empty) is returned in `rest`.
std::vector<std::string_view> separatedFields(std::string_view line, std::string_view* rest);

// Reads a whole field as a decimal int ("%d" rules: leading blanks, a sign).
// False when it does not start with a number.
[[nodiscard]] bool readInt(std::string_view field, int* value);
