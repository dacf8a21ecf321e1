// The users of the same city, as the service's GETLOCALUSERS reply lists
// them, for the preferences window's nearby-users list.
//
// The reply is a run of entries, each closed by "</entry>"; the values of an
// entry stand between their tags anywhere from the end of the previous
// "</entry>" to its own. Anything else is ignored. A value is cut to 63
// characters; a tag missing from an entry leaves that value empty.
//
// Bounds: at most kMaxSharers entries are read (a city with more is cut
// there), so a huge or hostile reply cannot exhaust memory.
//
// Threads: parseNearbyUsers is a plain function (its caller holds the
// internet lock while it reads the page from the fetch buffer);
// findNearbyUsers takes that lock itself.
#pragma once

#include <string_view>
#include <vector>

#include "model/sharer.h"

class StagebeaconClass;

constexpr size_t kMaxSharers = 10000;

// One record per "</entry>" of `page`, in order.
std::vector<SHARER> parseNearbyUsers(std::string_view page);

// Asks the service for the users of the store's current city and state and
// reads them into *users: true, or false (with *users emptied) when the
// download failed. Takes the internet lock itself; main thread (the
// preferences window).
bool findNearbyUsers(StagebeaconClass* app, std::vector<SHARER>* users);
