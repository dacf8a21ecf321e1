// The library file read into the engine's two sorted lists: the scan of
// library_scan.h over the streamed file named by the store, the user's
// include and exclude band lists, less the compilation names. The engine's
// parseXML (update/cal_get_data.h) calls it with its own lists.
//
// Threads: the update thread, or any thread before the first update starts
// (no other thread may walk the lists meanwhile).
#pragma once

#include <functional>

#include "library/library_records.h"
#include "model/library_lists.h"

class ProtectedData;

// Fills `xmlArtists` and `xmlAlbums` (the records of the last scan freed
// first) and the store's library version: 0 after a scan, 1 when the file
// does not open (the lists are then emptied). With `stopRequested`, asked
// every few thousand lines, -1 when it answered true (both lists then stay
// as they were).
int scanLibraryFile(ProtectedData& store, LibraryRecords& records, XML_Artist_List& xmlArtists,
                    XML_Album_List& xmlAlbums, const std::function<bool()>& stopRequested);
