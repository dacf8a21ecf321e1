// The preference file and the two band lists, read the way start-up and the
// preferences window read them.
#include "fuzz_support.h"
#include "prefs/preferences_window_internal.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static MemoryFile file;
    static MemoryFile library;
    static bool libraryWritten = false;
    if (!libraryWritten) {
        library.write("<key>Major Version</key><integer>1</integer>\n<dict>\n"
                      "<key>Track ID</key><integer>1</integer>\n"
                      "<key>Artist</key><string>Radiohead</string>\n</dict>\n");
        libraryWritten = true;
    }
    StagebeaconClass& app = fuzzApp();
    ProtectedData& store = app.protectedData;
    file.write(data, size);

    store.setStagebeaconPref(file.name());
    (void)app.calGetData.loadPrefs();

    (void)readBandList(file.name());
    store.setiTunes_xml_path(library.name());
    store.setStagebeaconIncludeBandsList(file.name());
    store.setStagebeaconExcludeBandsList(file.name());
    (void)app.calGetData.parseXML();

    resetFuzzApp();
    return 0;
}
