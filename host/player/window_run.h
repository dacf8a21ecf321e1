// The windowed player: a GTK window "Stagebeacon player" whose drawing
// area is the plug-in's port, with the player bar below it.
#pragma once

#include <string>

#include "log.h"
#include "session.h"

// gtk_init_check: false when no display can be opened.
[[nodiscard]] bool openDisplay(int* argc, char*** argv);

struct WindowSettings {
    int width;
    int height;
    std::string libraryPath;
};

// Runs the window until it is closed (or SIGINT/SIGTERM), then ends the
// session. Returns the exit status. Main thread, after openDisplay and a
// started session.
[[nodiscard]] int runWindowed(VisualSession& session, PlayerLog& log,
                              const WindowSettings& settings);
