#include "app_window.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <sys/time.h>

#include <atomic>
#include <cinttypes>
#include <csignal>
#include <cstdio>

#include "visual_area.h"
#include "window_state.h"

namespace {

const char kAppIcon[] = "org.stagebeacon.Stagebeacon";

struct App {
    VisualSession* session = nullptr;
    PlayerLog* log = nullptr;
    GtkWidget* window = nullptr;
    GMainLoop* loop = nullptr; // headless
    WindowGeometry geometry;
    bool ended = false;
    bool frameLogged = false; // the bare window's
};

void saveGeometry(App* app) {
    std::string error;
    if (!saveWindowGeometry(windowStatePath(), app->geometry, error))
        app->log->writeLine("stagebeacon: " + error);
}

void endApp(App* app) {
    if (app->ended) return;
    app->ended = true;
    if (app->window && app->session) saveGeometry(app);
    if (app->session) app->session->quit();
    if (app->loop)
        g_main_loop_quit(app->loop);
    else
        gtk_main_quit();
}

gboolean onDelete(GtkWidget*, GdkEvent*, gpointer data) {
    endApp(static_cast<App*>(data));
    return TRUE;
}

gboolean onSignal(gpointer data) {
    endApp(static_cast<App*>(data));
    return G_SOURCE_CONTINUE;
}

// Size and place while not maximised, so that a maximised window comes back
// to its old size when unmaximised after a restart.
gboolean onConfigure(GtkWidget* widget, GdkEvent*, gpointer data) {
    App* app = static_cast<App*>(data);
    if (!app->geometry.maximized) {
        gtk_window_get_size(GTK_WINDOW(widget), &app->geometry.width, &app->geometry.height);
        gtk_window_get_position(GTK_WINDOW(widget), &app->geometry.x, &app->geometry.y);
        app->geometry.positioned = true;
    }
    return FALSE;
}

gboolean onWindowState(GtkWidget*, GdkEventWindowState* event, gpointer data) {
    static_cast<App*>(data)->geometry.maximized =
        (event->new_window_state & GDK_WINDOW_STATE_MAXIMIZED) != 0;
    return FALSE;
}

void onPreferences(GtkMenuItem*, gpointer data) {
    static_cast<App*>(data)->session->configure();
}

void onRefresh(GtkMenuItem*, gpointer data) {
    App* app = static_cast<App*>(data);
    auto hook = app->session->scriptCommand();
    char error[256] = "";
    if (!hook || hook("refresh", "", error, sizeof error) != 0)
        app->log->writeLine(std::string("stagebeacon: the plug-in cannot refresh now") +
                            (error[0] ? std::string(": ") + error : std::string()));
}

void onQuit(GtkMenuItem*, gpointer data) {
    endApp(static_cast<App*>(data));
}

GtkWidget* makeHeaderBar(App& app) {
    GtkWidget* bar = gtk_header_bar_new();
    gtk_header_bar_set_title(GTK_HEADER_BAR(bar), "Stagebeacon");
    gtk_header_bar_set_show_close_button(GTK_HEADER_BAR(bar), TRUE);

    GtkWidget* menu = gtk_menu_new();
    struct Entry {
        const char* label;
        GCallback action;
    };
    for (const Entry& entry : {Entry{"_Preferences", G_CALLBACK(onPreferences)},
                               Entry{"_Refresh now", G_CALLBACK(onRefresh)},
                               Entry{"_Quit", G_CALLBACK(onQuit)}}) {
        GtkWidget* item = gtk_menu_item_new_with_mnemonic(entry.label);
        g_signal_connect(item, "activate", entry.action, &app);
        gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
    }
    gtk_widget_show_all(menu);
    GtkWidget* button = gtk_menu_button_new();
    gtk_menu_button_set_popup(GTK_MENU_BUTTON(button), menu);
    gtk_button_set_image(GTK_BUTTON(button),
                         gtk_image_new_from_icon_name("open-menu-symbolic", GTK_ICON_SIZE_BUTTON));
    gtk_widget_set_tooltip_text(button, "Menu");
    gtk_header_bar_pack_end(GTK_HEADER_BAR(bar), button);
    return bar;
}

GtkWidget* makeWindow(App& app, const AppOptions& options) {
    app.geometry.width = options.width;
    app.geometry.height = options.height;
    (void)readWindowGeometry(windowStatePath(), app.geometry);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), "Stagebeacon");
    gtk_window_set_icon_name(GTK_WINDOW(window), kAppIcon);
    gtk_window_set_default_size(GTK_WINDOW(window), app.geometry.width, app.geometry.height);
    if (app.geometry.positioned) gtk_window_move(GTK_WINDOW(window), app.geometry.x, app.geometry.y);
    if (app.geometry.maximized) gtk_window_maximize(GTK_WINDOW(window));
    g_signal_connect(window, "delete-event", G_CALLBACK(onDelete), &app);
    g_signal_connect(window, "configure-event", G_CALLBACK(onConfigure), &app);
    g_signal_connect(window, "window-state-event", G_CALLBACK(onWindowState), &app);
    return window;
}

