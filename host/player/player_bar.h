// The windowed player's bar under the visualizer: previous, play/pause,
// next, the current "Artist — Album", and "Edit Preferences" (configure).
// Stepping sends a track change, or play while playing.
//
// Threads: main thread (GTK signals).
#pragma once

#include <gtk/gtk.h>

#include <string>
#include <vector>

#include "session.h"
#include "track_list.h"

class PlayerBar {
  public:
    // note is shown in place of a track when tracks is empty.
    PlayerBar(VisualSession& session, std::vector<PlayerTrack> tracks, const std::string& note);
    PlayerBar(const PlayerBar&) = delete;
    PlayerBar& operator=(const PlayerBar&) = delete;

    GtkWidget* widget() const { return box; }

  private:
    static void onPrevious(GtkButton*, gpointer self);
    static void onPlayPause(GtkButton*, gpointer self);
    static void onNext(GtkButton*, gpointer self);
    static void onPreferences(GtkButton*, gpointer self);

    GtkWidget* addButton(const char* label, GCallback handler);
    void step(int delta);
    void showTrack();

    VisualSession& session;
    std::vector<PlayerTrack> tracks;
    size_t current = 0;
    bool playing = false;
    bool paused = false; // paused after a play: the play button unpauses
    GtkWidget* box = nullptr;
    GtkWidget* playButton = nullptr;
    GtkWidget* label = nullptr;
};
