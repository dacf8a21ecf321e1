// The text side of location resolution: a city name and a region name or
// abbreviation in the form the service and the concert sites expect, and the
// distance between two points. No network, no store.
//
// Threads: plain functions on the caller's buffers; any thread.
#pragma once

constexpr int kLocationTextSize = 256;

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
