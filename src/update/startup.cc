// CalGetData::initialize: everything the plug-in settles once per load,
// before the first update thread exists. The order matters: the defaults
// come first so that the preference file can override them, the file paths
// before any file is read, the identifier and password before the
// preferences, the library after the preferences (which may name another
// library file), and the version check last, when the time saved with the
// preferences says it is due. The scan and the check are left to the update
// thread, so nothing the disk or the network does delays the first frame.
#include <ctime>
#include <string>

#include "library/file_io.h"
#include "library/settings_save.h"
#include "library/startup_tables.h"
#include "library/support_files.h"
#include "platform/file_dialog.h"
#include "platform/home_folder.h"
#include "platform/system_version.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

namespace {

// The settings start-up fixes before the preference file may change them.
// Plain functions rather than member pointers (see pref_format.h).
struct StartValue {
    void (*set)(ProtectedData& store, bool value);
    bool value;
};
#define SB_START(Name, value)                                                                      \
    StartValue { [](ProtectedData& store, bool v) { store.set##Name(v); }, value }
constexpr StartValue kStartValues[] = {
    SB_START(ExportTo_iCal, false),     SB_START(ExportTo_Outlook, false),
    SB_START(ExportTo_Google, false),    SB_START(ExportAllShows, true),
    SB_START(ShareAllShows, true),       SB_START(iPhoneSync, false),
    SB_START(NotifyConcerts, true),      SB_START(NotifyAlbums, true),
    SB_START(NotificationWindowStyle, false), SB_START(UpdatingConcerts, false),
    SB_START(UpdatingAlbums, false),     SB_START(UpdatingFriends, false),
    SB_START(UpdatingShared, false),     SB_START(UpdatingiPhone, false),
};
#undef SB_START

constexpr const char* kLibraryFolder = "/Music/iTunes/";
constexpr const char* kLibraryFileName = "iTunes Music Library.xml";
constexpr const char* kLocateTitle = "Locate 'iTunes Music Library.xml'";
constexpr const char* kLocateMessage =
    "Stagebeacon could not locate the file 'iTunes Music Library.xml', please locate it now.\n";
constexpr size_t kSupportFolderLimit = 1023;

// Asks the user for the library when it is not where the settings say.
void locateLibrary(ProtectedData& store) {
    char path[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(path);
    if (canOpenForReading(path)) return;
    // The dialog brings itself to the front; there is no host process to
    // raise separately on this platform.
    std::string chosen;
    if (chooseFileToOpen(FileOpenRequest{kLocateTitle, kLocateMessage}, &chosen))
        store.setiTunes_xml_path(chosen.c_str());
}

} // namespace

int CalGetData::initialize() {
    ProtectedData& store = app->protectedData;
    for (const StartValue& start : kStartValues) start.set(store, start.value);
    locateByIP = true;
    nextRefresh = 0;

    long systemValue = 0;
    bool known = querySystemVersion(&systemValue);
    OSVersion = systemVersionFromQuery(known, systemValue);
    store.setOSXVersion(OSVersion);

    std::string home = homeFolder();
    store.setiTunes_xml_path((home + kLibraryFolder + kLibraryFileName).c_str());

    std::string support = home + kSupportFolderSuffix;
    if (support.size() > kSupportFolderLimit) support.resize(kSupportFolderLimit);
    // Parents too: unlike the desktop this was made for, a Linux home has no
    // "Library" folder until the plug-in makes one.
    if (!canOpenForReading(support.c_str())) makeFolders(support);
    // What a crash in the middle of a save left behind.
    (void)removeStaleTemporaryFiles(support);

    store.setStagebeaconPref((support + kPrefFileName).c_str());
    store.setStagebeaconIncludeBandsList((support + kIncludeBandsFileName).c_str());
    store.setStagebeaconExcludeBandsList((support + kExcludeBandsFileName).c_str());
    store.setiCalLoc(exportLocationFor(OSVersion, home).c_str());

    store.setUUID(readOrCreateInstallationId(support).c_str());
    std::string password;
    if (readPasswordFile(support, &password)) store.setPassword(password.c_str());

    (void)loadPrefs();

    // Registration with the notifier. The desktop notification service needs
    // none, so the runner answers "not run"; the script goes through it all
    // the same, so that a runner which can register has the chance.
    if (store.getNotificationWindowStyle() && hooks.registerNotifier)
        hooks.registerNotifier(store.getNotifyConcerts(), store.getNotifyAlbums());

    locateLibrary(store);
    char libraryPath[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(libraryPath);
    // Scanned by the update thread before its first update: a large
    // library takes a second, and the first frame does not wait for it.
    if (canOpenForReading(libraryPath)) startupWork |= kStartupLibraryScan;

    if (nextRefresh == 0 || time(nullptr) > nextRefresh) startupWork |= kStartupVersionCheck;
    return 0;
}
