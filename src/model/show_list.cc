#include "model/show_list.h"

#include <cstring>
#include <functional>
#include <iterator>

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

size_t SHOWLIST::ShowKeyHash::operator()(const ShowKey& k) const {
    size_t h = std::hash<std::string>()(k.artistKey);
    uint64_t date = (static_cast<uint64_t>(static_cast<uint32_t>(k.date.year)) << 32) ^
                    (static_cast<uint64_t>(static_cast<uint32_t>(k.date.month)) << 8) ^
                    static_cast<uint32_t>(k.date.day);
    return h ^ (std::hash<uint64_t>()(date) + 0x9e3779b97f4a7c15ull + (h << 6) + (h >> 2));
}

SHOWENTRY* SHOWLIST::findFiled(const ShowKey& show) const {
    auto it = filed.find(show);
    return it == filed.end() ? nullptr : it->second;
}

void SHOWLIST::forgetIndexes() {
    filed.clear();
    lastOfDate.clear();
}

bool SHOWLIST::addShow(SHOWENTRY* entry, SHOWLIST* previous) {
    std::lock_guard<std::mutex> guard(mutex);
    // A list emptied behind our back (forgetNodes) starts its indexes over.
    if (count == 0 && !filed.empty()) forgetIndexes();
    char key[kArtistKeySize];
    if (entry->artistKey[0] != '\0')
        memcpy(key, entry->artistKey, sizeof key);
    else
        keyOf(entry->artist, key);
    Date date{entry->year, entry->month, entry->day};
    ShowKey show{date, key};

    // The previous generation is read without its lock: nothing files into
    // it any more. Its own index answers for its first (and only) match.
    if (SHOWENTRY* before = previous ? previous->findFiled(show) : nullptr)
        entry->attending = before->attending;

    if (SHOWENTRY* same = findFiled(show)) {
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
    filed.emplace(std::move(show), entry);
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
