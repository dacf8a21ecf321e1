#include "model/artist_key.h"

#include "model/fixed_text.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

// Keeps the characters for which `keep` is true, in place.
template <typename Predicate> void eraseUnless(char* buffer, Predicate keep) {
    char* out = buffer;
    for (const char* in = buffer; *in; ++in)
        if (keep(static_cast<unsigned char>(*in))) *out++ = *in;
    *out = '\0';
}

bool isDigitOrLower(unsigned char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z'); }

// A leading `word` (such as "the ") becomes a single blank; never grows.
void replaceLeading(char* text, const char* word) {
    size_t n = strlen(word);
    if (strncmp(text, word, n) != 0) return;
    memmove(text + 1, text + n, strlen(text + n) + 1);
    text[0] = ' ';
}

} // namespace

void substringReplace(char* buffer, const char* pattern, const char* replacement) {
    size_t patternLength = strlen(pattern);
    if (patternLength == 0) return;
    size_t withLength = strlen(replacement);
    // Searching again from the replacement's own position re-reads the
    // replacement; when it contains the pattern that would never end, so the
    // search then resumes after it.
    size_t step = strstr(replacement, pattern) ? withLength : 0;

    // Works on a fixed copy, cut at 255 characters after every replacement,
    // so no allocation happens on this hot path (every artist key uses it).
    char text[kArtistKeySize];
    copyText(text, buffer);
    size_t length = strlen(text);
    for (char* hit = strstr(text, pattern); hit; ) {
        size_t pos = static_cast<size_t>(hit - text);
        size_t tail = length - pos - patternLength;
        char rest[kArtistKeySize];
        memcpy(rest, hit + patternLength, tail + 1);
        size_t n = pos;
        size_t take = std::min(withLength, kArtistKeySize - 1 - n);
        memcpy(text + n, replacement, take);
        n += take;
        take = std::min(tail, kArtistKeySize - 1 - n);
        memcpy(text + n, rest, take);
        n += take;
        text[n] = '\0';
        length = n;
        size_t next = pos + step;
        hit = next <= length ? strstr(text + next, pattern) : nullptr;
    }
    strcpy(buffer, text);
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

    replaceLeading(key, "and ");
    replaceLeading(key, "the ");
    replaceLeading(key, "a ");

    substringReplace(key, "&#38;", " ");
    substringErase(key);
    strcpy(buffer, key);
}
