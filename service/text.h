// Small pure text helpers shared by the service's parsers and replies.
#pragma once

#include <string>
#include <vector>

namespace service {

// The form names are compared in: lower case (ASCII), blanks at either end
// dropped and inner runs of blanks made one. "  New   YORK " -> "new york".
std::string nameKey(const std::string& text);

// Splits at every occurrence of `separator` (not empty); "" gives one empty piece.
std::vector<std::string> split(const std::string& text, const std::string& separator);
std::string join(const std::vector<std::string>& pieces, const std::string& separator);

// For values written between the plug-in's tags: the plug-in takes a value
// up to the first closing tag and splits pages at line feeds, so angle
// brackets are dropped and control characters become blanks.
std::string tagSafe(const std::string& text);

// True when every character is a letter, digit or blank (account names).
bool isPlainName(const std::string& text);

// Reads a whole decimal integer in [minimum, maximum]; false otherwise.
bool parseInt(const std::string& text, long minimum, long maximum, long& value);

} // namespace service
