// The steps of the preferences window shared between its files: filling,
// the enable rules, the control hits and OK. Main thread only.
#pragma once

#include <string>

#include "prefs/preferences_window.h"

// Fills every control of a new window from the store, the band list files
// and the friends list.
void fillPreferences(PreferencesWindow& window);

// The enable rules: the sharing names and radio buttons follow the sharing
// box; the export path, its button and the radio buttons follow the export
// box and the system version; the phone account follows the sync box.
void applySharingEnabled(PreferencesModel& model);
void applyExportEnabled(PreferencesModel& model, float osVersion);
void applyPhoneEnabled(PreferencesModel& model);

// The control hits other than OK; false when `number` has none.
bool handleControlHit(PreferencesWindow& window, int number);

// OK: stores, saves, asks for the changed tasks and clears window.open; or
// shows the alert of the first failure and leaves the window open.
void preferencesOk(PreferencesWindow& window);

// The nine release kinds and their boxes, in box order.
struct ReleaseKind {
    const ControlID* box;
    const char* kind;
};
extern const ReleaseKind kReleaseKinds[9];

// A standard alert with an OK button.
void showAlert(const char* title, const char* text);
// ASCII letters and digits; lettersDigitsSpaces also allows blanks.
bool asciiLetterOrDigit(char c);
bool lettersDigitsSpaces(const std::string& text);

// The lines of a band list file without the empty ones, joined by carriage
// returns, as the include and exclude boxes show them.
std::string readBandList(const char* path);

// Runs `edit` on the open window between collecting and refreshing its
// widgets, as an event would; nothing when no window is open.
void preferencesEdit(void (*edit)(PreferencesWindow& window, void* data), void* data);

// Runs the registration text through the installed runner, if any.
void runGrowlRegistration(const std::string& script);
