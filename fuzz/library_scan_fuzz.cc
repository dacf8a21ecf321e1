// The music library export, as the start-up scan reads it.
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static MemoryFile library;
    StagebeaconClass& app = fuzzApp();
    library.write(data, size);
    app.protectedData.setiTunes_xml_path(library.name());
    app.protectedData.setStagebeaconIncludeBandsList("");
    app.protectedData.setStagebeaconExcludeBandsList("");
    (void)app.calGetData.parseXML();
    return 0;
}
