// handleMouseMoveEvents: the thumb drag, and otherwise the hover flags and
// the list's highlights, which the release then acts on.
#include "model/show_list.h"
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/mouse_handlers.h"
#include "view/mouse_hit.h"
#include "view/tab_lists.h"

namespace {

// When a region takes part in hovering: the banner only while a newer version
// is announced, the retry line only while the connection is known bad. A
// region whose condition is false keeps its flag as it was.
enum class HoverWhen { always, versionUpdate, noConnection };

struct HoverEntry {
    HoverRegion CalVis::*region;
    HoverWhen when;
};

// In the order they are brought up to date.
constexpr HoverEntry kHoverRegions[] = {
    {&CalVis::nextMonthButton, HoverWhen::always},
    {&CalVis::prevMonthButton, HoverWhen::always},
    {&CalVis::cityField, HoverWhen::always},
    {&CalVis::stateField, HoverWhen::always},
    {&CalVis::radiusField, HoverWhen::always},
    {&CalVis::versionUpdateBanner, HoverWhen::versionUpdate},
    {&CalVis::retryLine, HoverWhen::noConnection},
    {&CalVis::versionText, HoverWhen::always},
    {&CalVis::preferencesLink, HoverWhen::always},
    {&CalVis::iPhoneLink, HoverWhen::always},
    {&CalVis::androidLink, HoverWhen::always},
    {&CalVis::myShowsTab, HoverWhen::always},
    {&CalVis::friendShowsTab, HoverWhen::always},
    {&CalVis::cdReleasesTab, HoverWhen::always},
    {&CalVis::promoLine, HoverWhen::always},
};

bool applies(HoverWhen when, ProtectedData& store) {
    switch (when) {
    case HoverWhen::versionUpdate:
        return store.getStagebeacon_version_update();
    case HoverWhen::noConnection:
        return !store.getValid_internet_connection();
    case HoverWhen::always:
        break;
    }
    return true;
}

void updateHoverFlags(StagebeaconClass& app, int x, int y) {
    for (const HoverEntry& h : kHoverRegions) {
        if (!applies(h.when, app.protectedData)) continue;
        HoverRegion& region = app.calVis.*h.region;
        region.hovered = strictlyInside(region.rect, x, y);
    }
}

void updateHighlights(StagebeaconClass& app, int x, int y) {
    ShowListRef list = listForTab(app, currentCalTab(app.protectedData));
    list->lock();
    for (SHOWENTRY* e = list->head; e; e = e->next) {
        if (hitsEntry(e, x, y))
            e->highlighted = true;
        else if (missesEntry(e, x, y))
            e->highlighted = false;
    }
    list->unlock();
}

} // namespace

void handleMouseMoveEvents() {
    if (!Stagebeacon) return;
    StagebeaconClass& app = *Stagebeacon;
    CalVis& view = app.calVis;
    if (view.draggingThumb) {
        // Zero before the first frame has laid the list out.
        const int track = view.calBottom - view.calTop - 2 * view.barSize;
        if (track > 0)
            view.setCurVisShowListOffset((view.dragStartY - view.mouseY) * view.listContentHeight /
                                             track +
                                         view.dragStartOffset);
        (void)view.Render();
        return;
    }
    updateHoverFlags(app, view.mouseX, view.mouseY);
    updateHighlights(app, view.mouseX, view.mouseY);
    (void)view.Render();
}
