// Friends' shows: the DISPLAY_USER_SHOWS page of one friend read into show
// entries of the friends'-show list. updateFriendShows (the 0x08 update
// task, which the engine reaches as CalGetData::UpdateFriends) fetches one
// page per friend and files it with fileFriendShows.
//
// A page is any number of blocks "<event>...</event>"; text between blocks
// is ignored. A block holds nine fields separated by "@@": year, month,
// day, tickets ("1" means on sale), artist, venue, location, address and
// the other acts, which run to the end of the block less its last character
// (the service ends each block with a line break). A block with fewer
// fields gives an entry with what it has: a field without a following "@@"
// runs to the end of the block, and the missing ones keep the entry's
// defaults. Blocks are read up to kMaxFriendBlock characters.
//
// Threads: the caller holds the internet lock while the page is read from
// the fetch buffer; filing takes the show list's lock (addShow).
// updateFriendShows runs on the update thread and takes the internet lock
// around each download itself.
#pragma once

#include <cstddef>
#include <string_view>

class SHOWLIST;
class StagebeaconClass;

constexpr size_t kMaxFriendBlock = 5631;
// The service's answer for an unknown or private calendar.
constexpr std::string_view kFriendCalendarMissing = "StagebeaconError";

// Files every block of `page` into `list` as a show that `friendName` goes
// to; a show already there gains the name in its tags. Marks of the same
// show in `previous` are carried over. Returns the number of blocks read.
size_t fileFriendShows(std::string_view page, const char* friendName, SHOWLIST* list,
                       SHOWLIST* previous);

// The friends' shows task: a new friends'-show generation filled with the
// calendar of every friend. 0 when every friend was read, 1 when stopped, 2
// when a download failed.
int updateFriendShows(StagebeaconClass* app);
