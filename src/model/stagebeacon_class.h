// StagebeaconClass: the one application object. It owns the state store,
// the update engine and the show lists; every other part reaches it through
// the process-wide pointer `Stagebeacon` (set by the host's init message) or
// through a pointer handed to it, as the engine's `app`.
#pragma once

#include "model/friend_list.h"
#include "model/list_generations.h"
#include "model/protected_data.h"
#include "model/cal_sync.h"
#include "update/cal_get_data.h"
#include "view/cal_vis.h"

class StagebeaconClass {
  public:
    // Selects the constructor the plug-in starts with.
    struct LoadSettings {};

    // The objects only, with the store at its defaults: for tests and tools
    // that set up the store themselves.
    StagebeaconClass();
    // As the plug-in starts: the objects, then CalGetData::initialize()
    // (settings, identifier files, the library scan, the version check).
    explicit StagebeaconClass(LoadSettings);
    ~StagebeaconClass();
    StagebeaconClass(const StagebeaconClass&) = delete;
    StagebeaconClass& operator=(const StagebeaconClass&) = delete;

    // First, so that the application pointer also points at the view.
    CalVis calVis;
    CalSync calSync;

    // Declared before the engine: the engine's constructor writes to it.
    ProtectedData protectedData;
    CalGetData calGetData;

    // Each show list kind as its current and previous generation (see
    // model/list_generations.h for who may hold them and when they go).
    ShowListGenerations concerts;
    FRIENDLIST* friendsList;
    ShowListGenerations friendsShows;
    ShowListGenerations albums;
};

extern StagebeaconClass* Stagebeacon;
