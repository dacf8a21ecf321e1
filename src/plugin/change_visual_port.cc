// ChangeVisualPort: the drawing surface follows the host's window.
#include <mutex>

#include "plugin/plugin_entry.h"
#include "view/visual_plugin_data.h"
#include "view/cal_vis.h"

namespace {

// Nothing is drawn until the host gives a port again.
void forgetPort(VisualPluginData* data) {
    data->destPort = nullptr;
    data->hostPort = nullptr;
    data->portView.reset();
}

bool sameRect(const Rect& a, const PlayerRect& b) {
    return a.top == b.top && a.left == b.left && a.bottom == b.bottom && a.right == b.right;
}

} // namespace

PlayerStatus ChangeVisualPort(VisualPluginData* data, PlayerPort* port, const PlayerRect* rect) {
    // The update thread may be drawing into the old surfaces.
    std::lock_guard<std::mutex> serialised(CalVis::renderMutex);
    if (!port || !rect) {
        forgetPort(data);
        return kPlayerNoErr;
    }

    if (!data->offscreen || !sameRect(data->destRect, *rect)) {
        // Unlike the player's own sample code, the replaced image is freed:
        // no frame can be using it while renderMutex is held.
        auto image = std::make_unique<OffscreenImage>(rect->right - rect->left,
                                                      rect->bottom - rect->top);
        if (!image->valid()) {
            forgetPort(data);
            return kPlayerMemoryFull;
        }
        image->fill(0xFF000000);
        data->offscreen = std::move(image);
    }

    data->portView = std::make_unique<Port>(Port::sharing(port->surface));
    data->destPort = data->portView->valid() ? data->portView.get() : nullptr;
    data->hostPort = port;
    data->destRect = Rect{rect->top, rect->left, rect->bottom, rect->right};
    return kPlayerNoErr;
}
