#include "visual_area.h"

#include <algorithm>
#include <cmath>

namespace {

// About thirty idle ticks a second.
const guint kIdleIntervalMs = 33;

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

} // namespace

VisualArea::VisualArea(VisualSession& visualSession) : session(visualSession) {
    area = gtk_drawing_area_new();
    g_object_ref_sink(area);
    gtk_widget_set_can_focus(area, TRUE);
    gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                    GDK_POINTER_MOTION_MASK | GDK_SCROLL_MASK |
                                    GDK_SMOOTH_SCROLL_MASK | GDK_KEY_PRESS_MASK);
    g_signal_connect(area, "draw", G_CALLBACK(onDraw), this);
    g_signal_connect(area, "size-allocate", G_CALLBACK(onSizeAllocate), this);
    g_signal_connect(area, "button-press-event", G_CALLBACK(onButtonPress), this);
    g_signal_connect(area, "button-release-event", G_CALLBACK(onButtonRelease), this);
    g_signal_connect(area, "motion-notify-event", G_CALLBACK(onMotion), this);
    g_signal_connect(area, "scroll-event", G_CALLBACK(onScroll), this);
    g_signal_connect(area, "key-press-event", G_CALLBACK(onKeyPress), this);
    session.display().setRedrawRequest(requestRedraw, this);
    tick = g_timeout_add(kIdleIntervalMs, onIdleTick, this);
}

VisualArea::~VisualArea() {
    session.display().setRedrawRequest(nullptr, nullptr);
    g_source_remove(tick);
    g_signal_handlers_disconnect_by_data(area, this);
    g_object_unref(area);
}

// Any thread (frameReady): one queued redraw at a time, done on the main loop.
void VisualArea::requestRedraw(void* data) {
    VisualArea* self = static_cast<VisualArea*>(data);
    self->frameArrived = true;
    if (!self->redrawQueued.exchange(true)) g_idle_add(redrawOnMainLoop, self);
}

gboolean VisualArea::redrawOnMainLoop(gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
    self->redrawQueued = false;
    gtk_widget_queue_draw(self->area);
    return G_SOURCE_REMOVE;
}

gboolean VisualArea::onDraw(GtkWidget*, cairo_t* cr, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
    self->session.display().paint(cr);
    if (self->firstFrame && self->frameArrived) {
        std::function<void()> callback = std::move(self->firstFrame);
        self->firstFrame = nullptr;
        callback();
    }
    return TRUE;
}

void VisualArea::onSizeAllocate(GtkWidget*, GdkRectangle* allocation, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
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

gboolean VisualArea::onButtonPress(GtkWidget* widget, GdkEventButton* event, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
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

gboolean VisualArea::onButtonRelease(GtkWidget*, GdkEventButton* event, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
    uint16_t button = playerButton(event->button);
    if (button == 0) return TRUE;
    uint32_t modifiers = (event->state & GDK_CONTROL_MASK) ? kPlayerControlKeyModifier : 0;
    self->session.mouseEvent(kPlayerMouseUp, static_cast<int>(event->x), static_cast<int>(event->y),
                             button, modifiers, 0);
    self->heldButton = 0;
    return TRUE;
}

gboolean VisualArea::onMotion(GtkWidget*, GdkEventMotion* event, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
    uint32_t kind = self->heldButton ? kPlayerMouseDragged : kPlayerMouseMoved;
    self->session.mouseEvent(kind, static_cast<int>(event->x), static_cast<int>(event->y),
                             self->heldButton, 0, 0);
    return TRUE;
}

gboolean VisualArea::onScroll(GtkWidget*, GdkEventScroll* event, gpointer data) {
    VisualArea* self = static_cast<VisualArea*>(data);
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

gboolean VisualArea::onKeyPress(GtkWidget*, GdkEventKey* event, gpointer data) {
    int code = characterCode(event->keyval);
    if (code < 0) return FALSE;
    static_cast<VisualArea*>(data)->session.key(static_cast<unsigned char>(code));
    return TRUE;
}

gboolean VisualArea::onIdleTick(gpointer data) {
    static_cast<VisualArea*>(data)->session.idle(); // nothing once the session ended
    return G_SOURCE_CONTINUE;
}
