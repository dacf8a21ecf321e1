#include "export/export_route.h"

#include <cmath>

#include "export/calendar_store.h"
#include "export/ical_export.h"
#include "export/ical_source.h"
#include "library/pref_format.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

void exportAfterConcertSearch(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    const bool fileRoute = app->calGetData.OSVersion < kCalendarStoreVersion;
    if (fileRoute && checkForInitialiCalFiles(store) != 0) return;
    if (!store.getExportTo_iCal()) return;
    if (fileRoute)
        (void)performExportTo_iCal(app);
    else
        (void)performExportTo_iCalCalendarStore(app);
}

void exportMarkedShows(StagebeaconClass& app) {
    const float version = app.protectedData.getOSXVersion();
    if (version >= kCalendarStoreVersion || std::isnan(version))
        (void)performExportTo_iCalCalendarStore(&app);
    else if (checkForInitialiCalFiles(app.protectedData) == 0)
        (void)performExportTo_iCal(&app);
}
