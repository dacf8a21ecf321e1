// MonitorHandler: mouse events from the host, turned into the view's
// pointer position and the calendar's mouse handlers.
#include "plugin/plugin_entry.h"
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/visual_plugin_data.h"
#include "view/mouse_handlers.h"

namespace {

// Moved twice: kept from the first release, and harmless.
const PlayerEventTypeSpec kMonitoredEvents[] = {
    {kPlayerEventClassMouse, kPlayerMouseDown},    {kPlayerEventClassMouse, kPlayerMouseUp},
    {kPlayerEventClassMouse, kPlayerMouseMoved},   {kPlayerEventClassMouse, kPlayerMouseMoved},
    {kPlayerEventClassMouse, kPlayerMouseDragged}, {kPlayerEventClassMouse, kPlayerMouseWheelMoved},
};

} // namespace

int monitorMouseY(int portY, int destTop, float playerVersion) {
    int y = portY - destTop;
    if (playerVersion >= 8.1f && playerVersion < 10.0f) y += 22;
    return y;
}

PlayerStatus MonitorHandler(void* /*handlerCall*/, const PlayerMouseEvent* event, void* /*data*/) {
    VisualPluginData* instance = CalVis::visualPluginData.load();
    if (!event || event->eventClass != kPlayerEventClassMouse || !Stagebeacon || !instance)
        return kPlayerEventNotHandled;

    CalVis& view = Stagebeacon->calVis;
    view.mouseX = event->where.h - instance->destRect.left;
    view.mouseY = monitorMouseY(event->where.v, instance->destRect.top,
                                Stagebeacon->protectedData.getiTunesVersion());

    switch (event->kind) {
    case kPlayerMouseDown:
        handleLeftMouseClicks();
        break;
    case kPlayerMouseUp:
        if (event->button == kPlayerSecondaryButton ||
            (event->button == kPlayerPrimaryButton &&
             (event->modifiers & kPlayerControlKeyModifier)))
            handleRightMouseClicks();
        else
            handleMouseUp();
        break;
    case kPlayerMouseMoved:
    case kPlayerMouseDragged:
        handleMouseMoveEvents();
        break;
    case kPlayerMouseWheelMoved:
        handleMouseWheelMoved(event->wheelDelta);
        break;
    default:
        break;
    }
    return kPlayerEventNotHandled;
}

void installMouseMonitor(VisualPluginData* data) {
    if (!data->appProc) return;
    removeMouseMonitor(data);
    PlayerMessageInfo message{};
    message.u.installMouseMonitor.handler = MonitorHandler;
    message.u.installMouseMonitor.types = kMonitoredEvents;
    message.u.installMouseMonitor.numTypes = sizeof kMonitoredEvents / sizeof kMonitoredEvents[0];
    message.u.installMouseMonitor.userData = data;
    if (data->appProc(data->appCookie, kPlayerInstallMouseMonitorMessage, &message) == kPlayerNoErr) {
        data->mouseMonitorInstalled = true;
        data->mouseMonitor = message.u.installMouseMonitor.monitorRef;
    }
}

void removeMouseMonitor(VisualPluginData* data) {
    if (!data->mouseMonitorInstalled || !data->appProc) return;
    PlayerMessageInfo message{};
    message.u.removeMouseMonitor.monitorRef = data->mouseMonitor;
    (void)data->appProc(data->appCookie, kPlayerRemoveMouseMonitorMessage, &message);
    data->mouseMonitorInstalled = false;
    data->mouseMonitor = nullptr;
}
