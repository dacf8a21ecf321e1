// CalGetData: the update engine. It holds the library lists, the download
// request area and the settings that only the engine uses. Its tasks that
// belong to features above it (friends' shows, the shared calendar, the phone
// sync, the export after a search, the notifier) are reached through
// EngineHooks, which the plug-in entry wires at set-up time.
//
// Threads: each member says which thread may call it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "library/library_records.h"
#include "model/library_lists.h"
#include "net/fetch_cancel.h"
#include "net/page_buffer.h"

class StagebeaconClass;

// What the engine asks of the features above it. Set once by the plug-in
// entry (plugin/app_wiring.cc) before any update starts; an empty hook is
// skipped (a task then counts as done).
struct EngineHooks {
    // The friends' shows (0x08), shared-calendar (0x10) and phone (0x20)
    // tasks, with the results of UpdateFriends, UpdateShared, UpdateiPhone.
    // Update thread.
    std::function<int()> updateFriends;
    std::function<int()> updateShared;
    std::function<int()> updateiPhone;
    // The concert task's last step: the calendar-source files and the
    // export. Update thread.
    std::function<void()> exportConcerts;
    // Start-up's registration with the notifier. Host thread.
    std::function<void(bool concerts, bool albums)> registerNotifier;
    // shutDown: the notification timers and windows go. Host thread.
    std::function<void()> closeNotifications;
};

class CalGetData {
  public:
    // Stores `app` and clears the store's stop flags; starts no thread.
    explicit CalGetData(StagebeaconClass* app);
    CalGetData(const CalGetData&) = delete;
    CalGetData& operator=(const CalGetData&) = delete;

    // Downloads
    // The internet lock serialises every use of the HTTP client, requestUrl
    // and fetchBuffer: take it before writing requestUrl and release it once
    // done reading fetchBuffer. Not recursive. Any thread; blocks.
    void lockInternet() { internetMutex.lock(); }
    void unlockInternet() { internetMutex.unlock(); }
    std::mutex internetMutex;
    static constexpr int RequestUrlSize = 1024;
    char requestUrl[RequestUrlSize] = {}; // written with at most 1023 characters
    char requestReferer[RequestUrlSize] = {};
    // The last page fetched, NUL-terminated; replaced by the next success.
    PageBuffer fetchBuffer;
    // Fetches requestUrl into fetchBuffer (see update/get_url.cc): 0, or -1
    // with the reason on stderr. The caller holds the internet lock.
    [[nodiscard]] int getURL();
    // Seconds every wait of a download may last (tests shorten it).
    int fetchTimeout = 60;
    // Ends the running download at once when an update is stopped.
    FetchCancel fetchCancel;
    // Sets requestUrl (cut to 1023 characters) and an empty referer, then
    // getURL. The caller holds the internet lock.
    [[nodiscard]] int fetchPage(const std::string& url);
    // Set when the location was read from the network address (ipLoc).
    bool locatedFromNetwork = false;

    StagebeaconClass* app;

    // Update engine (update_thread.cc, update_concerts.cc, update_albums.cc)
    // Task bits of suggestUpdateShowList and performUpdate.
    static constexpr unsigned long kTaskNone = 0x01; // the preferences window's base value
    static constexpr unsigned long kTaskConcerts = 0x02;
    static constexpr unsigned long kTaskAlbums = 0x04;
    static constexpr unsigned long kTaskFriends = 0x08;
    static constexpr unsigned long kTaskShared = 0x10;
    static constexpr unsigned long kTaskiPhone = 0x20;
    static constexpr unsigned long kTaskAll = 0xFFFFFFFFul;
    static constexpr int32_t kRefreshInterval = 604800; // a week

    // Host thread only. Starts an update of `tasks` when forced, when the
    // location on screen differs from the one searched, or when the weekly
    // refresh is due; a running update is stopped and joined first (the
    // call blocks until it reaches its next stop check). Always 0.
    int suggestUpdateShowList(unsigned long tasks, bool force);
    // Update thread: runs the tasks in order; a task that stops or fails
    // ends the run, and the preference file is saved only when every
    // download worked.
    void performUpdate(unsigned long tasks);
    // The concert task: 0 when it ran to the end, 1 when it stopped early.
    int UpdateConcerts();
    // The album release task: 0 when all pages were visited, 1 when stopped.
    int UpdateAlbums();
    // Host thread, before unloading: stops everything and joins the thread.
    void shutDown();
    // True when the store asks the running update to stop.
    bool stopRequested();
    // Sets the store's stop flag (forceUpdate, or shutingDown when
    // `shuttingDown`) and cancels the download under way. Any thread.
    void requestStop(bool shuttingDown);
    // True when an update thread was started and not yet joined (host
    // thread only).
    bool updateStarted() const { return updateThreadHandle.joinable(); }
    // True while an update thread is running its tasks. Any thread.
    bool updateRunning() const { return running.load(); }

