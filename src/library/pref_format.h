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
#pragma once

#include "model/protected_data.h"

constexpr const char* kPrefSeparator = "@@";
constexpr const char* kPrefEmptyText = "-";

// Installed when there is no preference file, in this order.
constexpr const char* kDefaultFormatFilters[] = {
    "Import",          "Extra tracks", "Original recording remastered",
    "Limited Edition", "Soundtrack",   "Non-Active Artist",
};

// Line 5, in file order.
struct PrefFlag {
    bool (ProtectedData::*get)();
    void (ProtectedData::*set)(bool);
};
constexpr PrefFlag kPrefFlags[] = {
    {&ProtectedData::getExportTo_iCal, &ProtectedData::setExportTo_iCal},
    {&ProtectedData::getExportAllShows, &ProtectedData::setExportAllShows},
    {&ProtectedData::getExportTo_Outlook, &ProtectedData::setExportTo_Outlook},
    {&ProtectedData::getExportTo_Google, &ProtectedData::setExportTo_Google},
    {&ProtectedData::getStagebeacon_version_update,
     &ProtectedData::setStagebeacon_version_update},
    {&ProtectedData::getSharing, &ProtectedData::setSharing},
    {&ProtectedData::getShareAllShows, &ProtectedData::setShareAllShows},
    {&ProtectedData::getNotifyConcerts, &ProtectedData::setNotifyConcerts},
    {&ProtectedData::getNotifyAlbums, &ProtectedData::setNotifyAlbums},
    {&ProtectedData::getNotificationWindowStyle, &ProtectedData::setNotificationWindowStyle},
    {&ProtectedData::getiPhoneSync, &ProtectedData::setiPhoneSync},
};
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
