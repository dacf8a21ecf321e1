// ProtectedData: every setting and every piece of live status that the host
// thread and the update thread share, behind one non-recursive mutex.
//
// Each field is reached through a get/set pair that takes the mutex for the
// length of the call. Strings are copied in and out of fixed arrays: setters
// copy at most N-1 characters and always terminate; getters fill a caller
// buffer of N bytes. No pointer into the store ever leaves it.
//
// Threads: any thread may call any member. Lock order: the store's mutex
// first, then a list's (the filter operations call into formatFilters).
#pragma once

#include <cstdint>
#include <mutex>

#include "model/friend_list.h"

// The tables below declare the fields once; the accessors, the members and
// the defaults are generated from them. Columns: accessor suffix, member
// name, then array size and default (strings) or default (others).
#define SB_STRING_FIELDS(X)                                                                        \
    X(CurCity, curCity, 256, "-")                                                                  \
    X(CurState, curState, 256, "-")                                                                \
    X(CurCityDisplay, curCityDisplay, 256, "")                                                     \
    X(CurStateDisplay, curStateDisplay, 256, "")                                                   \
    X(CurSearchRadiusDisplay, curSearchRadiusDisplay, 256, "75")                                   \
    X(UpdateMessage, updateMessage, 512, "")                                                       \
    X(SourceNote, sourceNote, 512, "")                                                             \
    X(iCalLoc, iCalLoc, 1024, "-")                                                                 \
    X(UUID, UUID, 128, "")                                                                         \
    X(Username, username, 64, "")                                                                  \
    X(Password, password, 64, "")                                                                  \
    X(Firstname, firstname, 256, "")                                                               \
    X(Lastname, lastname, 256, "")                                                                 \
    X(CurConcertNotifyURL, curConcertNotifyURL, 1024, "")                                          \
    X(CurAlbumNotifyURL, curAlbumNotifyURL, 1024, "")                                              \
    X(LastArtistNotified, lastArtistNotified, 1024, "")                                            \
    X(LastAlbumNotified, lastAlbumNotified, 1024, "")                                              \
    X(iTunes_xml_path, iTunes_xml_path, 1024, "")                                                  \
    X(StagebeaconPref, StagebeaconPref, 1024, "")                                                  \
    X(StagebeaconIncludeBandsList, StagebeaconIncludeBandsList, 1024, "")                          \
    X(StagebeaconExcludeBandsList, StagebeaconExcludeBandsList, 1024, "")

#define SB_VALUE_FIELDS(X)                                                                         \
    X(int, CurSearchRadius, curSearchRadius, 75)                                                   \
    X(unsigned long, UpdatingScheduledTasks, updatingScheduledTasks, 0xFFFFFFFFul)                 \
    X(bool, UpdatingConcerts, updatingConcerts, false)                                             \
    X(bool, UpdatingAlbums, updatingAlbums, false)                                                 \
    X(bool, UpdatingFriends, updatingFriends, false)                                               \
    X(bool, UpdatingShared, updatingShared, false)                                                 \
    X(bool, UpdatingiPhone, updatingiPhone, false)                                                 \
    X(int, LastSearch_d, lastSearch_d, 1)                                                          \
    X(int, LastSearch_m, lastSearch_m, 1)                                                          \
    X(int, LastSearch_y, lastSearch_y, 1970)                                                       \
    X(bool, UpdatingCity, updatingCity, false)                                                     \
    X(bool, UpdatingState, updatingState, false)                                                   \
    X(bool, UpdatingSearchRadius, updatingSearchRadius, false)                                     \
    X(bool, RestartingSearch, restartingSearch, false)                                             \
    X(double, CurLat, curLat, 0.0)                                                                 \
    X(double, CurLon, curLon, 0.0)                                                                 \
    X(bool, ForceUpdate, forceUpdate, false)                                                       \
    X(bool, ShutingDown, shutingDown, false)                                                       \
    X(bool, Stagebeacon_version_update, Stagebeacon_version_update, false)                         \
    X(bool, Valid_internet_connection, valid_internet_connection, true)                            \
    X(bool, Valid_preference_file, valid_preference_file, true)                                    \
    X(bool, Sharing, sharing, false)                                                               \
    X(bool, ShareAllShows, shareAllShows, false)                                                   \
    X(int, CurCalTab, curCalTab, 0)                                                                \
    X(bool, ExportTo_iCal, exportTo_iCal, false)                                                   \
    X(bool, ExportTo_Outlook, exportTo_Outlook, false)                                             \
    X(bool, ExportTo_Google, exportTo_Google, false)                                               \
    X(bool, ExportAllShows, exportAllShows, false)                                                 \
    X(bool, iPhoneSync, iPhoneSync, false)                                                         \
    X(bool, NotifyConcerts, notifyConcerts, false)                                                 \
    X(bool, NotifyAlbums, notifyAlbums, false)                                                     \
    X(float, OSXVersion, OSXVersion, 0.0f)                                                         \
    X(float, iTunesVersion, iTunesVersion, 0.0f)                                                   \
    X(bool, NotificationWindowStyle, NotificationWindowStyle, false)

