// VisualPluginData: the host's per-instance block. The entry point makes one
// at the visual handler's init and drops it at cleanup; every message sets
// CalVis::visualPluginData to the block it came with.
//
// Threads: the main thread owns every field. The update thread's renders
// read the port, the rectangle and the offscreen image, so the main thread
// holds CalVis::renderMutex while it replaces them (show, hide, set window).
#pragma once

#include <memory>

#include "platform/rect.h"
#include "platform/image_surface.h"
#include "player_api.h"

struct VisualPluginData {
    void* appCookie = nullptr;
    PlayerProc appProc = nullptr;
    char pluginPath[1024] = {}; // the plug-in library's own file

    Port* destPort = nullptr;  // the host's port seen as an image; null while hidden
    PlayerPort* hostPort = nullptr; // the same, as the host gave it
    Rect destRect;             // where the view lies in the port
    uint32_t destOptions = 0;  // window options of the last show or set window
    std::unique_ptr<OffscreenImage> offscreen; // destRect's size, at the origin

    const PlayerRenderData* renderData = nullptr; // the last render message's
    PlayerTrackInfo trackInfo = {};   // zero when the host gave none
    PlayerStreamInfo streamInfo = {}; // likewise
    bool playing = false;

    bool mouseMonitorInstalled = false;
    void* mouseMonitor = nullptr; // the host's handle for its removal

    // Owns the Port behind destPort.
    std::unique_ptr<Port> portView;
};
