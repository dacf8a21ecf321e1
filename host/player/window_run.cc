#include "window_run.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <csignal>
#include <fstream>
#include <memory>

#include "player_bar.h"
#include "track_list.h"
#include "visual_area.h"

namespace {

struct Window {
    VisualSession& session;
    GtkWidget* window = nullptr;
};

void endSession(Window* self) {
    self->session.quit();
    gtk_main_quit();
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

} // namespace

bool openDisplay(int* argc, char*** argv) {
    return gtk_init_check(argc, argv);
}

int runWindowed(VisualSession& session, PlayerLog& log, const WindowSettings& settings) {
    Window self{session};
    VisualArea area(session);
    std::string note;
    std::vector<PlayerTrack> tracks = loadTracks(settings.libraryPath, note);
    if (!note.empty()) log.writeLine("player: " + note);
    PlayerBar bar(session, std::move(tracks), note);

    self.window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(self.window), "Stagebeacon player");
    gtk_window_set_default_size(GTK_WINDOW(self.window), settings.width, settings.height);
    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), area.widget(), TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(column), bar.widget(), FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(self.window), column);
    g_signal_connect(self.window, "delete-event", G_CALLBACK(onDelete), &self);

    guint interrupt = g_unix_signal_add(SIGINT, onSignal, &self);
    guint terminate = g_unix_signal_add(SIGTERM, onSignal, &self);
    gtk_widget_show_all(self.window);
    gtk_widget_grab_focus(area.widget());
    gtk_main();

    g_source_remove(interrupt);
    g_source_remove(terminate);
    gtk_widget_destroy(self.window);
    return 0;
}
