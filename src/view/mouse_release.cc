// handleMouseUp and handleRightMouseClicks: what the release does. A release
// over a show opens its page through the service's click-through; otherwise
// every hovered link or tab acts, in the order of the table below.
#include <string>

#include "model/show_list.h"
#include "model/stagebeacon_class.h"
#include "net/service_config.h"
#include "platform/page_opener.h"
#include "update/cal_get_data.h"
#include "view/cal_vis.h"
#include "view/mouse_handlers.h"
#include "view/mouse_hit.h"
#include "view/tab_lists.h"

namespace {

void openServicePage(const char* path) {
    openPage(serviceAddress(path).c_str());
}

void retrySearch(StagebeaconClass& app) {
    app.protectedData.setValid_internet_connection(true);
    app.calVis.retryLine.hovered = false;
    (void)app.calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
    (void)app.calVis.Render();
}

void openPreferences(StagebeaconClass& app) {
    if (app.calVis.hooks.openPreferences) app.calVis.hooks.openPreferences();
}

// A hovered region's action on release. Links that open a browser page clear
// their flag first: once the browser is in front, the pointer leaving the
// region is never seen. The tabs (and the preferences link) keep it, so a
// second release without a move acts again.
struct ReleaseAction {
    HoverRegion CalVis::*region;
    const char* page;                      // opened when set, after clearing the flag
    int tab;                               // chosen when >= 0; the flag stays
    void (*action)(StagebeaconClass& app); // anything else
};

constexpr ReleaseAction kReleaseActions[] = {
    {&CalVis::versionUpdateBanner, "/download/download_mac_redirect.php", -1, nullptr},
    {&CalVis::retryLine, nullptr, -1, retrySearch},
    {&CalVis::versionText, "/", -1, nullptr},
    // Its flag stays set like a tab's.
    {&CalVis::preferencesLink, nullptr, -1, openPreferences},
    {&CalVis::iPhoneLink, "/iphone.php", -1, nullptr},
    {&CalVis::androidLink, "/android.php", -1, nullptr},
    {&CalVis::myShowsTab, nullptr, kMyShowsTab, nullptr},
    {&CalVis::friendShowsTab, nullptr, kFriendShowsTab, nullptr},
    {&CalVis::cdReleasesTab, nullptr, kCdReleasesTab, nullptr},
    {&CalVis::promoLine, "/donations.php", -1, nullptr},
};

// True when the release was over a show (handled, nothing to render).
bool releaseOverShow(StagebeaconClass& app, int x, int y) {
    ShowListRef list = listForTab(app, currentCalTab(app.protectedData));
    list->lock();
    SHOWENTRY* hit = hitEntry(list.get(), x, y);
    if (hit) {
        hit->highlighted = false;
        // The show's address goes in as it stands: its "&"s belong to it.
        if (hit->url[0])
            openPage(serviceAddress((std::string("/clickthrough.php?target=") + hit->url).c_str())
                         .c_str());
    }
    list->unlock();
    return hit != nullptr;
}

} // namespace

void handleMouseUp() {
    if (!Stagebeacon) return;
    StagebeaconClass& app = *Stagebeacon;
    CalVis& view = app.calVis;
    if (view.draggingThumb) {
        view.draggingThumb = false;
        (void)view.Render();
        return;
    }
    if (releaseOverShow(app, view.mouseX, view.mouseY)) return;
    for (const ReleaseAction& a : kReleaseActions) {
        HoverRegion& region = view.*a.region;
        if (!region.hovered) continue;
        if (a.page) {
            region.hovered = false;
            openServicePage(a.page);
        }
        if (a.tab >= 0) app.protectedData.setCurCalTab(a.tab);
        if (a.action) a.action(app);
    }
    (void)view.Render();
}

void handleRightMouseClicks() {
    if (!Stagebeacon) return;
    StagebeaconClass& app = *Stagebeacon;
    ProtectedData& store = app.protectedData;
    if (currentCalTab(store) != kMyShowsTab) return;
    // Walked without the lock: the sharing, settings and export calls below
    // take their own locks.
    ShowListRef list = app.concerts.current();
    SHOWENTRY* hit = hitEntry(list.get(), app.calVis.mouseX, app.calVis.mouseY);
    if (!hit) {
        (void)app.calVis.Render();
        return;
    }
    hit->attending = !hit->attending;
    (void)app.calVis.Render();
    if (store.getSharing() && !store.getShareAllShows()) {
        // A failed request is not reported; the next update shares again.
        if (app.calVis.hooks.shareMark) app.calVis.hooks.shareMark(hit);
    }
    app.calGetData.genPref();
    // Only an export of the marked shows changes with a mark.
    if (store.getExportTo_iCal() && !store.getExportAllShows() && app.calVis.hooks.exportMarkedShows)
        app.calVis.hooks.exportMarkedShows();
    (void)app.calVis.Render();
}
