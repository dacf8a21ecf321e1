#include "update/library_index.h"

#include <cstring>
#include <vector>

LibraryArtistIndex::LibraryArtistIndex(XML_Artist_List& artists) {
    std::lock_guard<std::mutex> guard(artists.mutex);
    std::vector<size_t> ends;
    for (XMLARTIST* a = artists.head; a; a = a->next) {
        storage.append(a->name, strnlen(a->name, sizeof a->name));
        ends.push_back(storage.size());
    }
    keys.reserve(ends.size());
    size_t start = 0;
    for (size_t end : ends) {
        keys.insert(std::string_view(storage).substr(start, end - start));
        start = end;
    }
}

bool LibraryArtistIndex::contains(std::string_view key) const {
    return !key.empty() && keys.count(key) != 0;
}
