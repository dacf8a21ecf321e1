// The notification window on a GTK display: a popup window (no frame, not
// placed by the window manager, so gtk_window_move puts it exactly where the
// animation says) loaded from notify.ui. Hiding destroys it: a hidden
// notification window is never shown again, and keeping every one would
// grow the player for as long as it plays.
#include <gtk/gtk.h>

#include "platform/desktop_notifier.h"
#include "export/notify_window.h"

namespace {

struct GtkNotifyWindow {
    GtkWidget* window = nullptr;
    GtkWidget* image = nullptr;
    GtkWidget* texts[6] = {};
    NotifyEventProc proc = nullptr;
    void* data = nullptr;
};

GtkNotifyWindow* gtkWindow(NotifyWindow* handle) {
    return reinterpret_cast<GtkNotifyWindow*>(handle);
}

constexpr const char* kTextIds[6] = {"CID_STXT_tag1",       "CID_STXT_tag2",
                                     "CID_STXT_tag3",       "CID_STXT_tag1_value",
                                     "CID_STXT_tag2_value", "CID_STXT_tag3_value"};

struct TimerBox {
    GMainContext* context = nullptr;
    guint source = 0;
    NotifyTimerProc proc = nullptr;
    void* data = nullptr;
};

gboolean onTimer(gpointer data) {
    auto* box = static_cast<TimerBox*>(data);
    // The callback may remove its own timer; GLib frees the box only after
    // this function has returned, and it is not touched after the call.
    box->proc(reinterpret_cast<NotifyTimer*>(box), box->data);
    return G_SOURCE_CONTINUE;
}

void freeTimerBox(gpointer data) {
    delete static_cast<TimerBox*>(data);
}

gboolean onMouse(GtkWidget*, GdkEvent* event, gpointer data) {
    auto* window = static_cast<GtkNotifyWindow*>(data);
    if (!window->proc) return FALSE;
    NotifyEvent translated;
    gdouble x = 0, y = 0;
    translated.locationValid = gdk_event_get_root_coords(event, &x, &y);
    translated.globalX = static_cast<int>(x);
    translated.globalY = static_cast<int>(y);
    GdkEventType type = gdk_event_get_event_type(event);
    translated.kind = type == GDK_BUTTON_PRESS    ? NotifyEventKind::MouseDown
                      : type == GDK_MOTION_NOTIFY ? NotifyEventKind::MouseMoved
                                                  : NotifyEventKind::Other;
    (void)window->proc(translated, window->data);
    return FALSE; // the window's own handling follows in every case
}

class GtkNotifyWindowBackend : public NotifyWindowBackend {
  public:
    NotifyWindow* createWindow(const char* uiPath) override {
        GtkBuilder* builder = gtk_builder_new();
        GError* error = nullptr;
        if (!gtk_builder_add_from_file(builder, uiPath, &error)) {
            g_clear_error(&error);
            g_object_unref(builder);
            return nullptr;
        }
        GObject* found = gtk_builder_get_object(builder, "Stagebeacon_Notify");
        if (!found || !GTK_IS_WINDOW(found)) {
            g_object_unref(builder);
            return nullptr;
        }
        auto* window = new GtkNotifyWindow;
        window->window = GTK_WIDGET(found);
        GObject* image = gtk_builder_get_object(builder, "imag_10");
        window->image = image && GTK_IS_IMAGE(image) ? GTK_WIDGET(image) : nullptr;
        for (int i = 0; i < 6; ++i) {
            GObject* label = gtk_builder_get_object(builder, kTextIds[i]);
            window->texts[i] = label && GTK_IS_LABEL(label) ? GTK_WIDGET(label) : nullptr;
        }
        // Toplevels belong to GTK once built; the builder may go.
        g_object_unref(builder);
        return reinterpret_cast<NotifyWindow*>(window);
    }

