// Loading the demo catalogue from CSV files. (Real calendars come in
// through the feed pipeline: feed_event.h.)
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

} // namespace service
