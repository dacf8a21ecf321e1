// Export of the concert list to the user's calendar application, file
// route: the whole list as one iCalendar text written over the export
// location (iCalLoc). Used on systems below 10.5; from 10.5 on the export
// goes through the calendar helper module (calendar_store.h).
//
// Threads: performExportTo_iCal runs on the update thread (after a search,
// from UpdateConcerts) or on the main thread (after a show is marked). It
// holds the current concert list's lock for the walk and takes the store's
// lock only through its accessors. iCalendarText is a plain function.
#pragma once

#include <string>

class SHOWLIST;
class StagebeaconClass;

// The address a show's page is reached through: the service host's
// "/clickthrough.php?target=", to which the show's URL is appended as it is.
std::string clickThroughAddress();

// The calendar text for `shows`: the shows the user marked (`attending`), or
// every show when `allShows`, in list order. Lines end with a bare line
// feed, texts go in unescaped, each event gets a new upper-case UUID, and
// the text ends with "END:VCALENDAR" without a line feed. The caller holds
// the list's lock (or owns the list).
std::string iCalendarText(SHOWLIST& shows, bool allShows, const std::string& clickThrough);

// Writes the current concert list's text to the store's iCalLoc, replacing
// the file whole (a new file beside it, then renamed over it). A location
// that cannot be written is silently left alone. Returns 0.
int performExportTo_iCal(StagebeaconClass* app);
