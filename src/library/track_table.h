// TrackTable: from a track's number to its names, for the pass over the
// plug-in's playlist, which names its members by track number only.
//
// A library holds one entry per track, so the table is kept small: the
// player writes track numbers as plain decimal numbers, and those are kept
// as numbers in a flat array (16 bytes a track: the number and the numbers
// of its names in the scan's name caches) that is sorted once, when the
// first member is looked up; any other number text goes to a small map.
//
// Threads: one table is used by one thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class TrackTable {
  public:
    static constexpr uint32_t kNoName = UINT32_MAX;
    struct Names {
        uint32_t artist = kNoName;
        uint32_t album = kNoName;
    };

    // Records track `id`'s names. A number seen again takes the new artist,
    // and the new album when there is one (kNoName keeps the earlier album).
    void record(std::string_view id, uint32_t artist, uint32_t album);
    // The names recorded for `id`; false when there are none.
    [[nodiscard]] bool find(std::string_view id, Names* names);

  private:
    struct Numbered {
        uint64_t id;
        uint32_t artist;
        uint32_t album;
    };

    std::vector<Numbered> numbered;
    bool sorted = true;
    std::unordered_map<std::string, Names> other;
};
