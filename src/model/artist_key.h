// The artist comparison key: every comparison of artist names in the plug-in
// goes through cleanArtist, so "The Beatles", "Beatles" and "beatles!" all
// meet as "beatles". The three substring helpers work in place on the
// NUL-terminated char[256] buffers the record types use.
//
// Threads: plain functions on the caller's buffers; any thread.
#pragma once

// Size of every buffer these functions take (they write at most 255 characters).
constexpr int kArtistKeySize = 256;

// Replaces every occurrence of `pattern` with `replacement`, searching again
// from the position of the last replacement (so "x and and y" loses both
// " and "s when " and " becomes " "). Writes back at most 255 characters.
// An empty pattern changes nothing.
void substringReplace(char* buffer, const char* pattern, const char* replacement);

// Deletes every character except 0-9, a-z, '&', '#', ';' and the blank.
void substringInitialErase(char* buffer);

// Deletes every character except 0-9 and a-z.
void substringErase(char* buffer);

// Turns an artist name into its comparison key: lower case, the words
// "and", "the", "a" and the reference "&#38;" removed, then only letters and
// digits kept. `buffer` holds at least 256 bytes.
void cleanArtist(char* buffer);
