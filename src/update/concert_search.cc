#include "update/concert_search.h"

#include <mutex>
#include <string>
#include <unordered_set>

#include "model/kept_shows.h"
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

    ShowListRef shows = app->concerts.current();
    ShowListRef previous = app->concerts.previous();
    std::string reply;
    {
        std::lock_guard<std::mutex> internet(engine.internetMutex);
        int fetched = engine.fetchPage(templatesUrl);
        if (engine.stopRequested()) return -1;
        if (fetched != 0) {
            // Without the site list nothing was searched: every show of the
            // last good list stays.
            (void)keepShows(shows.get(), previous.get(), [](const SHOWENTRY&) { return true; });
            engine.noteFailedSources(1, "The concert service did not answer", "the shows");
            return -1;
        }
        reply.assign(engine.fetchBuffer.get());
    }

    int siteCount = countSiteTemplates(reply);
    std::vector<SiteTemplate> sites = splitSiteTemplates(reply);
    LibraryArtistIndex library(engine.xmlArtists);
    std::unordered_set<std::string> failedSites;

    for (const SiteTemplate& site : sites) {
        store.incUpdatingProgress(100.0 / siteCount);
        app->renderView();
        std::string siteUrl = site.address + "&city=" + where.city + "&state=" + where.state +
                              "&radius=" + where.radius;

        std::lock_guard<std::mutex> internet(engine.internetMutex);
        // A site that fails (refused, silent, broken reply) is passed over:
        // its shows are kept from the last good list below.
        int fetched = engine.fetchPage(siteUrl);
        if (engine.stopRequested()) return -1;
        if (fetched != 0) {
            failedSites.insert(site.address);
            continue;
        }
        std::string page(engine.fetchBuffer.get(), engine.fetchBuffer.size());
        EventFiling filing{&engine.xmlArtists, &library,         shows.get(),
                           previous.get(),     site.ticketsAvailable,
                           [&engine] { return engine.stopRequested(); }, site.address.c_str()};
        if (parseEventPage(page, filing) != 0) return -1;
    }

    if (!failedSites.empty()) {
        // Shows of an unknown site (read back from the preference file) may
        // be a failed site's too: they stay until a search reaches every site.
        (void)keepShows(shows.get(), previous.get(), [&failedSites](const SHOWENTRY& show) {
            return show.source[0] == '\0' || failedSites.count(show.source) != 0;
        });
        engine.noteFailedSources(static_cast<int>(failedSites.size()),
                                 std::to_string(failedSites.size()) + " of " +
                                     std::to_string(sites.size()) +
                                     " concert sites did not answer",
                                 "their shows");
        store.setUpdatingProgress(100.0);
        app->renderView();
        return -1;
    }

    store.setUpdatingProgress(100.0);
    app->renderView();
    return 0;
}
