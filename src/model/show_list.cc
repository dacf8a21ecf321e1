#include "model/show_list.h"

#include <cstring>

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

bool laterThan(const SHOWENTRY* a, const SHOWENTRY* b) {
    if (a->year != b->year) return a->year > b->year;
    if (a->month != b->month) return a->month > b->month;
    return a->day > b->day;
}

std::string dateAndKey(const SHOWENTRY* e, const char* key) {
    return std::to_string(e->year) + '-' + std::to_string(e->month) + '-' +
           std::to_string(e->day) + '|' + key;
}

bool hidden(ProtectedData* store, SHOWENTRY* e) { return store && store->isFilterOn(e->tags); }

} // namespace

SHOWENTRY* SHOWLIST::findFiled(const std::string& dateAndKey) const {
    auto it = filed.find(dateAndKey);
    return it == filed.end() ? nullptr : it->second;
}

bool SHOWLIST::addShow(SHOWENTRY* entry, SHOWLIST* previous) {
    std::lock_guard<std::mutex> guard(mutex);
    char key[kArtistKeySize];
    keyOf(entry->artist, key);
    std::string show = dateAndKey(entry, key);

    // The previous generation is read without its lock: nothing files into
    // it any more.
    if (SHOWENTRY* before = previous ? previous->findFiled(show) : nullptr)
        entry->attending = before->attending;

    if (SHOWENTRY* same = findFiled(show)) {
        same->tags->combine(entry->tags);
        return false;
    }

    // Goes after the last entry not later than it (shows of one date keep
    // their order of arrival). Sites list events in date order, so the walk
    // from the tail is short.
    SHOWENTRY* earlier = tail;
    while (earlier && laterThan(earlier, entry)) earlier = earlier->prev;
    if (!earlier) {
        if (head)
            insertBefore(*this, head, entry);
        else
            appendNode(*this, entry);
    } else if (earlier->next) {
        insertBefore(*this, earlier->next, entry);
    } else {
        appendNode(*this, entry);
    }
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
    filed.clear();
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
    list->filed.clear();
}
