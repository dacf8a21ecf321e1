// CalVis::Render: one frame, drawn offscreen and copied into the host's port
// in one piece so the host never shows a half-drawn view.
//
// Frames are drawn on the view's own (main) thread only; the update thread's
// Render calls become requests for a frame, queued to the main thread and
// coalesced (see cal_vis.h for why). renderMutex still lets one frame at a
// time in, against whoever replaces the port or the offscreen image. Under it the four lists are locked in the one lock order every
// multi-list walker follows: concerts, friends' shows, releases, friends.
// The frame keeps its own references to the list generations, so a list
// replaced meanwhile stays alive and locked until the frame is done.
#include <mutex>

#include "platform/canvas.h"
#include "platform/main_thread.h"
#include "model/stagebeacon_class.h"
#include "view/visual_plugin_data.h"
#include "view/cal_vis.h"
#include "view/draw_calendar.h"
#include "view/layout.h"

namespace {

// Locks the frame's lists in the lock order and unlocks them in the same
// order when the frame is done.
class FrameLocks {
  public:
    explicit FrameLocks(const ViewLists& lists) : lists(lists) {
        lists.concerts->lock();
        lists.friendsShows->lock();
        lists.albums->lock();
        lists.friends->lock();
    }
    ~FrameLocks() {
        lists.concerts->unlock();
        lists.friendsShows->unlock();
        lists.albums->unlock();
        lists.friends->unlock();
    }
    FrameLocks(const FrameLocks&) = delete;
    FrameLocks& operator=(const FrameLocks&) = delete;

  private:
    const ViewLists& lists;
};

} // namespace

int CalVis::Render() {
    if (std::this_thread::get_id() != viewThread) {
        if (!frameRequest->queued.exchange(true)) {
            runOnMainThread([request = frameRequest] {
                request->queued = false;
                if (request->view) (void)request->view->Render();
            });
        }
        return 0;
    }
    std::lock_guard<std::mutex> serialised(renderMutex);
    VisualPluginData* data = visualPluginData.load();
    if (!data || !data->destPort || !data->offscreen) return 0;

    const Rect dest = data->destRect;
    // The drawing works in the view's own coordinates, those of the
    // offscreen image and of every hit rectangle: the rectangle at the origin.
    Rect frame = makeRect(0, 0, dest.bottom - dest.top, dest.right - dest.left);
    {
        ViewLists lists{owner->concerts.current(), owner->friendsShows.current(),
                        owner->albums.current(), owner->friendsList};
        FrameLocks locked(lists);
        Canvas canvas(*data->offscreen); // innermost lock: see platform/canvas.h
        if (!canvas.ok()) return canvas.status();
        drawCalendar(&canvas, &frame, owner, lists);
    }
    copyBits(*data->offscreen, frame, *data->destPort, dest);
    firstFrameDone = true;
    // Still under renderMutex: the host takes its copy of the port before
    // another frame can start.
    if (data->hostPort && data->hostPort->frameReady) data->hostPort->frameReady(data->hostPort);
    return 0;
}
