// The script runner. The plug-in builds its scripts as AppleScript texts
// (the notifier's and start-up's registration), and this is where they are
// run. There is no AppleScript on this platform: the runner recognises the
// notification script (export/growl_notify.h) and hands its request to the
// desktop notification service (platform/desktop_notifier.h), with the
// icon taken from the resources folder. Every other script is reported as
// not run.
//
// Threads: the main thread (the notifier and start-up call it there).
#pragma once

#include <string>

// The status of a script that was not run (the script-error status).
constexpr int kScriptNotRun = -1753;
// The status of a notification the desktop service could not be reached for.
constexpr int kScriptNotDelivered = -1;

// Runs `textLength` bytes of `text`; 0 when it ran. When `resultData` is
// given it receives the displayed result (empty for a notification) or,
// when the script did not run, the reason.
int LowRunAppleScript(const void* text, long textLength, std::string* resultData);

// LowRunAppleScript on a NUL-terminated text, without a result.
int SimpleRunAppleScript(const char* text);
