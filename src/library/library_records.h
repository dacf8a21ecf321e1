// LibraryRecords: releases the records of the engine's two library lists.
// The lists themselves only forget their records (model/library_lists.h);
// the scan is the one place that fills them, so the engine holds this owner
// next to them and the records go when the engine goes, or when a new scan
// starts over.
//
// Threads: release() takes each list's lock, so a walk under the lock is
// safe; it runs on the update thread (the start-up scan) or when the engine
// goes.
#pragma once

#include "model/library_lists.h"

class LibraryRecords {
  public:
    LibraryRecords(XML_Artist_List& artists, XML_Album_List& albums)
        : artists(artists), albums(albums) {}
    ~LibraryRecords() { release(); }
    LibraryRecords(const LibraryRecords&) = delete;
    LibraryRecords& operator=(const LibraryRecords&) = delete;

    // Frees every record of both lists and leaves them empty.
    void release();

  private:
    XML_Artist_List& artists;
    XML_Album_List& albums;
};
