// Names read from the user's music library, kept sorted by byte order
// (XML_Artist_List, XML_Album_List), and the per-artist record list
// (Artist_Info_List), which nothing fills but which keeps its shape.
//
// Ownership as for every record list: records are the caller's until linked,
// a refused duplicate stays the caller's, and clear() only forgets.
#pragma once

#include <cstdint>
#include <mutex>

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

class XML_Artist_List {
  public:
    std::mutex mutex;
    XMLARTIST* head = nullptr;
    XMLARTIST* tail = nullptr;
    uint32_t count = 0;

    XML_Artist_List() = default;
    XML_Artist_List(const XML_Artist_List&) = delete;
    XML_Artist_List& operator=(const XML_Artist_List&) = delete;

    // Inserts in strcmp order; false (record not linked) for a name present.
    bool add(XMLARTIST* artist);
    // As add, comparing artist keys while the record keeps its own spelling.
    bool addUncleaned(XMLARTIST* artist);
    // Unlinks the first record named exactly `name` and returns it, or null.
    XMLARTIST* remove(const char* name);
    void clear();
    void lock() { mutex.lock(); }
    void unlock() { mutex.unlock(); }
};

class XML_Album_List {
  public:
    std::mutex mutex;
    XMLALBUM* head = nullptr;
    XMLALBUM* tail = nullptr;
    uint32_t count = 0;

    XML_Album_List() = default;
    XML_Album_List(const XML_Album_List&) = delete;
    XML_Album_List& operator=(const XML_Album_List&) = delete;

    bool add(XMLALBUM* album);
    bool contains(const char* name); // exact comparison
    void clear();
    void lock() { mutex.lock(); }
    void unlock() { mutex.unlock(); }
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

class Artist_Info_List {
  public:
    std::mutex mutex;
    ARTISTINFO* head = nullptr;
    ARTISTINFO* tail = nullptr;
    uint32_t count = 0;

    Artist_Info_List() = default;
    Artist_Info_List(const Artist_Info_List&) = delete;
    Artist_Info_List& operator=(const Artist_Info_List&) = delete;

    void add(ARTISTINFO* info); // appends; no order, no duplicate test
    void clear();
    void lock() { mutex.lock(); }
    void unlock() { mutex.unlock(); }
};
