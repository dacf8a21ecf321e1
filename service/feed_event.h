// Feeds in three formats, read into one neutral record (FeedEvent) before
// they become a site's events. One pipeline: fetch (feed_fetch.h), parse
// (this file: feed_ical.cc, feed_jsonld.cc, feed_csv.cc), map
// (feed_map.h), store (Storage::replaceFeedEvents).
//
// Parsers throw FeedError with plain words ("not valid JSON in script block
// 2") and never read past `maxEvents` events: a feed with more is refused
// whole rather than cut at an arbitrary point.
//
// Thread contract: pure functions, any thread.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace service {

struct FeedError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One event as the feed states it. Texts are as the feed wrote them
// (unescaped by the format's own rules), not yet cleaned.
struct FeedEvent {
    std::string date; // YYYY-MM-DD, local at the venue
    std::string time; // HH:MM local, empty for an all-day event
    std::vector<std::string> performers; // empty: the summary names them
    std::string summary;
    std::string venue, address, city, state;
    std::string location; // a place written as one text ("Venue, Street, City, ST 02134")
    std::string url, ticketUrl, availability;
    bool hasGeo = false;
    double latitude = 0, longitude = 0;
};

struct ParseLimits {
    size_t maxEvents = 100000;
    // Recurring events: instances from `windowStart` for a year.
    std::string windowStart; // YYYY-MM-DD
};

// `format` "ics", "jsonld" or "csv"; empty: told by the content (a calendar,
// a page or JSON document, else a table). Binary data is refused.
std::vector<FeedEvent> parseFeed(const std::string& body, const std::string& format,
                                 const ParseLimits& limits);

std::vector<FeedEvent> parseICalendar(const std::string& text, const ParseLimits& limits);
std::vector<FeedEvent> parseJsonLd(const std::string& text, const ParseLimits& limits);
std::vector<FeedEvent> parseCsvFeed(const std::string& text, const ParseLimits& limits);

// "2025-05-01", "2025-05-01T20:00:00-04:00", "20250501T200000": date and
// "HH:MM" as written (the wall time at the venue). False when no real date.
bool splitDateTime(const std::string& text, std::string& date, std::string& time);

} // namespace service
