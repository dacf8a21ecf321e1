// The client of the service's sharing page ("/sharing/sharing.php"): the
// user's shared calendar is registered, filled show by show and emptied
// show by show; friends' names are checked; users of the same city listed.
//
// Every request is a GET whose whole address has its blanks turned into
// "+" and nothing else escaped, cut to 1023 characters like every request
// address. A reply holding "Error" anywhere is the service's refusal.
//
// Threads: the single requests take the internet lock themselves (the
// caller must not hold it) and block for the length of the download; they
// run on the update thread (shareUserCalendar) or on the main thread (a
// click on a show, the preferences window). getNearbyFriends is the
// exception: its caller holds the internet lock around it and the parsing
// of the reply (nearby_users.h).
#pragma once

#include <string>

#include "model/sharer.h"

class StagebeaconClass;
struct SHOWENTRY;

// Answers of the registration and the friend check: model/sharer.h.

// 0: the user exists; 1: no such user; 2: the download failed.
[[nodiscard]] int checkIfUserExists(StagebeaconClass* app, const char* name);
// Registers the store's user name for this installation with its city and
// names. 0: accepted; 1: the name belongs to another installation; 2: the
// download failed.
[[nodiscard]] int initializeSharing(StagebeaconClass* app);
// Adds / withdraws one show of the user's shared calendar. 1: done; 0: the
// download failed or the service refused. Both raise updatingShared for
// their length and add 100 to the progress on success.
[[nodiscard]] int addSingleSharedShow(StagebeaconClass* app, const SHOWENTRY* show);
[[nodiscard]] int deleteSingleSharedShow(StagebeaconClass* app, const SHOWENTRY* show);
// Sends every marked show of the current concert list (every show when
// shareAllShows is on). 1: all sent, or a stop was requested (updatingShared
// is then left raised); 0: a request failed and the rest were not sent.
[[nodiscard]] int addSharedShows(StagebeaconClass* app);
// The shared-calendar task of an update: registration, then every show to
// share. A taken name is reported with an alert handed to the main thread.
// Always 0, so the update run goes on. Update thread.
int shareUserCalendar(StagebeaconClass* app);
// Fetches the users of the store's current city and state into the fetch
// buffer. 0, or 2 when the download failed. The caller holds the internet
// lock.
[[nodiscard]] int getNearbyFriends(StagebeaconClass* app);

// The address of a sharing request: the service host, `pathAndQuery`, blanks
// turned into "+".
std::string sharingAddress(const std::string& pathAndQuery);
