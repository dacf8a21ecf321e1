// VisualPluginData: the host's per-instance block, reduced to what drawing
// needs. The entry point owns it and adds the rest (cookie, callback, track
// copies, play state) when it is built; CalVis::Render reads only the fields
// below, through CalVis::visualPluginData.
//
// Threads: the main thread changes the port, the rectangle and the offscreen
// image (show, hide, set window) and must hold CalVis::renderMutex while it
// does, since the update thread may be rendering into them.
#pragma once

#include <memory>

#include "model/rect.h"
#include "platform/image_surface.h"

struct VisualPluginData {
    Port* destPort = nullptr;                  // the host's; null while hidden
    Rect destRect;                             // where the view lies in the port
    std::unique_ptr<OffscreenImage> offscreen; // destRect's size, at the origin
};
