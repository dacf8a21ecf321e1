// Names read from the user's music library, kept sorted by byte order
// (XML_Artist_List, XML_Album_List), and the per-artist record list
// (Artist_Info_List), which nothing fills but which keeps its shape.
//
// Ownership as for every record list: records are the caller's until linked,
// a refused duplicate stays the caller's, and clear() only forgets.
//
// Threads: any thread; each operation takes the list's own mutex, and a walk
// holds it through lock/unlock.
#pragma once

#include <cstdint>

#include "model/linked.h"
#include "model/sorted_index.h"

struct XMLARTIST {
    char name[256] = {};
    XMLARTIST* next = nullptr;
    XMLARTIST* prev = nullptr;

    XMLARTIST() = default;
    explicit XMLARTIST(const char* text); // copies at most 255 characters
};

struct XMLALBUM {
    char name[256] = {};
    XMLALBUM* next = nullptr;
    XMLALBUM* prev = nullptr;

    XMLALBUM() = default;
    explicit XMLALBUM(const char* text);
};

class XML_Artist_List : public RecordList<XMLARTIST> {
  public:
    // Inserts in strcmp order; false (record not linked) for a name present.
    bool add(XMLARTIST* artist);
    // As add, comparing artist keys while the record keeps its own spelling.
    bool addUncleaned(XMLARTIST* artist);
    // Unlinks the first record named exactly `name` and returns it, or null.
    XMLARTIST* remove(const char* name);

  private:
    SortedIndex<XMLARTIST> index;
};

class XML_Album_List : public RecordList<XMLALBUM> {
  public:
    bool add(XMLALBUM* album);
    bool contains(const char* name); // exact comparison

  private:
    SortedIndex<XMLALBUM> index;
};

struct ARTISTINFO {
    char name[256] = {};
    char info[256] = {};
    char location[256] = "-";
    int32_t day = 1;
    int32_t month = 1;
    int32_t year = 1970;
    ARTISTINFO* next = nullptr;
    ARTISTINFO* prev = nullptr;
};

class Artist_Info_List : public RecordList<ARTISTINFO> {
  public:
    void add(ARTISTINFO* info); // appends; no order, no duplicate test
};
