// The concert search over every site that covers the user's location: the
// service names the sites (templates), each site's page is fetched with the
// location appended, and every event of a library artist becomes a show in
// the current concert list.
//
// Threads: the update thread. Each download holds the internet lock; a site
// page stays locked while it is parsed and filed, with the library list's
// lock and then the show list's lock taken inside (in that order).
#pragma once

class StagebeaconClass;

// 0 when every site was read. -1 when a stop was asked for (shows filed
// before that stay in the list), or when a source failed: the site list
// (every show of the previous list is kept) or some sites (the other sites
// are still read, and the failed sites' shows are kept from the previous
// list); the failure is noted on the status line (noteFailedSources).
[[nodiscard]] int genericParser(StagebeaconClass* app);
[[nodiscard]] int parseURL_generic(StagebeaconClass* app);

// The release version the templates request announces.
constexpr int kReleaseMajor = 2;
constexpr int kReleaseMinor = 9;
