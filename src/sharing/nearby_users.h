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
// Threads: plain functions; the caller holds the internet lock while it
// reads the page from the fetch buffer (sharing_client.h, getNearbyFriends).
#pragma once

#include <string_view>
#include <vector>

struct SHARER {
    char username[64] = {};
    char firstname[64] = {};
    char lastname[64] = {};
    char city[64] = {};
    char state[64] = {};
};

constexpr size_t kMaxSharers = 10000;

// One record per "</entry>" of `page`, in order.
std::vector<SHARER> parseNearbyUsers(std::string_view page);