    int installEventHandler(NotifyWindow* handle, NotifyEventProc proc, void* data) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        window->proc = proc;
        window->data = data;
        gtk_widget_add_events(window->window, GDK_BUTTON_PRESS_MASK | GDK_POINTER_MOTION_MASK);
        g_signal_connect(window->window, "button-press-event", G_CALLBACK(onMouse), window);
        g_signal_connect(window->window, "motion-notify-event", G_CALLBACK(onMouse), window);
        return 0;
    }

    bool setImage(NotifyWindow* handle, const char* pngPath) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        if (!window->image) return false;
        gtk_image_set_from_file(GTK_IMAGE(window->image), pngPath);
        return true;
    }

    void setText(NotifyWindow* handle, int index, const char* text) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        if (index < 0 || index >= 6 || !window->texts[index]) return;
        // The texts are 8-bit; GTK wants UTF-8, so anything else is shown
        // with its invalid bytes replaced rather than not at all.
        gchar* valid = g_utf8_make_valid(text ? text : "", -1);
        gtk_label_set_text(GTK_LABEL(window->texts[index]), valid);
        g_free(valid);
    }

    void screenSize(int* width, int* height) override {
        GdkRectangle bounds{0, 0, 0, 0};
        GdkDisplay* display = gdk_display_get_default();
        GdkMonitor* monitor = display ? gdk_display_get_primary_monitor(display) : nullptr;
        if (!monitor && display) monitor = gdk_display_get_monitor(display, 0);
        if (monitor) gdk_monitor_get_geometry(monitor, &bounds);
        *width = bounds.width;
        *height = bounds.height;
    }

    void windowSize(NotifyWindow* handle, int* width, int* height) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        // The default size, or more when the texts ask for it: the window
        // is placed flush with the screen's right edge by this width.
        gtk_window_get_size(GTK_WINDOW(window->window), width, height);
        GtkRequisition natural{0, 0};
        gtk_widget_get_preferred_size(window->window, nullptr, &natural);
        if (natural.width > *width) *width = natural.width;
        if (natural.height > *height) *height = natural.height;
    }

    void move(NotifyWindow* handle, int left, int top) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        gtk_window_move(GTK_WINDOW(window->window), left, top);
    }

    void setAlpha(NotifyWindow* handle, float alpha) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        gtk_widget_set_opacity(window->window, alpha);
    }

    void show(NotifyWindow* handle) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        gtk_widget_show_all(window->window);
        gtk_window_present(GTK_WINDOW(window->window));
    }

    void hide(NotifyWindow* handle) override {
        GtkNotifyWindow* window = gtkWindow(handle);
        // Events already queued for the window must not reach a handler
        // whose data the caller is about to release.
        g_signal_handlers_disconnect_by_data(window->window, window);
        gtk_widget_destroy(window->window);
        delete window;
    }

    NotifyMainLoop* mainLoop() override {
        return reinterpret_cast<NotifyMainLoop*>(g_main_context_default());
    }

    NotifyTimer* installTimer(NotifyMainLoop* loop, double firstDelay, double interval,
                              NotifyTimerProc proc, void* data) override {
        // GLib timers have one period; the first delay equals the interval
        // wherever the notifier installs one.
        (void)firstDelay;
        auto* box = new TimerBox;
        box->proc = proc;
        box->data = data;
        box->context = reinterpret_cast<GMainContext*>(loop);
        GSource* source = g_timeout_source_new(static_cast<guint>(interval * 1000.0 + 0.5));
        g_source_set_callback(source, onTimer, box, freeTimerBox);
        box->source = g_source_attach(source, box->context);
        g_source_unref(source);
        return reinterpret_cast<NotifyTimer*>(box);
    }

    void removeTimer(NotifyTimer* timer) override {
        auto* box = reinterpret_cast<TimerBox*>(timer);
        GSource* source = g_main_context_find_source_by_id(box->context, box->source);
        if (source) g_source_destroy(source);
    }
};

} // namespace

void installGtkNotifyBackends() {
    static GtkNotifyWindowBackend backend;
    setNotifyWindowBackend(&backend);
    setDesktopNotifierBackend(showDesktopNotificationDbus);
}
