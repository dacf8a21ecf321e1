// The registration script for the desktop notifier: the text that announces
// the plug-in's two notification kinds and which of them are on by default.
// Built here, whole and exact, so that whatever delivers it (the desktop
// notification service on Linux) is fed the same names the notifier uses.
//
// Threads: a plain function.
#pragma once

#include <string>

constexpr const char* kConcertNotificationName = "Upcoming Concert";
constexpr const char* kReleaseNotificationName = "Upcoming Album Release";

std::string growlRegistrationScript(bool notifyConcerts, bool notifyAlbums);
// The text the preferences window sends: start-up's, with a blank before the
// comma of the list of all notifications.
std::string preferencesGrowlScript(bool notifyConcerts, bool notifyAlbums);
