#include "library/track_table.h"

#include <algorithm>

namespace {

// True with the value for a plain decimal number of at most 18 digits and
// no leading zero (so that equal numbers are equal texts).
bool plainNumber(std::string_view text, uint64_t* value) {
    constexpr size_t kMaxDigits = 18;
    if (text.empty() || text.size() > kMaxDigits || (text[0] == '0' && text.size() > 1))
        return false;
    uint64_t number = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        number = number * 10 + static_cast<uint64_t>(c - '0');
    }
    *value = number;
    return true;
}

} // namespace

void TrackTable::record(std::string_view id, uint32_t artist, uint32_t album) {
    uint64_t number = 0;
    if (!plainNumber(id, &number)) {
        Names& names = other[std::string(id)];
        names.artist = artist;
        if (album != kNoName) names.album = album;
        return;
    }
    if (!numbered.empty() && number < numbered.back().id) sorted = false;
    numbered.push_back(Numbered{number, artist, album});
}

bool TrackTable::find(std::string_view id, Names* names) {
    uint64_t number = 0;
    if (!plainNumber(id, &number)) {
        auto found = other.find(std::string(id));
        if (found == other.end()) return false;
        *names = found->second;
        return true;
    }
    auto byId = [](const Numbered& a, const Numbered& b) { return a.id < b.id; };
    if (!sorted) {
        // Stable: records of one number stay in the order they were made.
        std::stable_sort(numbered.begin(), numbered.end(), byId);
        sorted = true;
    }
    auto range = std::equal_range(numbered.begin(), numbered.end(), Numbered{number, kNoName, kNoName},
                                  byId);
    if (range.first == range.second) return false;
    *names = Names();
    for (auto it = range.first; it != range.second; ++it) {
        names->artist = it->artist;
        if (it->album != kNoName) names->album = it->album;
    }
    return true;
}
