// handleLeftMouseClicks: the actions that cannot wait for the release. The
// location fields open and close here (closing one asks for a search unless
// the press moved on to the next field), the scroll buttons and the thumb,
// the month buttons and the per-day arrows act at once.
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/mouse_handlers.h"
#include "view/mouse_hit.h"

namespace {

bool in(const HoverRegion& region, int x, int y) {
    return strictlyInside(region.rect, x, y);
}

// The three location fields, in the order city, state, radius. A press in an
// open city field closes it without a search; an open state field stays
// open; a press outside any open field closes it and searches, unless it
// lands in the field that follows.
void locationFields(StagebeaconClass& app, int x, int y) {
    ProtectedData& store = app.protectedData;
    CalVis& view = app.calVis;
    const bool inCity = in(view.cityField, x, y);
    const bool inState = in(view.stateField, x, y);
    const bool inRadius = in(view.radiusField, x, y);

    if (!store.getUpdatingCity() && inCity) {
        store.setUpdatingCity(true);
    } else if (store.getUpdatingCity()) {
        store.setUpdatingCity(false);
        if (!inState && !inCity) askForSearch(app);
    }

    if (!store.getUpdatingState() && inState) {
        store.setUpdatingState(true);
    } else if (store.getUpdatingState() && !inState) {
        store.setUpdatingState(false);
        if (!inRadius) askForSearch(app);
    }

    if (!store.getUpdatingSearchRadius() && inRadius) store.setUpdatingSearchRadius(true);
    if (store.getUpdatingSearchRadius() && !inRadius) {
        store.setUpdatingSearchRadius(false);
        askForSearch(app);
    }
}

void scrollControls(CalVis& view, int x, int y) {
    if (strictlyInside(view.scrollUpButton, x, y)) view.scrollUp();
    if (strictlyInside(view.scrollDownButton, x, y)) view.scrollDown();
    if (strictlyInside(view.scrollThumb, x, y)) {
        view.draggingThumb = true;
        view.dragStartY = view.mouseY;
        view.dragStartOffset = view.curVisShowListOffset;
    }
}

// The first day whose arrow holds the point scrolls; one per press.
void dayArrows(CalVis& view, int x, int y) {
    for (int cell = 0; cell < CalVis::kCells; ++cell) {
        if (view.cellHasMore[cell] && strictlyInside(view.cellMoreRect[cell], x, y)) {
            ++view.cellScroll[cell];
            return;
        }
        if (view.cellHasBack[cell] && strictlyInside(view.cellBackRect[cell], x, y)) {
            --view.cellScroll[cell];
            return;
        }
    }
}

} // namespace

void handleLeftMouseClicks() {
    if (!Stagebeacon) return;
    StagebeaconClass& app = *Stagebeacon;
    CalVis& view = app.calVis;
    const int x = view.mouseX, y = view.mouseY;

    locationFields(app, x, y);
    scrollControls(view, x, y);
    if (in(view.nextMonthButton, x, y)) view.incrementCurVisMonth();
    if (in(view.prevMonthButton, x, y)) view.decrementCurVisMonth();
    dayArrows(view, x, y);
    (void)view.Render();
}
