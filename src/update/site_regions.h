// The region codes the concert sites and the release feed expect.
//
// Threads: plain functions over constant tables; any thread.
#pragma once

#include <string>

class ProtectedData;

// `buffer` is a char[256]. Returns 0 with the upper-case code in `buffer`,
// or -1 leaving the region's cleaned lower-case form there (which is then
// sent as it is: "Bavaria" goes out as "bavaria").
int stateAbbrev_generic(char* buffer);

// The location as the concert sites and the release feed take it: the
// current city title-cased with blanks as "+", the sites' code for the
// current state (an unknown region goes out cleaned), the radius as a number.
struct SiteQueryValues {
    std::string city, state, radius;
};
SiteQueryValues siteQueryValues(ProtectedData& store);
