// SHOWENTRY, one dated event (a concert, an album release or a friend's
// show), and SHOWLIST, the date-ordered list of them.
//
// Ownership: a list never releases its records; clear() and the destructor
// only forget them, because the view and the previous generation may still
// reach them. Whole generations are released by ShowListGenerations
// (list_generations.h). An entry owns its tags list and the names in it.
//
// Threads: any thread; each operation takes the list's own mutex, and a walk
// holds it through lock/unlock.
#pragma once

#include <cstdint>
#include <map>

#include "model/friend_list.h"
#include "model/hash_slots.h"
#include "model/linked.h"
#include "platform/rect.h"

class ProtectedData;

struct SHOWENTRY {
    SHOWENTRY* next = nullptr;
    SHOWENTRY* prev = nullptr;
    char artist[256] = {};
    char venue[256] = {};
    char location[256] = "-";
    int32_t day = 0;
    int32_t month = 0;
    int32_t year = 2000;
    char otherArtists[1024] = {};
    char url[256] = {};
    bool recentlyAdded = false;
    bool attending = false;
    FRIENDLIST* tags = new FRIENDLIST;
    bool ticketsAvailable = false;
    Rect rect1;
    bool rect1Drawn = false;
    Rect rect2;
    bool rect2Drawn = false;
    bool highlighted = false;
    // cleanArtist(artist), set by SHOWLIST::addShow when the entry is filed:
    // filing and lookups compare keys all the time, and an entry's artist
    // does not change once it is in a list. A caller that already has the
    // key (the site parser keys every artist to match it) may set it before
    // addShow, which then does not clean the name again.
    char artistKey[256] = {};
    // Where the show came from (a concert site's query address), so that a
    // site that fails next time keeps its shows; empty when not known (shows
    // read back from the preference file, releases, friends' shows).
    char source[256] = {};

    SHOWENTRY() = default;
    SHOWENTRY(const SHOWENTRY&) = delete;
    SHOWENTRY& operator=(const SHOWENTRY&) = delete;
    ~SHOWENTRY();
};

class SHOWLIST : public RecordList<SHOWENTRY> {
  public:
    // Files `entry` in date order. A show already present (same date, same
    // artist key) takes in the entry's tags instead, and false is returned:
    // the entry is then still the caller's to release. The `attending` mark
    // of the same show in `previous` (read without its lock) is carried over.
    [[nodiscard]] bool addShow(SHOWENTRY* entry, SHOWLIST* previous);

    // First entry whose artist key equals that of `artist`; filters ignored.
    SHOWENTRY* findShow(const char* artist);

    // As findShow, skipping entries hidden by one of `store`'s format
    // filters. The one-argument form uses the shared store (see
    // protected_data.h); with none registered nothing is hidden.
    SHOWENTRY* findAlbum(const char* artist);
    SHOWENTRY* findAlbum(const char* artist, ProtectedData* store);

    // Entries not hidden by a filter. Walks without the list's mutex, so
    // callers hold it (or own the list) themselves.
    uint32_t filteredSize();
    uint32_t filteredSize(ProtectedData* store);

    // Forgets every entry (without releasing it).
    void clear();

  private:
    friend void deleteShows(SHOWLIST* list);

    // Two indexes beside the links, kept by addShow (the only code that
    // links entries), so that filing costs O(log n) whatever order events
    // come in:
    // - `filed`: every entry by date and artist key. No two entries share
    //   both, so a duplicate, or the same show in the previous generation,
    //   is found without walking a list.
    // - `lastOfDate`: for each date, its last entry. A new entry goes just
    //   after the last entry of the latest date not later than its own.
    struct Date {
        int32_t year, month, day;
        bool operator<(const Date& o) const {
            if (year != o.year) return year < o.year;
            if (month != o.month) return month < o.month;
            return day < o.day;
        }
    };
    std::map<Date, SHOWENTRY*> lastOfDate;
    HashSlots<SHOWENTRY*> filed; // by showHash; entries hold the date and key
    static uint64_t showHash(const Date& date, const char* artistKey);
    SHOWENTRY* findFiled(const Date& date, const char* artistKey, uint64_t hash) const;
    void forgetIndexes();
};

// Releases every entry of `list` (and their tags) and leaves it empty.
void deleteShows(SHOWLIST* list);
