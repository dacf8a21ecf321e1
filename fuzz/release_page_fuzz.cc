// A page of the album release feed.
#include <string_view>

#include "fuzz_support.h"
#include "update/library_index.h"
#include "update/release_page.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    StagebeaconClass& app = fuzzApp();
    fillFuzzLibrary(app);
    static LibraryArtistIndex index(app.calGetData.xmlArtists);
    ShowListRef releases = makeShowList();
    ShowListRef previous = makeShowList();
    ReleaseFiling filing{&app.calGetData.xmlArtists, &index, releases.get(), previous.get(),
                         "127.0.0.1:8470", "Boston", "MA"};
    (void)parseReleasePage(std::string_view(reinterpret_cast<const char*>(data), size), filing);
    return 0;
}
