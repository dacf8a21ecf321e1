// The notification window of the plug-in's own (the alternative to the
// desktop notification service): a small undecorated window built from the
// interface file "notify.ui" of the resources folder, moved and faded by a
// 0.01 s timer on the main loop. The animation itself is the notifier's
// (export/notify_animation.h); this interface only creates, moves, fades
// and hides windows and runs timers.
//
// The GTK back end loads the interface file with GtkBuilder (window
// "Stagebeacon_Notify", image "imag_10", labels "CID_STXT_tag1" ...
// "CID_STXT_tag3_value"), moves with gtk_window_move, fades with
// gtk_widget_set_opacity and ticks with g_timeout_add. The headless back end
// (the default) keeps the texts, writes one line to the headless log when a
// window is shown:
//   "notify window: <label1> <value1> | <label2> <value2> | <label3> <value3>"
// and has timers that never fire: without a display nothing moves.
//
// Threads: every call on the main thread only (GTK's rule); timer callbacks
// and mouse handlers run there too. None of them blocks.
#pragma once

// Opaque handles owned by the back end.
struct NotifyWindow;
struct NotifyTimer;
struct NotifyMainLoop;

using NotifyTimerProc = void (*)(NotifyTimer* timer, void* data);

enum class NotifyEventKind { MouseDown, MouseMoved, Other };

struct NotifyEvent {
    NotifyEventKind kind = NotifyEventKind::Other;
    bool locationValid = false;
    int globalX = 0; // screen coordinates of the pointer
    int globalY = 0;
};

// Returns 0 when the event was handled, kNotifyEventNotHandled otherwise.
// The window's default handling follows in either case.
using NotifyEventProc = int (*)(const NotifyEvent& event, void* data);
constexpr int kNotifyEventNotHandled = -9874;

class NotifyWindowBackend {
  public:
    virtual ~NotifyWindowBackend() = default;

    // A hidden window from the interface file at `uiPath`; null when the
    // file or its window "Stagebeacon_Notify" cannot be loaded.
    virtual NotifyWindow* createWindow(const char* uiPath) = 0;
    // Calls `proc` with `data` for mouse-down and mouse-moved events over the
    // window until the window is hidden. Returns 0 (an installation status).
    virtual int installEventHandler(NotifyWindow* window, NotifyEventProc proc, void* data) = 0;
    // Shows the PNG at `pngPath` in the image view; false when the window has
    // no image view (the window then simply has no icon).
    virtual bool setImage(NotifyWindow* window, const char* pngPath) = 0;
    // The six static texts: index 0..2 the labels, 3..5 their values.
    virtual void setText(NotifyWindow* window, int index, const char* text) = 0;
    virtual void screenSize(int* width, int* height) = 0;
    virtual void windowSize(NotifyWindow* window, int* width, int* height) = 0;
    virtual void move(NotifyWindow* window, int left, int top) = 0;
    virtual void setAlpha(NotifyWindow* window, float alpha) = 0;
    // Brings the window to the front and shows it.
    virtual void show(NotifyWindow* window) = 0;
    // Hides the window for good: the back end releases it and the caller
    // forgets the handle. No event reaches its handler afterwards.
    virtual void hide(NotifyWindow* window) = 0;

    virtual NotifyMainLoop* mainLoop() = 0;
    // A timer that calls `proc` first after `firstDelay` seconds and then
    // every `interval` seconds until removed. removeTimer may be called from
    // inside `proc`.
    virtual NotifyTimer* installTimer(NotifyMainLoop* loop, double firstDelay, double interval,
                                      NotifyTimerProc proc, void* data) = 0;
    virtual void removeTimer(NotifyTimer* timer) = 0;
};

NotifyWindowBackend& notifyWindowBackend();
// Chooses the back end (not owned; it must outlive its use); null goes back
// to the headless one (the default).
void setNotifyWindowBackend(NotifyWindowBackend* backend);

NotifyWindowBackend& headlessNotifyWindowBackend();

// Windowed plug-ins call this once on the main thread after GTK has a
// display (see platform/gtk_backends.h): the GTK notification window and the
// D-Bus desktop notifier. Defined in the GTK library.
void installGtkNotifyBackends();
