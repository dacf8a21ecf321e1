// A concert site's event page, and the service's reply naming the sites.
#include <string_view>

#include "fuzz_support.h"
#include "update/event_page.h"
#include "update/library_index.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    StagebeaconClass& app = fuzzApp();
    fillFuzzLibrary(app);
    static LibraryArtistIndex index(app.calGetData.xmlArtists);
    std::string_view page(reinterpret_cast<const char*>(data), size);

    (void)countSiteTemplates(page);
    (void)splitSiteTemplates(page);

    ShowListRef shows = makeShowList();
    ShowListRef previous = makeShowList();
    EventFiling filing{&app.calGetData.xmlArtists, &index, shows.get(), previous.get(), true,
                       [] { return false; }, "site"};
    (void)parseEventPage(page, filing);
    return 0;
}
