#include "model/artist_key.h"

#include <cctype>
#include <cstring>
#include <string>

namespace {

void writeBack(char* buffer, const std::string& text) {
    size_t n = text.size() < kArtistKeySize - 1 ? text.size() : kArtistKeySize - 1;
    memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
}

// Keeps the characters for which `keep` is true, in place.
template <typename Predicate> void eraseUnless(char* buffer, Predicate keep) {
    char* out = buffer;
    for (const char* in = buffer; *in; ++in)
        if (keep(static_cast<unsigned char>(*in))) *out++ = *in;
    *out = '\0';
}

bool isDigitOrLower(unsigned char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z'); }

// A leading `word` (such as "the ") becomes a single blank.
void replaceLeading(std::string& text, const char* word) {
    size_t n = strlen(word);
    if (text.compare(0, n, word) == 0) text.replace(0, n, " ");
}

} // namespace

void substringReplace(char* buffer, const char* pattern, const char* replacement) {
    size_t patternLength = strlen(pattern);
    if (patternLength == 0) return;
    std::string text(buffer);
    std::string with(replacement);
    // Searching again from the replacement's own position re-reads the
    // replacement; when it contains the pattern that would never end, so the
    // search then resumes after it.
    size_t step = with.find(pattern) == std::string::npos ? 0 : with.size();
    size_t pos = text.find(pattern);
    while (pos != std::string::npos) {
        text.replace(pos, patternLength, with);
        pos = text.find(pattern, pos + step);
    }
    writeBack(buffer, text);
}

void substringInitialErase(char* buffer) {
    eraseUnless(buffer, [](unsigned char c) {
        return isDigitOrLower(c) || c == '&' || c == '#' || c == ';' || c == ' ';
    });
}

void substringErase(char* buffer) { eraseUnless(buffer, isDigitOrLower); }

void cleanArtist(char* buffer) {
    char key[kArtistKeySize];
    size_t n = 0;
    for (; n < kArtistKeySize - 1 && buffer[n]; ++n)
        key[n] = static_cast<char>(tolower(static_cast<unsigned char>(buffer[n])));
    key[n] = '\0';

    substringInitialErase(key);
    // "_" can no longer occur after the erase above; the step is kept so the
    // key stays the one every saved list and service was built with.
    substringReplace(key, "_", " ");
    substringReplace(key, " and ", " ");
    substringReplace(key, " the ", " ");
    substringReplace(key, " a ", " ");

    std::string text(key);
    replaceLeading(text, "and ");
    replaceLeading(text, "the ");
    replaceLeading(text, "a ");
    writeBack(key, text);

    substringReplace(key, "&#38;", " ");
    substringErase(key);
    strcpy(buffer, key);
}
