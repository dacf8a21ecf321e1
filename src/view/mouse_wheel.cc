// handleMouseWheelMoved: the wheel scrolls the list over the list, scrolls a
// crowded day over its cell, and otherwise over the grid turns the month.
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/mouse_handlers.h"

namespace {

// Over the grid: a day that offers the turn's direction scrolls; over a day
// with arrows that do not offer it nothing happens; anywhere else in the grid
// (a day without arrows, the weekday strip) the month changes.
void wheelOverGrid(CalVis& view, int x, int y, int delta) {
    bool overScrollableCell = false;
    for (int cell = 0; cell < CalVis::kCells; ++cell) {
        if (!strictlyInside(view.cellRect[cell], x, y)) continue;
        if (view.cellHasMore[cell] && delta < 0) {
            ++view.cellScroll[cell];
            return;
        }
        if (view.cellHasMore[cell] || view.cellHasBack[cell]) overScrollableCell = true;
        if (view.cellHasBack[cell] && delta > 0) {
            --view.cellScroll[cell];
            return;
        }
    }
    if (overScrollableCell) return;
    if (delta <= 0)
        view.incrementCurVisMonth();
    else
        view.decrementCurVisMonth();
}

} // namespace

void handleMouseWheelMoved(int delta) {
    if (!Stagebeacon) return;
    CalVis& view = Stagebeacon->calVis;
    const int x = view.mouseX, y = view.mouseY;
    if (strictlyInside(view.listArea, x, y)) {
        if (delta <= 0)
            view.scrollDown();
        else
            view.scrollUp();
    } else if (strictlyInside(view.gridArea, x, y)) {
        wheelOverGrid(view, x, y, delta);
    } else {
        return;
    }
    (void)view.Render();
    handleMouseMoveEvents();
}
