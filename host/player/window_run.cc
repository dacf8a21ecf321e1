#include "window_run.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <fstream>
#include <memory>

#include "player_bar.h"
#include "track_list.h"

namespace {

// About thirty idle ticks a second.
const guint kIdleIntervalMs = 33;

struct Window {
    VisualSession& session;
    GtkWidget* window = nullptr;
    GtkWidget* area = nullptr;
    std::atomic<bool> redrawQueued{false};
    int width = 0; // the port's current size
    int height = 0;
    uint16_t heldButton = 0; // kPlayerPrimaryButton, kPlayerSecondaryButton or 0
    double scrollSteps = 0;  // smooth scrolling, not yet a whole step

    explicit Window(VisualSession& visualSession) : session(visualSession) {}
};

// Any thread (frameReady): one queued redraw at a time, done on the main loop.
gboolean redrawOnMainLoop(gpointer data) {
    Window* self = static_cast<Window*>(data);
    self->redrawQueued = false;
    gtk_widget_queue_draw(self->area);
    return G_SOURCE_REMOVE;
}

void requestRedraw(void* data) {
    Window* self = static_cast<Window*>(data);
    if (!self->redrawQueued.exchange(true)) g_idle_add(redrawOnMainLoop, self);
}

void endSession(Window* self) {
    self->session.quit();
    gtk_main_quit();
}

// GDK key to the character code of a key event; -1 for keys the plug-in
// never sees.
int characterCode(guint keyval) {
    if (keyval >= 0x20 && keyval <= 0x7e) return static_cast<int>(keyval);
    switch (keyval) {
    case GDK_KEY_BackSpace:
        return 8;
    case GDK_KEY_Tab:
    case GDK_KEY_ISO_Left_Tab:
        return 9;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
        return 13;
    case GDK_KEY_Left:
        return 28;
    case GDK_KEY_Right:
        return 29;
    case GDK_KEY_Up:
        return 30;
    case GDK_KEY_Down:
        return 31;
    default:
        return -1;
    }
}

uint16_t playerButton(guint button) {
    if (button == 1) return kPlayerPrimaryButton;
    if (button == 3) return kPlayerSecondaryButton;
    return 0;
}

gboolean onDraw(GtkWidget*, cairo_t* cr, gpointer data) {
    static_cast<Window*>(data)->session.display().paint(cr);
    return TRUE;
}

void onSizeAllocate(GtkWidget*, GdkRectangle* allocation, gpointer data) {
    Window* self = static_cast<Window*>(data);
    int width = std::min(allocation->width, kMaxPortSide);
    int height = std::min(allocation->height, kMaxPortSide);
    if (width < 1 || height < 1 || (width == self->width && height == self->height)) return;
    self->width = width;
    self->height = height;
    if (self->session.shown())
        self->session.resize(0, 0, width, height);
    else
        self->session.show(0, 0, width, height);
}

gboolean onButtonPress(GtkWidget* widget, GdkEventButton* event, gpointer data) {
    Window* self = static_cast<Window*>(data);
    gtk_widget_grab_focus(widget);
    uint16_t button = playerButton(event->button);
    // Double clicks come as a second press plus this extra event.
    if (event->type != GDK_BUTTON_PRESS || button == 0) return TRUE;
    int x = static_cast<int>(event->x), y = static_cast<int>(event->y);
    if (button == kPlayerPrimaryButton) self->session.mouseDownRecord(x, y);
    self->session.mouseEvent(kPlayerMouseDown, x, y, button, 0, 0);
    self->heldButton = button;
    return TRUE;
}

gboolean onButtonRelease(GtkWidget*, GdkEventButton* event, gpointer data) {
    Window* self = static_cast<Window*>(data);
    uint16_t button = playerButton(event->button);
    if (button == 0) return TRUE;
    uint32_t modifiers = (event->state & GDK_CONTROL_MASK) ? kPlayerControlKeyModifier : 0;
    self->session.mouseEvent(kPlayerMouseUp, static_cast<int>(event->x), static_cast<int>(event->y),
                             button, modifiers, 0);
    self->heldButton = 0;
    return TRUE;
}

gboolean onMotion(GtkWidget*, GdkEventMotion* event, gpointer data) {
    Window* self = static_cast<Window*>(data);
    uint32_t kind = self->heldButton ? kPlayerMouseDragged : kPlayerMouseMoved;
    self->session.mouseEvent(kind, static_cast<int>(event->x), static_cast<int>(event->y),
                             self->heldButton, 0, 0);
    return TRUE;
}

gboolean onScroll(GtkWidget*, GdkEventScroll* event, gpointer data) {
    Window* self = static_cast<Window*>(data);
    int steps = 0;
    if (event->direction == GDK_SCROLL_UP) {
        steps = 1;
    } else if (event->direction == GDK_SCROLL_DOWN) {
        steps = -1;
    } else if (event->direction == GDK_SCROLL_SMOOTH) {
        // GDK's smooth delta grows downwards; the wheel delta grows away
        // from the user (up).
        self->scrollSteps -= event->delta_y;
        steps = static_cast<int>(std::trunc(self->scrollSteps));
        self->scrollSteps -= steps;
    }
    int x = static_cast<int>(event->x), y = static_cast<int>(event->y);
    for (; steps > 0; --steps)
        self->session.mouseEvent(kPlayerMouseWheelMoved, x, y, 0, 0, 1);
    for (; steps < 0; ++steps)
        self->session.mouseEvent(kPlayerMouseWheelMoved, x, y, 0, 0, -1);
    return TRUE;
}

gboolean onKeyPress(GtkWidget*, GdkEventKey* event, gpointer data) {
    int code = characterCode(event->keyval);
    if (code < 0) return FALSE;
    static_cast<Window*>(data)->session.key(static_cast<unsigned char>(code));
    return TRUE;
}

gboolean onIdleTick(gpointer data) {
    static_cast<Window*>(data)->session.idle(); // nothing once the session ended
    return G_SOURCE_CONTINUE;
}

// The window stays until the loop has ended; runWindowed destroys it.
gboolean onDelete(GtkWidget*, GdkEvent*, gpointer data) {
    endSession(static_cast<Window*>(data));
    return TRUE;
}

// Stays installed (a second signal finds the session ended); removed after the loop.
gboolean onSignal(gpointer data) {
    endSession(static_cast<Window*>(data));
    return G_SOURCE_CONTINUE;
}

// The tracks for the bar, or a note saying why there are none.
std::vector<PlayerTrack> loadTracks(const std::string& path, std::string& note) {
    std::ifstream library(path);
    if (!library) {
        note = "No tracks: cannot read " + path;
        return {};
    }
    std::vector<PlayerTrack> tracks = readPlayerTracks(library);
    if (tracks.empty()) note = "No tracks with an artist in " + path;
    return tracks;
}

GtkWidget* makeArea(Window& self) {
    GtkWidget* area = gtk_drawing_area_new();
    gtk_widget_set_can_focus(area, TRUE);
    gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                    GDK_POINTER_MOTION_MASK | GDK_SCROLL_MASK |
                                    GDK_SMOOTH_SCROLL_MASK | GDK_KEY_PRESS_MASK);
    g_signal_connect(area, "draw", G_CALLBACK(onDraw), &self);
    g_signal_connect(area, "size-allocate", G_CALLBACK(onSizeAllocate), &self);
    g_signal_connect(area, "button-press-event", G_CALLBACK(onButtonPress), &self);
    g_signal_connect(area, "button-release-event", G_CALLBACK(onButtonRelease), &self);
    g_signal_connect(area, "motion-notify-event", G_CALLBACK(onMotion), &self);
    g_signal_connect(area, "scroll-event", G_CALLBACK(onScroll), &self);
    g_signal_connect(area, "key-press-event", G_CALLBACK(onKeyPress), &self);
    return area;
}

} // namespace

