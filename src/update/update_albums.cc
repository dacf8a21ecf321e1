// The album release task: ten numbered pages of releases from the service,
// filed into a new generation of the album list. A page that cannot be
// fetched is skipped, and then the feed counts as failed: every release of
// the last good list stays. Stops are honoured between pages.
#include <mutex>
#include <string>

#include "model/kept_shows.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/release_page.h"
#include "net/service_config.h"
#include "update/site_regions.h"

namespace {

constexpr int kReleasePages = 10;

} // namespace

int CalGetData::UpdateAlbums() {
    ProtectedData& store = app->protectedData;
    store.setUpdatingAlbums(true);
    store.setUpdatingProgress(0);
    app->renderView();

    ShowListRef releases = app->albums.replace();
    ShowListRef previous = app->albums.previous();

    SiteQueryValues where = siteQueryValues(store);
    LibraryArtistIndex library(xmlArtists);
    ReleaseFiling filing{&xmlArtists, &library, releases.get(), previous.get(), serviceHost(),
                         where.city, where.state};

    int failedPages = 0;
    for (int page = 0; page < kReleasePages; ++page) {
        if (stopRequested()) return 1;
        store.incUpdatingProgress(100.0 / kReleasePages);
        app->renderView();

        std::lock_guard<std::mutex> internet(internetMutex);
        std::string url =
            serviceAddress(("/CDReleases/data/cdReleasesData_" + std::to_string(page) + ".html").c_str());
        if (fetchPage(url) != 0) {
            if (stopRequested()) return 1;
            ++failedPages;
            continue;
        }
        parseReleasePage(std::string_view(fetchBuffer.get(), fetchBuffer.size()), filing);
    }

    if (failedPages > 0) {
        (void)keepShows(releases.get(), previous.get(), [](const SHOWENTRY&) { return true; });
        noteFailedSources(1, "The album release list did not answer", "its releases");
    }
    store.setUpdatingAlbums(false);
    app->renderView();
    return 0;
}
