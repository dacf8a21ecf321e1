// LibraryArtistIndex: the library's artist keys in a hash set, so matching an
// event or a release against the library costs one lookup instead of a walk
// of the whole artist list. The artist list stores keys (cleaned names), so
// "some stored name equals the key" is exactly what the walk from its head
// would answer.
//
// Built from the list under the list's lock; a snapshot, so rebuild it when
// the list may have changed (once per update is enough: the list changes
// only at start-up).
//
// Threads: built on the update thread; read-only afterwards, by the thread
// that built it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/hash_slots.h"
#include "model/library_lists.h"

class LibraryArtistIndex {
  public:
    explicit LibraryArtistIndex(XML_Artist_List& artists);

    // True when `key` is a library artist; an empty key never matches.
    bool contains(std::string_view key) const;
    size_t size() const { return ends.size(); } // distinct non-empty keys

  private:
    HashSlots<uint32_t> keys; // 1 + the key's number in `ends`
    std::vector<uint32_t> ends; // where each key ends in `storage`
    std::string storage;        // the keys' bytes, one after the other
};
