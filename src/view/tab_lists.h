// Which list each calendar tab shows and how its entries are walked: in the
// CD Releases tab an entry whose formats match a format filter is hidden and
// skipped by every walk; the other tabs hide nothing.
//
// Threads: the walks expect the caller to hold the list's lock (they call
// the store's filter test, which takes the store's lock second).
#pragma once

#include <cstdint>

#include "model/list_generations.h"

class StagebeaconClass;
class ProtectedData;
struct SHOWENTRY;
class FRIENDLIST;

enum CalTab { kMyShowsTab = 0, kFriendShowsTab = 1, kCdReleasesTab = 2 };

// The store's tab, with anything out of range read as My Shows.
CalTab currentCalTab(ProtectedData& store);

// The current list of `tab`'s kind; hold the reference for the walk.
ShowListRef listForTab(StagebeaconClass& app, CalTab tab);

// The lists of one frame, taken (and locked, by Render) in the lock order:
// concerts, friends' shows, releases, friends.
struct ViewLists {
    ShowListRef concerts;
    ShowListRef friendsShows;
    ShowListRef albums;
    FRIENDLIST* friends = nullptr;

    SHOWLIST* forTab(CalTab tab) const;
};

// A walk of one tab's list that skips hidden entries.
class VisibleWalk {
  public:
    VisibleWalk(ProtectedData& store, CalTab tab) : store(store), tab(tab) {}

    bool hidden(SHOWENTRY* entry) const;
    SHOWENTRY* first(SHOWLIST* list) const { return forwardFrom(list->head); }
    SHOWENTRY* last(SHOWLIST* list) const { return backwardFrom(list->tail); }
    SHOWENTRY* next(SHOWENTRY* entry) const { return forwardFrom(entry->next); }
    // Visible entries: filteredSize in the releases tab, the count otherwise.
    uint32_t count(SHOWLIST* list) const;

  private:
    SHOWENTRY* forwardFrom(SHOWENTRY* entry) const;
    SHOWENTRY* backwardFrom(SHOWENTRY* entry) const;

    ProtectedData& store;
    CalTab tab;
};

// Year and month compared as one number.
inline int monthKey(int year, int month) {
    return year * 12 + (month - 1);
}
