// Loading data into the service: the demo catalogue from CSV files, and a
// real iCalendar file into one site's events.
#pragma once

#include "storage.h"

#include <string>

namespace service {

// Reads the demo folder's places.csv, sites.csv, events.csv, releases.csv,
// ip-ranges.csv, sharing-users.csv and shared-shows.csv. Dates are written
// as days from today ("days" columns), so the demo always shows upcoming
// shows; an event's coordinates come from its city in places.csv. Throws
// CsvError naming the file and line of the first bad value.
Catalog loadCatalog(const std::string& folder);

// One VEVENT of an iCalendar file, its texts unescaped.
struct CalendarEvent {
    std::string summary;
    std::string date; // YYYY-MM-DD from DTSTART
    std::string location;
    std::string url;
    bool hasGeo = false;
    double latitude = 0, longitude = 0;
};

// Parses VEVENTs (SUMMARY, DTSTART, LOCATION, URL, GEO) from iCalendar text,
// unfolding continued lines. Events without SUMMARY or a readable DTSTART
// are skipped and counted in `skipped`.
std::vector<CalendarEvent> parseCalendar(const std::string& text, size_t& skipped);

// Turns calendar events into a site's events: LOCATION "Venue, City, ST"
// gives venue, city and state; GEO or the places table gives coordinates.
// Events whose place is unknown are counted in `skipped`.
std::vector<Event> eventsFromCalendar(const std::vector<CalendarEvent>& calendar,
                                      Storage& storage, int64_t siteId, size_t& skipped);

} // namespace service
