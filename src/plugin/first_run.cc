// The first-run marker: an empty file the installer leaves in the support
// folder. The first start deletes it and runs a full update at once.
#include <unistd.h>

#include <string>

#include "library/file_io.h"
#include "library/support_files.h"
#include "platform/home_folder.h"
#include "plugin/plugin_entry.h"

bool emptyFileExists(const char* path) { return canOpenForReading(path); }

bool consumeFirstRunMarker() {
    std::string marker = homeFolder() + kSupportFolderSuffix + "FirstRun";
    if (!emptyFileExists(marker.c_str())) return false;
    (void)unlink(marker.c_str());
    return true;
}
