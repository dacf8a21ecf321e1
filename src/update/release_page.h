// Reading the album release feed: one release per line,
//   <D>2009-06-16</D><A>artist</A><T>title</T><F>Import@@CD-single@@</F><L>ASIN</L>
// Releases of library artists become SHOWENTRY records (the title in the
// venue field, the formats in the tags list, a click-through address as URL).
//
// Threads: the update thread, holding the internet lock while it reads the
// fetch buffer; filing takes the list locks.
#pragma once

#include <string>
#include <string_view>

#include "model/library_lists.h"
#include "model/show_list.h"
#include "update/library_index.h"

struct ReleaseFiling {
    XML_Artist_List* library;        // locked while matching and filing
    const LibraryArtistIndex* index; // keys of `library`
    SHOWLIST* releases;              // the new generation
    SHOWLIST* previous;              // marks are carried over from it
    std::string serviceHost;         // for the click-through address
    std::string city;                // query values, blanks already turned into "+"
    std::string state;
};

// Files the releases of library artists found on `page`. A line without a
// final line feed is ignored, and a line longer than 2046 characters ends the
// page (the feed never writes one; anything longer is not a release line).
// Returns the number of releases offered to the list.
int parseReleasePage(std::string_view page, const ReleaseFiling& filing);
