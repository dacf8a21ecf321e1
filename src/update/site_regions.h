// The region codes the concert sites and the release feed expect.
#pragma once

// `buffer` is a char[256]. Returns 0 with the upper-case code in `buffer`,
// or -1 leaving the region's cleaned lower-case form there (which is then
// sent as it is: "Bavaria" goes out as "bavaria").
int stateAbbrev_generic(char* buffer);
