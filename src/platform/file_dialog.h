// The file-open dialog, used to let the user point at a file the plug-in
// could not find. GTK back end: a file chooser; headless: answered from the
// player's script (a scripted path, or cancel when the script has none).
//
// Threads: chooseFileToOpen on the main thread only; blocks until the user
// answers. setFileDialogBackend at start, before any dialog.
#pragma once

#include <string>

struct FileOpenRequest {
    std::string title;
    std::string message;
};

// True with the chosen file's full path in `chosen`; false when cancelled
// (`chosen` is then left alone).
[[nodiscard]] bool chooseFileToOpen(const FileOpenRequest& request, std::string* chosen);

using FileDialogBackend = bool (*)(const FileOpenRequest& request, std::string* chosen);
// Chooses the back end; null goes back to the headless one (the default).
void setFileDialogBackend(FileDialogBackend backend);

bool chooseFileToOpenHeadless(const FileOpenRequest& request, std::string* chosen);
