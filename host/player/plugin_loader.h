// Opening the plug-in library and finding its one entry point.
//
// The library is never closed: the plug-in keeps its application object
// (and whatever its threads left behind) for the life of the process, so
// unmapping its code before exit would only invite a crash.
#pragma once

#include <string>

#include "player_api.h"

struct PluginLibrary {
    std::string path; // absolute when it could be resolved: the path the plug-in is told
    void* handle = nullptr;
    PlayerPluginMainProc entry = nullptr;
};

// Opens path with RTLD_NOW | RTLD_LOCAL and looks up the entry point.
// false with the whole error line (without the program name) in error:
// "cannot load plug-in PATH: <dlerror>" or "PATH has no entry point ...".
[[nodiscard]] bool openPluginLibrary(const std::string& path, PluginLibrary& library,
                                     std::string& error);
