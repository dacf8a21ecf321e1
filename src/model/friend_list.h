// FRIENDNAME and FRIENDLIST: short names in a hand-linked list with its own
// mutex. Used for the friends list, the attendees or formats attached to a
// show (its tags) and the store's format filters.
//
// Ownership: the list links records the caller allocated and never releases
// them; clear() and the destructor only forget them. Whoever owns the list
// (a SHOWENTRY for its tags, the store for its filters) frees the names with
// deleteNames().
//
// Threads: any thread; each operation takes the list's own mutex, and a walk
// holds it through lock/unlock.
#pragma once

#include "model/linked.h"

struct FRIENDNAME {
    char name[64] = {};
    FRIENDNAME* next = nullptr;
    FRIENDNAME* prev = nullptr;

    FRIENDNAME() = default;
    // Copies at most 63 characters of `text`.
    explicit FRIENDNAME(const char* text);
};

class FRIENDLIST : public RecordList<FRIENDNAME> {
  public:
    // Appends `name` unless one equal to it ignoring letter case is present.
    // With lock false the caller already holds the mutex. Returns false when
    // the name was refused; the record then stays the caller's.
    bool add(FRIENDNAME* name, bool lock);
    bool add(FRIENDNAME* name) { return add(name, true); }

    // Adds a 63-character copy of each of `other`'s names (`other` is neither
    // locked nor changed). Copies refused as duplicates are freed.
    void combine(FRIENDLIST* other);

    // Unlinks the first record whose name equals `name` exactly and returns
    // it (the caller decides whether to free it); null when there is none.
    FRIENDNAME* remove(const char* name);

    // True when some name equals `name` exactly (case-sensitive, unlike add).
    bool contains(const char* name);

  private:
    bool containsIgnoringCase(const char* name) const;
};

// Frees every record of `list` and leaves it empty.
void deleteNames(FRIENDLIST* list);
