// The preferences window in GTK: built from resources/preferences.ui
// (window "Stagebeacon_Preferences", one widget per control identifier),
// it moves values between its widgets and the window's model and forwards
// clicks, toggles, tab switches, list selections and header clicks to the
// logic in src/prefs. It decides nothing itself.
//
// Threads: main thread only, like every GTK call.
#pragma once

#include "prefs/preferences_window.h"

typedef struct _GtkBuilder GtkBuilder;

// The back end for setPreferencesWindowBackend (the plug-in entry installs
// it with the other windowed back ends). Its show answers false, and the window stays headless, when the
// interface file cannot be read or lacks a control.
const PreferencesWindowBackend* gtkPreferencesWindowBackend();

// The builder of the window being shown (its objects by id); null when none.
GtkBuilder* preferencesBuilder();
