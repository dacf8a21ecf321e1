// Saving the support folder's settings files, and tidying after a crash.
//
// A save that fails (a read-only folder, a full or failing disk) is said
// once, in plain words ("Stagebeacon cannot save its settings in FOLDER:
// REASON"), as an alert on the main thread and a line on stderr; the plug-in
// goes on working from memory and every later save tries again. After a save
// that works, the next failure is said again.
//
// Threads: any thread (the update thread saves the preference file, the
// main thread the band lists and the identifier).
#pragma once

#include <string>
#include <sys/types.h>

// replaceFile (file_io.h) with the failure said as above: true when saved.
bool saveSettingsFile(const char* path, const std::string& text, mode_t mode);
bool saveSettingsFile(const char* path, const void* data, size_t size, mode_t mode);

// The text said for a save into `folder` that failed with `errnoValue`.
std::string cannotSaveText(const std::string& folder, int errnoValue);

// Removes from `folder` the temporary files our saves make (one of the
// support files' names, ".", six letters or digits) that a crash during a
// save left behind. Returns how many it removed. Start-up, before any save.
int removeStaleTemporaryFiles(const std::string& folder);
