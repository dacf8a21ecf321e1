// Reading the concert sites: the templates reply that names the sites, and
// the sites' line-oriented event pages.
//
// An event record is a group of lines holding "<artist>" (one or more),
// "<event_date>", "<venue_name>", "<event_url>", "<venue_city>" and
// "<venue_state>" elements, ended by "</event>". Pages come from sites we do
// not control, so the reader is deliberately forgiving in one particular
// way: after the first incomplete record it only recognises records written
// whole on one line until one of them is filed, and the artists of the
// incomplete records ride along with that next record. Sites rely on this.
//
// Threads: the update thread, holding the internet lock while it reads the
// fetch buffer; filing takes the list locks.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/library_lists.h"
#include "model/show_list.h"
#include "update/library_index.h"

struct SiteTemplate {
    bool ticketsAvailable; // "ticket=1" anywhere in the template
    std::string address;   // the query address: everything after the first ">"
};

// The number of "<site" occurrences, counting as the sites request does.
int countSiteTemplates(std::string_view reply);

// The templates in reply order: from each "<site" to the next "</site>",
// stopping at the first one that is incomplete.
std::vector<SiteTemplate> splitSiteTemplates(std::string_view reply);

// Where the shows of one page go.
struct EventFiling {
    XML_Artist_List* library;          // locked while matching and filing
    const LibraryArtistIndex* index;   // keys of `library`
    SHOWLIST* shows;                   // the new generation
    SHOWLIST* previous;                // marks are carried over from it
    bool ticketsAvailable;
    std::function<bool()> stopRequested; // asked before every record
    const char* source;                  // recorded in each show (SHOWENTRY::source)
};

// Reads `page` line by line (a last line without a line feed is ignored)
// and files a show for every library artist of every complete record.
// Returns 0 at the end of the page, -1 when a stop was requested.
int parseEventPage(std::string_view page, const EventFiling& filing);

// The other acts of a bill for the artist whose key is `key`: the names, as
// written, of every artist with another key, joined by ", "; at most 1023
// characters.
std::string otherActs(const std::vector<std::string>& artists, const std::vector<std::string>& keys,
                      const std::string& key);
