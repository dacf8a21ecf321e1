// Location resolution: the user's city and state in the form the service
// and the concert sites expect (a title-case city, an upper-case region
// abbreviation), their latitude and longitude from the service's zip-code
// page, and a first guess of city and state from the geolocation page.
//
// Threads: latLongLoc and ipLoc run on the update thread and take the
// application's internet lock themselves (the caller must not hold it); they
// block for as long as the download. The text functions run on any thread.
#pragma once

class StagebeaconClass;

constexpr int kLocationTextSize = 256;

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

// Turns a region's name or abbreviation in `text` (char[256]) into the
// upper-case abbreviation: 0. Unknown: -1, and `text` keeps its cleaned
// lower-case form (letters and digits only).
int latLongStateAbbrev(char* text);

// Title-cases a city name in place (char[256]): lower case, a capital after
// each blank and at the start, blank runs shrunk to one, leading blanks and
// one trailing blank removed.
void cleanCity(char* text);

// Great-circle distance in miles between two points given in degrees.
double lat_lon_distance(double lat1, double lon1, double lat2, double lon2);