// Runs the loop with SIGINT and SIGTERM ending the app.
void runLoop(App& app) {
    guint interrupt = g_unix_signal_add(SIGINT, onSignal, &app);
    guint terminate = g_unix_signal_add(SIGTERM, onSignal, &app);
    if (app.loop)
        g_main_loop_run(app.loop);
    else
        gtk_main();
    g_source_remove(interrupt);
    g_source_remove(terminate);
}

} // namespace

void logFirstFrame(PlayerLog& log) {
    timeval now;
    gettimeofday(&now, nullptr);
    char line[64];
    std::snprintf(line, sizeof line, "first frame at %" PRId64 ".%06ld", int64_t(now.tv_sec),
                  long(now.tv_usec));
    log.writeLine(line);
}

int runAppWindow(VisualSession& session, PlayerLog& log, const AppOptions& options,
                 std::function<void()> firstFrame) {
    App app;
    app.session = &session;
    app.log = &log;
    VisualArea area(session);
    area.onFirstFrame([&] {
        if (options.exitAfterFirstFrame) {
            logFirstFrame(log);
            endApp(&app);
        }
        firstFrame();
    });
    app.window = makeWindow(app, options);
    gtk_window_set_titlebar(GTK_WINDOW(app.window), makeHeaderBar(app));
    gtk_container_add(GTK_CONTAINER(app.window), area.widget());
    gtk_widget_show_all(app.window);
    gtk_widget_grab_focus(area.widget());
    runLoop(app);
    gtk_widget_destroy(app.window);
    return 0;
}

namespace {

struct Headless {
    App* app;
    bool exitAfterFirstFrame;
    std::function<void()> firstFrame;
    std::atomic<bool> frameSeen{false};
};

gboolean onHeadlessFirstFrame(gpointer data) {
    Headless* headless = static_cast<Headless*>(data);
    if (headless->exitAfterFirstFrame) {
        logFirstFrame(*headless->app->log);
        endApp(headless->app);
    }
    headless->firstFrame();
    return G_SOURCE_REMOVE;
}

// Any thread: the rest happens on the main thread.
void onHeadlessFrame(void* data) {
    Headless* headless = static_cast<Headless*>(data);
    if (!headless->frameSeen.exchange(true)) g_idle_add(onHeadlessFirstFrame, headless);
}

gboolean onHeadlessTick(gpointer data) {
    static_cast<VisualSession*>(data)->idle();
    return G_SOURCE_CONTINUE;
}

} // namespace

int runAppHeadless(VisualSession& session, PlayerLog& log, const AppOptions& options,
                   std::function<void()> firstFrame) {
    App app;
    app.session = &session;
    app.log = &log;
    app.loop = g_main_loop_new(nullptr, FALSE);
    Headless headless{&app, options.exitAfterFirstFrame, std::move(firstFrame)};
    session.display().setRedrawRequest(onHeadlessFrame, &headless);
    session.show(0, 0, options.width, options.height);
    guint tick = g_timeout_add(33, onHeadlessTick, &session);
    runLoop(app);
    g_source_remove(tick);
    session.display().setRedrawRequest(nullptr, nullptr);
    g_main_loop_unref(app.loop);
    return 0;
}

namespace {

gboolean onBareDraw(GtkWidget*, cairo_t* cr, gpointer data) {
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_paint(cr);
    App* app = static_cast<App*>(data);
    if (!app->ended && !app->frameLogged) {
        app->frameLogged = true;
        logFirstFrame(*app->log);
        g_idle_add(
            [](gpointer self) {
                endApp(static_cast<App*>(self));
                return G_SOURCE_REMOVE;
            },
            app);
    }
    return TRUE;
}

} // namespace

int runBareWindow(PlayerLog& log, const AppOptions& options) {
    App app;
    app.log = &log;
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(window), options.width, options.height);
    gtk_window_set_titlebar(GTK_WINDOW(window), gtk_header_bar_new());
    GtkWidget* area = gtk_drawing_area_new();
    gtk_container_add(GTK_CONTAINER(window), area);
    g_signal_connect(window, "delete-event", G_CALLBACK(onDelete), &app);
    if (options.exitAfterFirstFrame) g_signal_connect(area, "draw", G_CALLBACK(onBareDraw), &app);
    gtk_widget_show_all(window);
    runLoop(app);
    gtk_widget_destroy(window);
    return 0;
}