bool openDisplay(int* argc, char*** argv) {
    return gtk_init_check(argc, argv);
}

int runWindowed(VisualSession& session, PlayerLog& log, const WindowSettings& settings) {
    Window self(session);
    std::string note;
    std::vector<PlayerTrack> tracks = loadTracks(settings.libraryPath, note);
    if (!note.empty()) log.writeLine("player: " + note);
    PlayerBar bar(session, std::move(tracks), note);

    self.window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(self.window), "Stagebeacon player");
    gtk_window_set_default_size(GTK_WINDOW(self.window), settings.width, settings.height);
    self.area = makeArea(self);
    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), self.area, TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(column), bar.widget(), FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(self.window), column);
    g_signal_connect(self.window, "delete-event", G_CALLBACK(onDelete), &self);

    session.display().setRedrawRequest(requestRedraw, &self);
    guint tick = g_timeout_add(kIdleIntervalMs, onIdleTick, &self);
    guint interrupt = g_unix_signal_add(SIGINT, onSignal, &self);
    guint terminate = g_unix_signal_add(SIGTERM, onSignal, &self);
    gtk_widget_show_all(self.window);
    gtk_widget_grab_focus(self.area);
    gtk_main();

    // The session has ended, so no plug-in thread calls frameReady any more.
    session.display().setRedrawRequest(nullptr, nullptr);
    g_source_remove(tick);
    g_source_remove(interrupt);
    g_source_remove(terminate);
    gtk_widget_destroy(self.window);
    return 0;
}
