#include "update/library_index.h"

#include <cstring>
#include <functional>

namespace {

uint64_t hashOf(std::string_view key) { return std::hash<std::string_view>()(key); }

} // namespace

LibraryArtistIndex::LibraryArtistIndex(XML_Artist_List& artists) {
    std::lock_guard<std::mutex> guard(artists.mutex);
    for (XMLARTIST* a = artists.head; a; a = a->next) {
        std::string_view key(a->name, strnlen(a->name, sizeof a->name));
        if (key.empty() || contains(key)) continue; // each key once; "" never matches
        storage.append(key);
        ends.push_back(static_cast<uint32_t>(storage.size()));
        keys.insert(hashOf(key), static_cast<uint32_t>(ends.size()));
    }
}

bool LibraryArtistIndex::contains(std::string_view key) const {
    if (key.empty()) return false;
    return keys.find(hashOf(key), [&](uint32_t number) {
        uint32_t start = number > 1 ? ends[number - 2] : 0;
        return std::string_view(storage).substr(start, ends[number - 1] - start) == key;
    }) != 0;
}
