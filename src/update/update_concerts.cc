// The concert task: commit the location typed on screen, find its
// coordinates, start a new generation of the concert list and fill it from
// every site.
#include <cstdio>

#include "library/pref_format.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/concert_search.h"
#include "update/location.h"

int CalGetData::UpdateConcerts() {
    ProtectedData& store = app->protectedData;
    store.setUpdatingConcerts(true);
    store.setUpdatingProgress(0);
    app->renderView();

    if (locateByIP) {
        // Only ever tried once: a start without any saved location.
        locateByIP = false;
        if (ipLoc(app) != 0) return 1;
    } else {
        char text[256];
        store.getCurCityDisplay(text);
        store.setCurCity(text);
        store.getCurStateDisplay(text);
        store.setCurState(text);
        store.getCurSearchRadiusDisplay(text);
        int radius = 0;
        if (sscanf(text, "%d", &radius) == 1) store.setCurSearchRadius(radius);
    }
    if (stopRequested()) return 1;

    // The sites do their own distance filtering; the coordinates are for the
    // view and the service, and a failure here does not stop the search.
    (void)latLongLoc(app);
    if (stopRequested()) return 1;

    app->concerts.replace();
    artistInfo.clear();
    if (stopRequested()) return 1;
    artistInfo.clear();

    (void)genericParser(app);
    if (stopRequested()) return 1;

    // The export the search ends with (calendar-source files, then the
    // shows when the export is on), the export's own business.
    if (hooks.exportConcerts) hooks.exportConcerts();

    store.setUpdatingConcerts(false);
    app->renderView();
    return 0;
}
