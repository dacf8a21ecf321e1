// Telling the user of an upcoming concert or album release of the artist
// whose track just started: through the desktop notification service (the
// notification script, run by export/applescript.h) or in the plug-in's own
// window (export/notify_gui.h), by the store's NotificationWindowStyle.
//
// Threads: the main thread (the host's track-change message).
#pragma once

class StagebeaconClass;

// Called on every track change. Looks the artist up in the current concert
// and release lists (when NotifyConcerts / NotifyAlbums are on) and
// notifies each kind once per artist (concerts) or album title (releases);
// a release of an album already in the library is not notified. The album
// argument is deliberately ignored: both lookups go by artist.
void notifyUserOfUpcomingShow(StagebeaconClass* app, char* artist, char* album);

// Clears the recentlyAdded flag of every entry of the current concert list,
// holding its lock. Nothing calls it.
void zeroRecentlyAddedFlags(StagebeaconClass* app);

// Sleeps `seconds`, then returns -1 when the plug-in is shutting down, 0 when
// a forced update is pending, 1 otherwise. Nothing calls it.
int snooze(StagebeaconClass* app, unsigned seconds);
