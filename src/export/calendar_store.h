// Export of the concert list to the calendar store, the route of systems
// from 10.5 on: the plug-in loads its calendar helper module from the
// resources folder and hands it one event per exported show (the contract is
// calendar_store_api.h). On Linux the module keeps the calendar as an
// iCalendar file in the user's data folder, where desktop calendars can
// subscribe to it.
//
// Threads: performExportTo_iCalCalendarStore runs on the update thread
// (after a search, from UpdateConcerts) or on the main thread (after a show
// is marked). It holds the current concert list's lock for the whole walk,
// calls into the module included. LoadPrivateFrameworkBundle: any thread.
#pragma once

class StagebeaconClass;

// The helper module's file name in the resources folder.
constexpr const char* kCalendarHelperModule = "Stagebeacon_iCalExport.so";
// The calendar the shows go into.
constexpr const char* kConcertCalendarTitle = "Stagebeacon_Concerts";

// Loads the module `name` from the resources folder and stores its handle
// (for dlsym and dlclose) in `*bundle`, or null when it is missing or does
// not load (the reason goes to stderr). Does nothing when `bundle` is null.
// The module stays mapped for the life of the process once loaded, so
// dlclose only drops the reference.
void LoadPrivateFrameworkBundle(const char* name, void** bundle);

// Hands the shows to export (the marked ones, or all with exportAllShows) to
// the helper module's calendar "Stagebeacon_Concerts" and saves it. A missing
// module, a module without the entry points, or no calendar: silently
// nothing. Returns 0.
int performExportTo_iCalCalendarStore(StagebeaconClass* app);
