#include "library/settings_save.h"

#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <unistd.h>

#include "library/file_io.h"
#include "library/support_names.h"
#include "platform/alert.h"
#include "platform/main_thread.h"

namespace {

// Set once a failure was said; cleared by the next save that works.
std::atomic<bool> failureSaid{false};

std::string folderOf(const char* path) {
    const char* slash = strrchr(path, '/');
    return slash ? std::string(path, static_cast<size_t>(slash - path) + 1) : std::string("./");
}

// mkostemp's six characters.
bool temporarySuffix(const char* text) {
    for (int i = 0; i < 6; ++i) {
        if (!isalnum(static_cast<unsigned char>(text[i]))) return false;
    }
    return text[6] == '\0';
}

} // namespace

std::string cannotSaveText(const std::string& folder, int errnoValue) {
    return "Stagebeacon cannot save its settings in " + folder + ": " + strerror(errnoValue);
}

bool saveSettingsFile(const char* path, const void* data, size_t size, mode_t mode) {
    if (!path || !*path) return false; // no file was ever named: nothing to say
    if (replaceFile(path, data, size, mode)) {
        failureSaid = false;
        return true;
    }
    int reason = errno != 0 ? errno : EIO;
    if (failureSaid.exchange(true)) return false;
    std::string text = cannotSaveText(folderOf(path ? path : ""), reason);
    fprintf(stderr, "%s\n", text.c_str());
    postAlert(AlertRequest{"Settings not saved.",
                           text + "\nYour changes are kept until Stagebeacon quits; it tries "
                                  "again at every save.",
                           "OK", ""});
    return false;
}

bool saveSettingsFile(const char* path, const std::string& text, mode_t mode) {
    return saveSettingsFile(path, text.data(), text.size(), mode);
}

int removeStaleTemporaryFiles(const std::string& folder) {
    DIR* dir = opendir(folder.c_str());
    if (!dir) return 0;
    int removed = 0;
    const char* const ours[] = {kPrefFileName, kIncludeBandsFileName, kExcludeBandsFileName,
                                kIdentifierFileName, kPasswordFileName};
    while (const dirent* entry = readdir(dir)) {
        for (const char* name : ours) {
            size_t length = strlen(name);
            if (strncmp(entry->d_name, name, length) != 0 || entry->d_name[length] != '.' ||
                !temporarySuffix(entry->d_name + length + 1))
                continue;
            std::string path = folder + (folder.back() == '/' ? "" : "/") + entry->d_name;
            if (unlink(path.c_str()) == 0) ++removed;
            break;
        }
    }
    closedir(dir);
    return removed;
}
