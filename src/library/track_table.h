// TrackTable: from a track's number to its names, for the pass over the
// plug-in's playlist, which names its members by track number only.
//
// A library holds one entry per track, so the table is kept small: the
// player writes track numbers as plain decimal numbers, and those are kept
// as numbers in a flat array (24 bytes a track) that is sorted once, when the
// first member is looked up; any other number text goes to a small map.
//
// Threads: one table is used by one thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/artist_forms.h"

class TrackTable {
  public:
    struct Names {
        const ArtistForms* artist = nullptr;
        const std::string* album = nullptr;
    };

    // Records track `id`'s names. A number seen again takes the new artist,
    // and the new album when there is one (null keeps the earlier album).
    void record(std::string_view id, const ArtistForms* artist, const std::string* album);
    // The names recorded for `id`; false when there are none.
    [[nodiscard]] bool find(std::string_view id, Names* names);

  private:
    struct Numbered {
        uint64_t id;
        const ArtistForms* artist;
        const std::string* album;
    };

    std::vector<Numbered> numbered;
    bool sorted = true;
    std::unordered_map<std::string, Names> other;
};
