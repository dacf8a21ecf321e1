// Location resolution: the user's city and state in the form the service
// and the concert sites expect (a title-case city, an upper-case region
// abbreviation), their latitude and longitude from the service's zip-code
// page, and a first guess of city and state from the geolocation page.
//
// Threads: latLongLoc and ipLoc run on the update thread and take the
// application's internet lock themselves (the caller must not hold it); they
// block for as long as the download. The text functions (net/location_text.h)
// run on any thread.
#pragma once

#include "net/location_text.h"

class StagebeaconClass;

// Asks the service for the coordinates of the current city and state and
// stores them (0, 0 when not found). 0 when the service answered, with or
// without a result; -1 when the state is unknown (no request is made), the
// download failed or the reply lacks a coordinate tag.
[[nodiscard]] int latLongLoc(StagebeaconClass* app);

// Reads city and state from the geolocation page and stores them (current
// and display copies). 0 on success, -1 when the page could not be fetched
// or names no known country marker in the expected form.
[[nodiscard]] int ipLoc(StagebeaconClass* app);

// The two replies read, apart from their downloads (any thread).
// Zip-code reply: 0 with the coordinates (0, 0 for "<NOTFOUND>"), -1 when a
// coordinate tag is missing.
[[nodiscard]] int readCoordinatesReply(const char* page, double* lat, double* lon);
// Geolocation page: 0 with `city` and `state` (char[256] each) in their
// cleaned forms, -1 when no country marker is followed by a usable place.
[[nodiscard]] int readGeolocationPage(const char* page, char* city, char* state);
