#include "library/support_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

#include "library/file_io.h"
#include "library/settings_save.h"
#include "platform/uuid_text.h"

std::string readOrCreateInstallationId(const std::string& folder) {
    std::string path = folder + kIdentifierFileName;
    std::string bytes;
    if (readFilePrefix(path.c_str(), kIdentifierFileSize, &bytes)) {
        std::string id(bytes.c_str()); // the text up to the NUL
        if (!id.empty()) return id;
    } else if (errno != ENOENT) {
        // The file is there but cannot be read now (permissions, a failing
        // disk): it still holds the user's identity, so it is never
        // replaced. This run uses a new identifier from memory.
        int reason = errno;
        struct stat info {};
        if (lstat(path.c_str(), &info) == 0) {
            fprintf(stderr, "Stagebeacon cannot read its identifier %s: %s\n", path.c_str(),
                    strerror(reason));
            return newUuidText();
        }
    }
    std::string id = newUuidText();
    char record[kIdentifierFileSize] = {};
    memcpy(record, id.data(), id.size() < sizeof record - 1 ? id.size() : sizeof record - 1);
    (void)saveSettingsFile(path.c_str(), record, sizeof record, kSecretFileMode);
    return id;
}

bool readPasswordFile(const std::string& folder, std::string* password) {
    std::string bytes;
    if (!readFilePrefix((folder + kPasswordFileName).c_str(), kPasswordFileSize, &bytes))
        return false;
    std::string text(bytes.c_str());
    if (text.size() > kPasswordFileSize - 1) text.resize(kPasswordFileSize - 1);
    *password = text;
    return true;
}

std::string dialogPasswordPath(const std::string& home) {
    return home + "/Library/Application\\ Support/Stagebeacon/" + kPasswordFileName;
}
