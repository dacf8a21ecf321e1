// The app's two ways of running: the calendar window (a header bar with
// the menu Preferences, Refresh now, Quit; no player bar; size and position
// remembered) or headless (the calendar drawn into an unseen port, for
// tests and for machines without a display). Both run the GLib main loop
// until the window closes, Quit is chosen, or SIGINT/SIGTERM arrives, then
// end the session.
//
// Threads: main thread, after the session started.
#pragma once

#include <functional>

#include "app_options.h"
#include "log.h"
#include "session.h"

//
// `firstFrame` runs on the main thread once the plug-in's first frame is
// shown (on screen, or in the unseen port): what can wait, waits for it.
// With --exit-after-first-frame the time of that frame goes to the log (see
// logFirstFrame) and the app ends.
[[nodiscard]] int runAppWindow(VisualSession& session, PlayerLog& log, const AppOptions& options,
                               std::function<void()> firstFrame);
[[nodiscard]] int runAppHeadless(VisualSession& session, PlayerLog& log,
                                 const AppOptions& options, std::function<void()> firstFrame);
// An empty window of the same size, shown and, with --exit-after-first-frame,
// closed at its first frame: what starting any GTK window costs.
[[nodiscard]] int runBareWindow(PlayerLog& log, const AppOptions& options);

// "first frame at SECONDS.MICROSECONDS" (the wall clock), which the start-up
// benchmark compares with the time it started the program.
void logFirstFrame(PlayerLog& log);
