// CalGetData: the update engine. It holds the library lists, the download
// request area and the settings that only the engine uses; its member
// functions live in the files of the subsystem that gives them their job.
#pragma once

#include <cstdint>

#include "library/library_records.h"
#include "model/library_lists.h"
#include "update/page_buffer.h"

class StagebeaconClass;

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
    // Set when the location was read from the network address (ipLoc).
    bool locatedFromNetwork = false;

    StagebeaconClass* app;

    // Seconds since 1970 when the next unconditional refresh is due; 0: none.
    int32_t nextRefresh = 0;
    float OSVersion = 0.0f;
    // True until a location was ever given (then the first search asks the
    // network address for one).
    bool locateByIP = true;

    // What the library scan found.
    XML_Artist_List xmlArtists;
    XML_Album_List xmlAlbums;
    Artist_Info_List artistInfo;

    // Settings files, library scan and start-up
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
    // xmlAlbums: 0 after a scan, 1 when the file does not open. Host thread.
    int parseXML();
    // Start-up: defaults, paths, identifier, password and preference files,
    // the library. Returns 0. Host thread, before any update thread.
    int initialize();
    // Keeps the calendar-source folder of the export location in step with
    // the export setting: 0, or -1 when the location holds no "/" or the
    // folder description cannot be written.
    int checkForInitialiCalFiles();
    // Asks the service whether a newer release exists; records the answer
    // in the store and offers the download. Takes the internet lock. Host
    // thread (it may show an alert), at start-up when the check is due.
    void checkForVersionUpdate();
    // Frees the library records when the engine goes (declared last so it
    // runs before the lists are destroyed).
    LibraryRecords libraryRecords{xmlArtists, xmlAlbums};
};
