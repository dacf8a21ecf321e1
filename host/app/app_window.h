// The app's two ways of running: the calendar window (a header bar with
// the menu Preferences, Refresh now, Quit; no player bar; size and position
// remembered) or headless (the calendar drawn into an unseen port, for
// tests and for machines without a display). Both run the GLib main loop
// until the window closes, Quit is chosen, or SIGINT/SIGTERM arrives, then
// end the session.
//
// Threads: main thread, after the session started.
#pragma once

#include "app_options.h"
#include "log.h"
#include "session.h"

[[nodiscard]] int runAppWindow(VisualSession& session, PlayerLog& log, const AppOptions& options);
[[nodiscard]] int runAppHeadless(VisualSession& session, const AppOptions& options);
// An empty window of the same size, shown and, with --exit-after-first-frame,
// closed at its first frame: what starting any GTK window costs.
[[nodiscard]] int runBareWindow(const AppOptions& options);