class ProtectedData {
  public:
    ProtectedData();
    ~ProtectedData();
    ProtectedData(const ProtectedData&) = delete;
    ProtectedData& operator=(const ProtectedData&) = delete;

#define SB_DECLARE_STRING(Name, member, size, initial)                                             \
    static constexpr int Name##Size = size;                                                        \
    void get##Name(char* dst);                                                                     \
    void set##Name(const char* src);
    SB_STRING_FIELDS(SB_DECLARE_STRING)
#undef SB_DECLARE_STRING

#define SB_DECLARE_VALUE(Type, Name, member, initial)                                              \
    Type get##Name();                                                                              \
    void set##Name(Type value);
    SB_VALUE_FIELDS(SB_DECLARE_VALUE)
#undef SB_DECLARE_VALUE

    // Location editor: append while the city or state text is below 254
    // characters, the radius text below 4; remove drops the last character.
    void addLetterCurCityDisplay(char c);
    void addLetterCurStateDisplay(char c);
    void addLetterCurSearchRadiusDisplay(char c);
    void removeLetterCurCityDisplay();
    void removeLetterCurStateDisplay();
    void removeLetterCurSearchRadiusDisplay();
    // A radius text that reads as a number above 300 becomes "300"; anything
    // else, unreadable text included, is left alone.
    void limitCurSearchRadiusDisplay();

    // Clamps the stored progress to 0..100 (setUpdatingProgress) or only at
    // 100 (incUpdatingProgress; there is deliberately no lower clamp).
    void setUpdatingProgress(double p);
    void incUpdatingProgress(double d);
    double getUpdatingProgress();

    void lockMutex() { mutex.lock(); }
    void unlockMutex() { mutex.unlock(); }

    // Format filters: names of release formats the user hides.
    void addFormatFilter(const char* name);    // first 63 characters; no case-blind duplicate
    void removeFormatFilter(const char* name); // first exact match
    bool isFilterOn(const char* name);         // exact; takes only the list's mutex
    bool isFilterOn(FRIENDLIST* names);        // any of `names` filtered
    // Joins the filters, each followed by "@@", into `dst` (512 bytes).
    void getFilterString(char* dst);
    static constexpr int FilterStringSize = 512;

  private:
    std::mutex mutex;
    double updatingProgress = 0.0;
    FRIENDLIST formatFilters;

#define SB_STRING_MEMBER(Name, member, size, initial) char member[size];
    SB_STRING_FIELDS(SB_STRING_MEMBER)
#undef SB_STRING_MEMBER

#define SB_VALUE_MEMBER(Type, Name, member, initial) Type member;
    SB_VALUE_FIELDS(SB_VALUE_MEMBER)
#undef SB_VALUE_MEMBER
};

// The store that record lists consult for filters (SHOWLIST::findAlbum and
// filteredSize). The application object registers its store once at start;
// null (the default) means nothing is filtered.
ProtectedData* sharedStore();
void setSharedStore(ProtectedData* store);
