// Turning a region name ("New York", " CALIFORNIA", "ny") into the upper-case
// abbreviation a request carries. The plug-in has two region tables that
// disagree on purpose (the coordinate lookup and the concert sites each
// expect their own codes); both go through abbreviateRegion.
//
// Threads: plain functions over constant tables; any thread.
#pragma once

#include <cstddef>

struct RegionPair {
    const char* name;         // cleaned: lower-case letters and digits only
    const char* abbreviation; // lower case
};

// Cleans `buffer` (char[256]) to lower-case letters and digits, then looks
// it up as a name (a later pair of the same name replaces an earlier one)
// and, failing that, as one of the abbreviations still in force. Returns 0
// with the upper-case abbreviation in `buffer`, or -1 leaving the cleaned
// text there.
int abbreviateRegion(char* buffer, const RegionPair* table, size_t count);
