// The notification windows: opening, the 0.01 s timer and the mouse.
//
// Each kind keeps at most one window on screen; a new notification of the
// kind drops the old window first. The animation record of a window lives
// until the next window of its kind opens (or shutdown), so memory stays at
// one record per kind however long the player runs.
#include "export/notify_gui.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/page_opener.h"
#include "platform/resources_folder.h"
#include "net/service_config.h"

NotifyWindow* hNotifyConcertWindow = nullptr;
NotifyTimer* theTimerConcertWindow = nullptr;
NotifyMainLoop* mainLoopConcertWindow = nullptr;
NotifyTimerProc timerUPPConcertWindow = nullptr;
NotifyWindow* hNotifyAlbumWindow = nullptr;
NotifyTimer* theTimerAlbumWindow = nullptr;
NotifyMainLoop* mainLoopAlbumWindow = nullptr;
NotifyTimerProc timerUPPAlbumWindow = nullptr;

namespace {

constexpr const char* kInterfaceFile = "notify.ui";
constexpr const char* kIconFiles[2] = {"Stagebeacon_icon_blue.png", "Stagebeacon_icon_purple.png"};
constexpr double kTickSeconds = 0.01;
constexpr size_t kClickThroughSize = 512;

// The record of the window on screen (or last on screen), per kind.
std::unique_ptr<NotifyAnimation> animations[2];

NotifyWindow** windowGlobal(int kind) {
    return kind == kNotifyRelease ? &hNotifyAlbumWindow : &hNotifyConcertWindow;
}

NotifyTimer** timerGlobal(int kind) {
    return kind == kNotifyRelease ? &theTimerAlbumWindow : &theTimerConcertWindow;
}

// The timer global that goes with a window global, so that a timer removed
// by its own callback is not removed a second time later.
NotifyTimer** timerGlobalFor(NotifyWindow** window) {
    if (window == &hNotifyAlbumWindow) return &theTimerAlbumWindow;
    if (window == &hNotifyConcertWindow) return &theTimerConcertWindow;
    return nullptr;
}

void removeTimer(NotifyTimer* timer) {
    notifyWindowBackend().removeTimer(timer);
    for (int kind : {kNotifyConcert, kNotifyRelease})
        if (*timerGlobal(kind) == timer) *timerGlobal(kind) = nullptr;
}

} // namespace

void dropNotifyWindow(int kind) {
    NotifyWindowBackend& backend = notifyWindowBackend();
    if (NotifyTimer** timer = timerGlobal(kind); *timer) {
        backend.removeTimer(*timer);
        *timer = nullptr;
    }
    if (NotifyWindow** window = windowGlobal(kind); *window) {
        backend.hide(*window);
        *window = nullptr;
    }
}

void removeNotifyWindows() {
    dropNotifyWindow(kNotifyConcert);
    dropNotifyWindow(kNotifyRelease);
    animations[kNotifyConcert].reset();
    animations[kNotifyRelease].reset();
}

int OpenNotifyGUI(NotifyWindow** window, NotifyTimer** timer, NotifyMainLoop** mainLoop,
                  NotifyTimerProc* timerUPP, int kind, const char* label1, const char* label2,
                  const char* label3, const char* value1, const char* value2, const char* value3,
                  const char* url) {
    NotifyWindowBackend& backend = notifyWindowBackend();
    kind = kind == kNotifyRelease ? kNotifyRelease : kNotifyConcert;
    // The caller drops the kind's window first; should one still be up, it
    // goes now, before the record its handler uses is replaced.
    if (*timer) {
        removeTimer(*timer);
        *timer = nullptr;
    }
    if (*window) {
        backend.hide(*window);
        *window = nullptr;
    }

    NotifyWindow* opened = backend.createWindow(resourcePath(kInterfaceFile).c_str());
    if (!opened) return kNotifyNoBundle;
    auto animation = std::make_unique<NotifyAnimation>();
    int status = backend.installEventHandler(opened, NotifyControlHandler, animation.get());
    (void)backend.setImage(opened, resourcePath(kIconFiles[kind]).c_str());
    const char* texts[6] = {label1, label2, label3, value1, value2, value3};
    for (int i = 0; i < 6; ++i)
        backend.setText(opened, i, texts[i] ? texts[i] : "");

    backend.screenSize(&animation->screenWidth, &animation->screenHeight);
    backend.windowSize(opened, &animation->windowWidth, &animation->windowHeight);
    animation->windowLeft = animation->screenWidth - animation->windowWidth;
    animation->windowTop = animation->screenHeight + 100;
    snprintf(animation->url, sizeof animation->url, "%s", url ? url : "");
    animation->stackIndex = kind == kNotifyRelease && hNotifyConcertWindow ? 1 : 0;
    animation->window = window;
    *window = opened;

    *mainLoop = backend.mainLoop();
    *timerUPP = TimerAction;
    *timer =
        backend.installTimer(*mainLoop, kTickSeconds, kTickSeconds, *timerUPP, animation.get());

    // Below the visible screen until the first tick moves it to the top.
    backend.move(opened, animation->windowLeft, animation->screenHeight + 100);
    backend.show(opened);
    animations[kind] = std::move(animation);
    return status;
}

void TimerAction(NotifyTimer* timer, void* data) {
    auto* animation = static_cast<NotifyAnimation*>(data);
    NotifyWindowBackend& backend = notifyWindowBackend();
    if (!animation->window || !*animation->window) {
        removeTimer(timer);
        return;
    }
    NotifyWindow* window = *animation->window;
    bool finished = advanceNotifyAnimation(animation);
    backend.move(window, animation->windowLeft, animation->windowTop);
    backend.setAlpha(window, animation->alpha);
    if (finished) {
        backend.hide(window);
        *animation->window = nullptr;
        if (NotifyTimer** global = timerGlobalFor(animation->window); global && *global == timer)
            *global = nullptr;
        backend.removeTimer(timer);
    }
}

int NotifyControlHandler(const NotifyEvent& event, void* data) {
    auto* animation = static_cast<NotifyAnimation*>(data);
    if (event.kind == NotifyEventKind::Other) return kNotifyEventNotHandled;
    if (event.locationValid) restartNotifyHold(animation);
    if (event.kind == NotifyEventKind::MouseDown && event.globalX > animation->windowLeft) {
        char page[kClickThroughSize];
        snprintf(page, sizeof page, "%s/clickthrough.php?target=%s", serviceHost().c_str(),
                 animation->url);
        openPage(page);
        return 0;
    }
    return kNotifyEventNotHandled;
}
