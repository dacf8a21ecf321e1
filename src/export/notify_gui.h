// The plug-in's own notification window: one per kind (concert, release),
// each with its window, timer, main loop and timer callback in process-wide
// globals. A null window global means no notification of that kind is on
// screen. The window and timer come from export/notify_window.h; the
// movement from export/notify_animation.h.
//
// Threads: the main thread only (track changes, the timer, window events,
// and the cleanup message that calls removeNotifyWindows).
#pragma once

#include "export/notify_animation.h"
#include "export/notify_window.h"

constexpr int kNotifyConcert = 0;
constexpr int kNotifyRelease = 1;
// OpenNotifyGUI's status when the resources folder has no interface file.
constexpr int kNotifyNoBundle = -4;

extern NotifyWindow* hNotifyConcertWindow;
extern NotifyTimer* theTimerConcertWindow;
extern NotifyMainLoop* mainLoopConcertWindow;
extern NotifyTimerProc timerUPPConcertWindow;
extern NotifyWindow* hNotifyAlbumWindow;
extern NotifyTimer* theTimerAlbumWindow;
extern NotifyMainLoop* mainLoopAlbumWindow;
extern NotifyTimerProc timerUPPAlbumWindow;

// Opens a window of `kind` with the three labels and values, sliding in from
// the top right; a click opens the click-through page for `url`. Fills the
// four globals given. Returns the status of installing the window's event
// handler (0), or kNotifyNoBundle when the interface file cannot be loaded.
int OpenNotifyGUI(NotifyWindow** window, NotifyTimer** timer, NotifyMainLoop** mainLoop,
                  NotifyTimerProc* timerUPP, int kind, const char* label1, const char* label2,
                  const char* label3, const char* value1, const char* value2, const char* value3,
                  const char* url);

// The timer callback: one animation step; hides the window and removes the
// timer when the fade is over or the window is already gone.
void TimerAction(NotifyTimer* timer, void* animation);

// The window's event handler: hovering restarts the hold, a mouse-down opens
// the click-through page. 0 when handled, kNotifyEventNotHandled otherwise.
int NotifyControlHandler(const NotifyEvent& event, void* animation);

// Removes the timer and hides the window of `kind`, each only if there is
// one, and clears their globals.
void dropNotifyWindow(int kind);

// Both kinds, concert first: what the plug-in's shutdown does.
void removeNotifyWindows();
