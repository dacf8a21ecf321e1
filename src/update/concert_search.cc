#include "update/concert_search.h"

#include <mutex>
#include <string>

#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/event_page.h"
#include "net/service_config.h"
#include "update/site_regions.h"

int genericParser(StagebeaconClass* app) {
    CalGetData& engine = app->calGetData;
    if (engine.stopRequested()) return -1;
    if (parseURL_generic(app) != 0 || engine.stopRequested()) return -1;
    app->renderView();
    return 0;
}

int parseURL_generic(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    CalGetData& engine = app->calGetData;
    store.setUpdatingProgress(0);
    app->renderView();

    SiteQueryValues where = siteQueryValues(store);
    std::string templatesUrl =
        serviceAddress("/datasources/datasources.php?TODO=GETSITES") + "&CITY=" + where.city +
        "&STATE=" + where.state + "&RADIUS=" + where.radius + "&VERSION=" +
        std::to_string(kReleaseMajor) + "." + std::to_string(kReleaseMinor);

    std::string reply;
    {
        std::lock_guard<std::mutex> internet(engine.internetMutex);
        if (engine.fetchPage(templatesUrl) != 0 || engine.stopRequested()) return -1;
        reply.assign(engine.fetchBuffer.get());
    }

    int siteCount = countSiteTemplates(reply);
    std::vector<SiteTemplate> sites = splitSiteTemplates(reply);
    ShowListRef shows = app->concerts.current();
    ShowListRef previous = app->concerts.previous();
    LibraryArtistIndex library(engine.xmlArtists);

    for (const SiteTemplate& site : sites) {
        store.incUpdatingProgress(100.0 / siteCount);
        app->renderView();
        std::string siteUrl = site.address + "&city=" + where.city + "&state=" + where.state +
                              "&radius=" + where.radius;

        std::lock_guard<std::mutex> internet(engine.internetMutex);
        // A failed site ends the search (deliberately: the others are not
        // visited and progress stays short of 100).
        if (engine.fetchPage(siteUrl) != 0 || engine.stopRequested()) return -1;
        std::string page(engine.fetchBuffer.get(), engine.fetchBuffer.size());
        EventFiling filing{&engine.xmlArtists, &library, shows.get(), previous.get(),
                           site.ticketsAvailable, [&engine] { return engine.stopRequested(); }};
        if (parseEventPage(page, filing) != 0) return -1;
    }

    store.setUpdatingProgress(100.0);
    app->renderView();
    return 0;
}