    // Friends, sharing and phone, through the hooks
    EngineHooks hooks;
    // The friends' shows task (sharing/friend_shows.cc): 0 when every
    // friend was read, 1 when stopped, 2 when a download failed.
    int UpdateFriends() { return hooks.updateFriends ? hooks.updateFriends() : 0; }
    // The shared-calendar task (sharing/sharing_client.cc): always 0.
    int UpdateShared() { return hooks.updateShared ? hooks.updateShared() : 0; }
    // The phone task (phone/iphone_sync.cc): 0 when done or off, 1 when it
    // stopped early.
    int UpdateiPhone() { return hooks.updateiPhone ? hooks.updateiPhone() : 0; }

    // Sources of the running update that failed (update thread only); the
    // preference file is not saved over the last good data when any did.
    int failedSources = 0;
    // Counts `count` failed sources and adds `sentence` to the status line,
    // followed by "; <kept> are from <date of the last good list>" when
    // there is such a date (source_report.cc). Update thread.
    void noteFailedSources(int count, const std::string& sentence, const char* kept);

    // Seconds since 1970 when the next unconditional refresh is due; 0: none.
    int32_t nextRefresh = 0;
    float OSVersion = 0.0f;
    // True until a location was ever given (then the first search asks the
    // network address for one).
    bool locateByIP = true;

    std::thread updateThreadHandle; // the last update thread; joined before the next
    std::atomic<bool> running{false};

    // What the library scan found.
    XML_Artist_List xmlArtists;
    XML_Album_List xmlAlbums;
    Artist_Info_List artistInfo;

    // Settings files, library scan and start-up (the files' formats and the
    // scan are library/'s: pref_file.h, parse_xml.h)
    // Writes the preference file from the store and the show lists; dropped
    // while an update is being stopped or the plug-in is unloading. Any thread.
    void genPref();
    // Reads the preference file into the store and the lists: 0 when there
    // is no usable file (the default filters are then installed), -1 after a
    // file was read to its end. Host thread, at start-up.
    int loadPrefs();
    // True when `path` opens for reading and its first line is not empty.
    static bool fileExists(const char* path);
    // Scans the music library at iTunes_xml_path into xmlArtists and
    // xmlAlbums: 0 after a scan, 1 when the file does not open. With
    // `stopRequested`, asked every few thousand lines, -1 when it answered
    // true (both lists then stay as they were). Update thread, or any
    // thread before the first update starts.
    int parseXML();
    int parseXML(const std::function<bool()>& stopRequested);
    // Start-up: defaults, paths, identifier, password and preference files;
    // the library scan and a due version check are left to the update
    // thread (startupWork). Returns 0. Host thread, before any update thread.
    int initialize();
    // Work start-up leaves to the update thread, so that the first frame
    // never waits for the disk: the first update thread runs it before its
    // tasks (and suggestUpdateShowList starts a thread for it alone when no
    // update is due). One bit per job, run in the order of the bits.
    static constexpr unsigned kStartupLibraryScan = 0x1;
    static constexpr unsigned kStartupVersionCheck = 0x2;
    std::atomic<unsigned> startupWork{0};
    // Update thread: runs the jobs startupWork still owes, clearing each
    // bit when its job is done. 0 when nothing is owed any more, 1 when a
    // stop was requested first (what is left stays owed to the next thread).
    int runStartupWork();
    // Asks the service whether a newer release exists; records the answer
    // in the store, saves the preferences and offers the download in an
    // alert handed to the main thread (its "Download" opens the page there).
    // Takes the internet lock. Update thread, before the first update when
    // the check is due (or any thread that may wait for the service).
    void checkForVersionUpdate();
    // The same, saying how it went: 0, or -1 when the service did not answer.
    int versionCheck();
    // Frees the library records when the engine goes (declared last so it
    // runs before the lists are destroyed).
    LibraryRecords libraryRecords{xmlArtists, xmlAlbums};
};
