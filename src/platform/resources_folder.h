// The plug-in's resources folder (its "bundle"): images, interface files and
// the calendar helper module. $STAGEBEACON_RESOURCES when set, else the
// folder "resources" beside the library this code was linked into (the
// plug-in library, or a test program).
//
// Threads: any thread (reads the environment and the loaded library).
#pragma once

#include <string>

std::string resourcesFolder();

// resourcesFolder() + "/" + name.
std::string resourcePath(const char* name);
