// The file dialogs: open, to let the user point at a file the plug-in could
// not find, and save, to let the user choose where a file is written. GTK
// back end: a file chooser; headless: answered from the player's script (a
// scripted path, or cancel when the script has none).
//
// Threads: chooseFileToOpen and chooseFileToSave on the main thread only;
// they block until the user answers. The setters at start, before any
// dialog.
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

struct FileSaveRequest {
    std::string title;
    std::string message;
    std::string suggestedName; // the file name the dialog proposes
};

// True with the chosen path (which need not exist yet) in `chosen`; false
// when cancelled (`chosen` is then left alone).
[[nodiscard]] bool chooseFileToSave(const FileSaveRequest& request, std::string* chosen);

using FileSaveDialogBackend = bool (*)(const FileSaveRequest& request, std::string* chosen);
// Chooses the back end; null goes back to the headless one (the default).
void setFileSaveDialogBackend(FileSaveDialogBackend backend);

bool chooseFileToSaveHeadless(const FileSaveRequest& request, std::string* chosen);
