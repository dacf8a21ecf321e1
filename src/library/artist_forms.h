// Library names in their comparison form, with the comma rule: an artist
// written "Beatles, The" is known under both word orders.
//
// Threads: plain functions.
#pragma once

#include <string>
#include <string_view>

// cleanArtist of the first 255 characters of `text`.
std::string cleanedName(std::string_view text);

struct ArtistForms {
    // What the scan keeps for the track: one key, or for a comma name the two
    // keys joined by ",".
    std::string stored;
    // For a comma name: the keys of B followed by A and of A followed by B,
    // where A is the text before the first comma and B the text after it
    // (with its leading blank). Both empty otherwise.
    std::string reordered;
    std::string asWritten;
    bool split = false;
};

// The comma rule applies when the first comma is neither the first nor the
// last character; otherwise the whole text is cleaned.
ArtistForms artistFormsOf(std::string_view text);
