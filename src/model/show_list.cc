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

bool sameDate(const SHOWENTRY* a, const SHOWENTRY* b) {
    return a->year == b->year && a->month == b->month && a->day == b->day;
}

bool laterThan(const SHOWENTRY* a, const SHOWENTRY* b) {
    if (a->year != b->year) return a->year > b->year;
    if (a->month != b->month) return a->month > b->month;
    return a->day > b->day;
}

bool sameShow(const SHOWENTRY* e, const SHOWENTRY* entry, const char* key) {
    if (!sameDate(e, entry)) return false;
    char other[kArtistKeySize];
    keyOf(e->artist, other);
    return strcmp(other, key) == 0;
}

bool hidden(ProtectedData* store, SHOWENTRY* e) { return store && store->isFilterOn(e->tags); }

} // namespace

bool SHOWLIST::addShow(SHOWENTRY* entry, SHOWLIST* previous) {
    std::lock_guard<std::mutex> guard(mutex);
    char key[kArtistKeySize];
    keyOf(entry->artist, key);

    for (SHOWENTRY* p = previous ? previous->head : nullptr; p; p = p->next) {
        if (sameShow(p, entry, key)) {
            entry->attending = p->attending;
            break;
        }
    }

    SHOWENTRY* later = nullptr;
    for (SHOWENTRY* e = head; e; e = e->next) {
        if (sameShow(e, entry, key)) {
            e->tags->combine(entry->tags);
            return false;
        }
        if (laterThan(e, entry)) {
            later = e;
            break;
        }
    }
    if (later)
        insertBefore(*this, later, entry);
    else
        appendNode(*this, entry);
    return true;
}

SHOWENTRY* SHOWLIST::findShow(const char* artist) { return findAlbum(artist, nullptr); }

SHOWENTRY* SHOWLIST::findAlbum(const char* artist) { return findAlbum(artist, sharedStore()); }

SHOWENTRY* SHOWLIST::findAlbum(const char* artist, ProtectedData* store) {
    std::lock_guard<std::mutex> guard(mutex);
    char key[kArtistKeySize];
    keyOf(artist, key);
    for (SHOWENTRY* e = head; e; e = e->next) {
        char other[kArtistKeySize];
        keyOf(e->artist, other);
        if (strcmp(other, key) == 0 && !hidden(store, e)) return e;
    }
    return nullptr;
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
}
