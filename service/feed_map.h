// Turning a feed's events into a site's events as the plug-in reads them:
// a date at the venue, the performers (from the feed's performer field, or
// from the summary's "Artist at Venue" and "Artist / Artist" forms), venue,
// city, state, address, links and ticket availability. Texts become clean
// UTF-8 on one line (bytes that are not UTF-8 are read as Latin-1, as old
// exports write them; character references are decoded), at most
// kMaxFieldBytes each.
//
// Thread contract: any thread; eventsFromFeed reads places from Storage.
#pragma once

#include "feed_event.h"
#include "storage.h"

namespace service {

constexpr size_t kMaxFieldBytes = 1000;

struct MapCounts {
    size_t past = 0;         // dated before `today`
    size_t noArtist = 0;     // neither performers nor a summary
    size_t duplicates = 0;   // the same date, artist and venue twice in the feed
};

// Events of `site` from `feed`, each placed by its GEO, else by its city in
// the places table, else at the site's centre (a venue's own calendar
// rarely names its town). Past events are left out; one record per show,
// every performer on it (the plug-in files one show per performer).
std::vector<Event> eventsFromFeed(const std::vector<FeedEvent>& feed, const Site& site,
                                  Storage& storage, const std::string& today, MapCounts& counts);

// The performers a summary names: "A at Venue" gives A (and Venue in
// `venue` when asked), "A / B" gives A and B, anything else itself.
std::vector<std::string> performersFromSummary(const std::string& summary, std::string* venue);

// Clean one-line UTF-8: see the header comment.
std::string cleanText(const std::string& text);

// What makes two listings the same show: date, artist key and venue.
std::string showKey(const std::string& date, const std::string& artist, const std::string& venue);

} // namespace service
