// File dialogs without a display: answered from the script, logged.
#include "platform/file_dialog.h"

#include <atomic>

#include "platform/headless.h"

namespace {
std::atomic<FileDialogBackend> chosenBackend{nullptr};
} // namespace

void setFileDialogBackend(FileDialogBackend backend) { chosenBackend.store(backend); }

bool chooseFileToOpen(const FileOpenRequest& request, std::string* chosen) {
    FileDialogBackend backend = chosenBackend.load();
    return backend ? backend(request, chosen) : chooseFileToOpenHeadless(request, chosen);
}

bool chooseFileToOpenHeadless(const FileOpenRequest& request, std::string* chosen) {
    std::string path;
    bool answered = takeScriptedFileChoice(&path) && !path.empty();
    headlessLog("open file: " + request.title + " | " + (answered ? path : "(cancel)"));
    if (answered) *chosen = path;
    return answered;
}
