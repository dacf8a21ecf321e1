#include "model/show_list.h"

#include <cstring>
#include <functional>
#include <iterator>
#include <string_view>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "model/linked.h"
#include "model/protected_data.h"

SHOWENTRY::~SHOWENTRY() {
    deleteNames(tags);
    delete tags;
}

namespace {

// The artist key of the first 255 characters of `artist`.
void keyOf(const char* artist, char (&key)[kArtistKeySize]) {
    copyText(key, artist);
    cleanArtist(key);
}

bool hidden(ProtectedData* store, SHOWENTRY* e) { return store && store->isFilterOn(e->tags); }

} // namespace

uint64_t SHOWLIST::showHash(const Date& date, const char* artistKey) {
    uint64_t h = std::hash<std::string_view>()(std::string_view(artistKey));
    uint64_t day = (static_cast<uint64_t>(static_cast<uint32_t>(date.year)) << 32) ^
                   (static_cast<uint64_t>(static_cast<uint32_t>(date.month)) << 8) ^
                   static_cast<uint32_t>(date.day);
    return h ^ (std::hash<uint64_t>()(day) + 0x9e3779b97f4a7c15ull + (h << 6) + (h >> 2));
}

SHOWENTRY* SHOWLIST::findFiled(const Date& date, const char* artistKey, uint64_t hash) const {
    if (count == 0) return nullptr; // emptied behind our back: the index is stale
    return filed.find(hash, [&](const SHOWENTRY* e) {
        return e->day == date.day && e->month == date.month && e->year == date.year &&
               strcmp(e->artistKey, artistKey) == 0;
    });
}

void SHOWLIST::forgetIndexes() {
    filed.clear();
    lastOfDate.clear();
}

bool SHOWLIST::addShow(SHOWENTRY* entry, SHOWLIST* previous) {
    std::lock_guard<std::mutex> guard(mutex);
    // A list emptied behind our back (forgetNodes) starts its indexes over.
    if (count == 0 && filed.size() != 0) forgetIndexes();
    char key[kArtistKeySize];
    if (entry->artistKey[0] != '\0')
        memcpy(key, entry->artistKey, sizeof key);
    else
        keyOf(entry->artist, key);
    Date date{entry->year, entry->month, entry->day};
    uint64_t hash = showHash(date, key);

    // The previous generation is read without its lock: nothing files into
    // it any more. Its own index answers for its first (and only) match.
    if (SHOWENTRY* before = previous ? previous->findFiled(date, key, hash) : nullptr)
        entry->attending = before->attending;

    if (SHOWENTRY* same = findFiled(date, key, hash)) {
        same->tags->combine(entry->tags);
        return false;
    }

    // After the last entry of the latest date not later than the entry's
    // own, so shows of one date keep their order of arrival.
    auto later = lastOfDate.upper_bound(date);
    if (later == lastOfDate.begin()) {
        if (head)
            insertBefore(*this, head, entry);
        else
            appendNode(*this, entry);
    } else {
        SHOWENTRY* earlier = std::prev(later)->second;
        if (earlier->next)
            insertBefore(*this, earlier->next, entry);
        else
            appendNode(*this, entry);
    }
    lastOfDate[date] = entry;
    memcpy(entry->artistKey, key, sizeof key);
    // A new list sized like the previous one rehashes rarely.
    if (filed.size() == 0 && previous) filed.reserve(previous->filed.size());
    filed.insert(hash, entry);
    return true;
}

SHOWENTRY* SHOWLIST::findShow(const char* artist) { return findAlbum(artist, nullptr); }

SHOWENTRY* SHOWLIST::findAlbum(const char* artist) { return findAlbum(artist, sharedStore()); }

SHOWENTRY* SHOWLIST::findAlbum(const char* artist, ProtectedData* store) {
    std::lock_guard<std::mutex> guard(mutex);
    char key[kArtistKeySize];
    keyOf(artist, key);
    for (SHOWENTRY* e = head; e; e = e->next)
        if (strcmp(e->artistKey, key) == 0 && !hidden(store, e)) return e;
    return nullptr;
}

void SHOWLIST::clear() {
    std::lock_guard<std::mutex> guard(mutex);
    forgetNodes(*this);
    forgetIndexes();
}

uint32_t SHOWLIST::filteredSize() { return filteredSize(sharedStore()); }

uint32_t SHOWLIST::filteredSize(ProtectedData* store) {
    uint32_t n = 0;
    for (SHOWENTRY* e = head; e; e = e->next)
        if (!hidden(store, e)) ++n;
    return n;
}

void deleteShows(SHOWLIST* list) {
    std::lock_guard<std::mutex> guard(list->mutex);
    deleteNodes(*list);
    list->forgetIndexes();
}
