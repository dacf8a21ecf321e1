#include "player_bar.h"

PlayerBar::PlayerBar(VisualSession& visualSession, std::vector<PlayerTrack> libraryTracks,
                     const std::string& note)
    : session(visualSession), tracks(std::move(libraryTracks)) {
    box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
    gtk_container_set_border_width(GTK_CONTAINER(box), 4);
    GtkWidget* previous = addButton("Previous", G_CALLBACK(onPrevious));
    playButton = addButton("Play", G_CALLBACK(onPlayPause));
    GtkWidget* next = addButton("Next", G_CALLBACK(onNext));
    label = gtk_label_new(note.c_str());
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_widget_set_halign(label, GTK_ALIGN_START);
    gtk_box_pack_start(GTK_BOX(box), label, TRUE, TRUE, 6);
    GtkWidget* preferences = gtk_button_new_with_label("Edit Preferences");
    gtk_widget_set_can_focus(preferences, FALSE);
    g_signal_connect(preferences, "clicked", G_CALLBACK(onPreferences), this);
    gtk_box_pack_end(GTK_BOX(box), preferences, FALSE, FALSE, 0);
    if (tracks.empty()) {
        gtk_widget_set_sensitive(previous, FALSE);
        gtk_widget_set_sensitive(playButton, FALSE);
        gtk_widget_set_sensitive(next, FALSE);
    } else {
        showTrack();
    }
}

GtkWidget* PlayerBar::addButton(const char* text, GCallback handler) {
    GtkWidget* button = gtk_button_new_with_label(text);
    // Keys belong to the visualizer: buttons never take the focus.
    gtk_widget_set_can_focus(button, FALSE);
    g_signal_connect(button, "clicked", handler, this);
    gtk_box_pack_start(GTK_BOX(box), button, FALSE, FALSE, 0);
    return button;
}

void PlayerBar::showTrack() {
    const PlayerTrack& track = tracks[current];
    std::string text = track.artist + " \u2014 " + track.album;
    gtk_label_set_text(GTK_LABEL(label), text.c_str());
}

void PlayerBar::step(int delta) {
    size_t count = tracks.size();
    current = delta < 0 ? (current + count - 1) % count : (current + 1) % count;
    paused = false;
    showTrack();
    const PlayerTrack& track = tracks[current];
    session.changeTrack(playing ? kVisualPluginPlayMessage : kVisualPluginChangeTrackMessage,
                        track.artist, track.album);
}

void PlayerBar::onPrevious(GtkButton*, gpointer self) {
    static_cast<PlayerBar*>(self)->step(-1);
}

void PlayerBar::onNext(GtkButton*, gpointer self) {
    static_cast<PlayerBar*>(self)->step(1);
}

void PlayerBar::onPlayPause(GtkButton*, gpointer data) {
    PlayerBar* self = static_cast<PlayerBar*>(data);
    if (self->playing) {
        self->session.pause();
        self->paused = true;
    } else if (self->paused) {
        self->session.unpause();
        self->paused = false;
    } else {
        const PlayerTrack& track = self->tracks[self->current];
        self->session.changeTrack(kVisualPluginPlayMessage, track.artist, track.album);
    }
    self->playing = !self->playing;
    gtk_button_set_label(GTK_BUTTON(self->playButton), self->playing ? "Pause" : "Play");
}

void PlayerBar::onPreferences(GtkButton*, gpointer self) {
    static_cast<PlayerBar*>(self)->session.configure();
}
