// CalGetData: the update engine. It holds the library lists, the download
// request area and the settings that only the engine uses; its member
// functions live in the files of the subsystem that gives them their job.
#pragma once

#include <cstdint>

#include "model/library_lists.h"

class StagebeaconClass;

class CalGetData {
  public:
    // Stores `app` and clears the store's stop flags; starts no thread.
    explicit CalGetData(StagebeaconClass* app);
    CalGetData(const CalGetData&) = delete;
    CalGetData& operator=(const CalGetData&) = delete;

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
};
