// Showing a notification through the desktop's notification service. The
// D-Bus back end sends org.freedesktop.Notifications.Notify on the session
// bus and does not wait for an answer; the headless back end writes one line
// to the headless log:
//   "notify: <title> | <body line 1> | <body line 2> | <body line 3>"
//
// Threads: showDesktopNotification from the main thread (the notifier runs
// there); it never waits for the notification service. The back end is
// chosen at start, before the first notification.
#pragma once

#include <string>

struct DesktopNotification {
    std::string appName;  // "Stagebeacon"
    std::string title;    // "Upcoming Concert", "Upcoming Album Release"
    std::string body;     // the three "label value" lines, joined by "\n"
    std::string iconPath; // absolute path of a PNG, or empty for none
};

// True when the notification was handed to the service (or logged).
[[nodiscard]] bool showDesktopNotification(const DesktopNotification& notification);

using DesktopNotifierBackend = bool (*)(const DesktopNotification& notification);
// Chooses the back end; null goes back to the headless one (the default).
void setDesktopNotifierBackend(DesktopNotifierBackend backend);

bool showDesktopNotificationHeadless(const DesktopNotification& notification);
// The session bus's notification service. False when there is no session
// bus to send to; a bus without a notification service drops the message
// silently, as a desktop without notifications would.
bool showDesktopNotificationDbus(const DesktopNotification& notification);
