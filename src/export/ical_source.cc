// checkForInitialiCalFiles: up to 10.4 the calendar export writes
// a file into a calendar source folder of the calendar application, which
// only shows the folder when a description file ("Info.plist") lies beside
// it. This keeps the folder present exactly while the export is on.
#include <unistd.h>

#include <string>

#include "export/ical_source.h"
#include "library/file_io.h"
#include "library/startup_tables.h"
#include "model/protected_data.h"

namespace {

constexpr const char* kSourceDescription =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<dict>\n"
    "      <key>Key</key>\n"
    "      <string>Stagebeacon</string>\n"
    "      <key>Title</key>\n"
    "      <string>Stagebeacon</string>\n"
    "      <key>Type</key>\n"
    "      <string>com.apple.ical.sources.naivereadwrite</string>\n"
    "</dict>\n"
    "</plist>\n";

constexpr const char* kDescriptionName = "Info.plist";
constexpr const char* kIndexName = "Index";

void removeIfReadable(const std::string& path) {
    if (canOpenForReading(path.c_str())) unlink(path.c_str());
}

} // namespace

int checkForInitialiCalFiles(ProtectedData& store) {
    char location[ProtectedData::iCalLocSize];
    store.getiCalLoc(location);
    std::string exportFile(location);
    size_t slash = exportFile.rfind('/');
    if (slash == std::string::npos) return -1;
    std::string folder = exportFile.substr(0, slash + 1);

    if (store.getExportTo_iCal()) {
        if (!canOpenForReading(location)) makeFolders(folder);
        if (store.getOSXVersion() != kSystem10_3) {
            std::string description = folder + kDescriptionName;
            if (!canOpenForReading(description.c_str()) &&
                !replaceFile(description.c_str(), kSourceDescription, kSettingsFileMode))
                return -1;
        }
        return 0;
    }

    if (!canOpenForReading(location)) return 0;
    unlink(location);
    removeIfReadable(folder + kIndexName);
    removeIfReadable(folder + kDescriptionName);
    rmdir(folder.c_str());
    return 0;
}
