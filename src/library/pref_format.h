// The layout of the preference file "StagebeaconPref", shared by its writer
// (pref_write.cc) and its reader (pref_read.cc).
//
// Plain 8-bit text, one setting group per line, fields joined by "@@", each
// line's meaning fixed by its position (there is no header or version):
//   1 library path          2 next version-check time
//   3 year@@month@@day      4 city@@state@@radius@@latitude@@longitude
//   5 the eleven flags      6 calendar export location
//   7 username@@first@@last@@              8 friend@@friend@@...
//   9 filter@@filter@@...                 10+ one show record per line
// Empty texts are written as "-", which the reader turns back into empty
// texts for the city, the state, the account names and a show's other acts.
//
// Threads: constants and plain functions; any thread.
#pragma once

#include "model/protected_data.h"

constexpr const char* kPrefSeparator = "@@";
constexpr const char* kPrefEmptyText = "-";

// Installed when there is no preference file, in this order.
constexpr const char* kDefaultFormatFilters[] = {
    "Import",          "Extra tracks", "Original recording remastered",
    "Limited Edition", "Soundtrack",   "Non-Active Artist",
};

// Line 5, in file order. Plain functions rather than member pointers: some
// compilers' sanitizer builds misjudge calls through member pointers in loops.
struct PrefFlag {
    bool (*get)(ProtectedData& store);
    void (*set)(ProtectedData& store, bool value);
};
#define SB_PREF_FLAG(Name)                                                                         \
    PrefFlag {                                                                                     \
        [](ProtectedData& store) { return store.get##Name(); },                                    \
            [](ProtectedData& store, bool value) { store.set##Name(value); }                       \
    }
constexpr PrefFlag kPrefFlags[] = {
    SB_PREF_FLAG(ExportTo_iCal),     SB_PREF_FLAG(ExportAllShows),
    SB_PREF_FLAG(ExportTo_Outlook),  SB_PREF_FLAG(ExportTo_Google),
    SB_PREF_FLAG(Stagebeacon_version_update), SB_PREF_FLAG(Sharing),
    SB_PREF_FLAG(ShareAllShows),     SB_PREF_FLAG(NotifyConcerts),
    SB_PREF_FLAG(NotifyAlbums),      SB_PREF_FLAG(NotificationWindowStyle),
    SB_PREF_FLAG(iPhoneSync),
};
#undef SB_PREF_FLAG
constexpr int kPrefFlagCount = sizeof kPrefFlags / sizeof kPrefFlags[0];

// Show record kinds (field 1 of lines 10 onward).
enum ShowRecordKind { kConcertRecord = 0, kReleaseRecord = 1, kFriendShowRecord = 2 };
// Fields before the attendee names.
constexpr int kShowRecordFields = 11;

// A friend name or filter longer than this ends the reading of its line.
constexpr size_t kPrefNameLimit = 63;
// A show's other acts are written and read through a buffer of this size.
constexpr size_t kOtherActsBuffer = 1024;

// From this system version on the export location is not read from the file
// (the calendar store replaces the export file).
constexpr float kCalendarStoreVersion = 10.5f;
