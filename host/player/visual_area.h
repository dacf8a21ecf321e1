// VisualArea: the GTK drawing area that shows the plug-in's port and turns
// GTK input into the plug-in's events (clicks, motion, wheel, keys), with
// the idle ticks that keep the view drawn. The player's window and the app's
// window both hold one.
//
// Threads: main thread, except that frames may arrive from any thread
// (they only queue a redraw on the main loop).
#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <functional>

#include "session.h"

class VisualArea {
  public:
    explicit VisualArea(VisualSession& session);
    // Stops the ticks and the redraw requests; the session must have ended
    // first, so no plug-in thread delivers frames any more.
    ~VisualArea();
    VisualArea(const VisualArea&) = delete;
    VisualArea& operator=(const VisualArea&) = delete;

    GtkWidget* widget() const { return area; }
    // Called once, right after the first plug-in frame was painted on screen.
    void onFirstFrame(std::function<void()> callback) { firstFrame = std::move(callback); }

  private:
    static void requestRedraw(void* data);
    static gboolean redrawOnMainLoop(gpointer data);
    static gboolean onDraw(GtkWidget*, cairo_t* cr, gpointer data);
    static void onSizeAllocate(GtkWidget*, GdkRectangle* allocation, gpointer data);
    static gboolean onButtonPress(GtkWidget* widget, GdkEventButton* event, gpointer data);
    static gboolean onButtonRelease(GtkWidget*, GdkEventButton* event, gpointer data);
    static gboolean onMotion(GtkWidget*, GdkEventMotion* event, gpointer data);
    static gboolean onScroll(GtkWidget*, GdkEventScroll* event, gpointer data);
    static gboolean onKeyPress(GtkWidget*, GdkEventKey* event, gpointer data);
    static gboolean onIdleTick(gpointer data);

    VisualSession& session;
    GtkWidget* area = nullptr;
    guint tick = 0;
    std::atomic<bool> redrawQueued{false};
    std::atomic<bool> frameArrived{false};
    std::function<void()> firstFrame;
    int width = 0; // the port's current size
    int height = 0;
    uint16_t heldButton = 0; // kPlayerPrimaryButton, kPlayerSecondaryButton or 0
    double scrollSteps = 0;  // smooth scrolling, not yet a whole step
};
