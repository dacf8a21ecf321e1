// StagebeaconClass: the one application object. It holds the state store,
// the show lists and the friends list, and names the calendar view and the
// update engine it owns; every other part reaches it through the
// process-wide pointer `Stagebeacon` (set by the host's init message) or
// through a pointer handed to it, as the engine's `app`.
//
// Only the data lives on this floor. The view (view/cal_vis.h) and the engine
// (update/cal_get_data.h) are declared above it, so they are named here and
// built by the plug-in entry (plugin/app_wiring.cc), which also wires the
// calls that lower floors make upwards; a file that uses either includes its
// header itself.
//
// Threads: the object is built and destroyed on the host thread; its parts
// say which threads may use them.
#pragma once

#include <functional>
#include <memory>

#include "model/cal_sync.h"
#include "model/friend_list.h"
#include "model/list_generations.h"
#include "model/protected_data.h"

class CalVis;
class CalGetData;

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

    // Before the engine: the engine's constructor writes to it.
    ProtectedData protectedData;

  private:
    // Owners of the view and the engine; the references below name them.
    std::unique_ptr<CalVis> ownedView;
    std::unique_ptr<CalGetData> ownedEngine;

  public:
    CalVis& calVis;
    CalSync calSync;
    CalGetData& calGetData;

    // Each show list kind as its current and previous generation (see
    // model/list_generations.h for who may hold them and when they go).
    ShowListGenerations concerts;
    FRIENDLIST* friendsList;
    ShowListGenerations friendsShows;
    ShowListGenerations albums;

    // Redraws the view (CalVis::Render, wired at construction): how the
    // update thread and the features below the view show progress. Any
    // thread that holds no list lock. 0 = drawn or nothing to draw on.
    int renderView() { return redraw ? redraw() : 0; }
    std::function<int()> redraw;
    // True once the view has put a frame on screen (CalVis::frameDrawn,
    // wired at construction): start-up's work lets the first frame go
    // first. Any thread. Unwired, there is no frame to wait for.
    bool firstFrameShown() const { return frameShown ? frameShown() : true; }
    std::function<bool()> frameShown;
};

extern StagebeaconClass* Stagebeacon;
