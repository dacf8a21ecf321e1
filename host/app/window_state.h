// Where the app's window was: its size, position and whether it was
// maximised, kept in the user's config folder
// ($XDG_CONFIG_HOME/stagebeacon/window, else ~/.config/stagebeacon/window)
// as one line "WIDTH HEIGHT X Y MAXIMISED". Saved whole to a temporary file
// in the same folder and renamed over the old one, so a crash never leaves
// half a file.
//
// Threads: main thread.
#pragma once

#include <string>

struct WindowGeometry {
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
    bool positioned = false; // x and y are known
    bool maximized = false;
};

std::string windowStatePath();

// false (geometry untouched) when the file is missing or not a sane line.
bool readWindowGeometry(const std::string& path, WindowGeometry& geometry);

// Makes the folder when needed. false with a reason in error.
bool saveWindowGeometry(const std::string& path, const WindowGeometry& geometry,
                        std::string& error);
