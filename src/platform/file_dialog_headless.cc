// File dialogs without a display: answered from the script, logged.
#include "platform/file_dialog.h"

#include <atomic>

#include "platform/headless.h"

namespace {
std::atomic<FileDialogBackend> chosenBackend{nullptr};
std::atomic<FileSaveDialogBackend> chosenSaveBackend{nullptr};

// The next scripted path; false for a cancel or when none is queued.
bool scriptedPath(std::string* path) { return takeScriptedFileChoice(path) && !path->empty(); }
} // namespace

void setFileDialogBackend(FileDialogBackend backend) { chosenBackend.store(backend); }

bool chooseFileToOpen(const FileOpenRequest& request, std::string* chosen) {
    FileDialogBackend backend = chosenBackend.load();
    return backend ? backend(request, chosen) : chooseFileToOpenHeadless(request, chosen);
}

bool chooseFileToOpenHeadless(const FileOpenRequest& request, std::string* chosen) {
    std::string path;
    bool answered = scriptedPath(&path);
    headlessLog("open file: " + request.title + " | " + (answered ? path : "(cancel)"));
    if (answered) *chosen = path;
    return answered;
}

void setFileSaveDialogBackend(FileSaveDialogBackend backend) { chosenSaveBackend.store(backend); }

bool chooseFileToSave(const FileSaveRequest& request, std::string* chosen) {
    FileSaveDialogBackend backend = chosenSaveBackend.load();
    return backend ? backend(request, chosen) : chooseFileToSaveHeadless(request, chosen);
}

bool chooseFileToSaveHeadless(const FileSaveRequest& request, std::string* chosen) {
    std::string path;
    bool answered = scriptedPath(&path);
    headlessLog("save file: " + request.title + " | " + (answered ? path : "(cancel)"));
    if (answered) *chosen = path;
    return answered;
}
