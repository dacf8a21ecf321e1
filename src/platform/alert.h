// Standard alerts: a title, a longer text and up to two buttons. The GTK
// back end shows a message dialog (title as primary, text as secondary
// text); the headless back end writes the alert to the headless log and
// answers from the player's script, with the default button when the script
// says nothing.
//
// Threads: runAlert on the main thread only (the GTK back end requires it;
// the update thread hands alerts to the main loop). It blocks until the user
// answers. setAlertBackend at start, before any alert.
#pragma once

#include <string>

enum class AlertButton { Default, Cancel };

struct AlertRequest {
    std::string title;
    std::string text;
    std::string defaultButton;
    std::string cancelButton; // empty: the alert has only the default button
};

AlertButton runAlert(const AlertRequest& request);

using AlertBackend = AlertButton (*)(const AlertRequest& request);
// Chooses the back end; null goes back to the headless one (the default).
void setAlertBackend(AlertBackend backend);

AlertButton runHeadlessAlert(const AlertRequest& request);
