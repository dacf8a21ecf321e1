// Frame geometry: grid, list, scroll bar and the fixed rectangles.
#include "view/layout.h"

#include <algorithm>
#include <cstdint>

Rect makeRect(int top, int left, int bottom, int right) {
    auto clamp16 = [](int v) { return int16_t(std::clamp(v, INT16_MIN, INT16_MAX)); };
    Rect r;
    r.top = clamp16(top);
    r.left = clamp16(left);
    r.bottom = clamp16(bottom);
    r.right = clamp16(right);
    return r;
}

namespace {

// Cells, list offset and scroll bar: the part of the geometry the list and
// the mouse handlers depend on.
void layoutGridAndList(CalVis& v, ViewLayout& g, int entryCount) {
    g.cellWidth = (g.width - v.calLeft - v.outerMargin - 3) / 7;
    g.cellHeight = (g.height - v.calTop - v.barSize - v.outerMargin - 4) / 5;
    v.calRight = v.calLeft + 7 * g.cellWidth + 3;
    v.calBottom = v.calTop + 5 * g.cellHeight + v.barSize + 4;
    g.visibleHeight = v.calBottom - v.calTop;
    const int vis = g.visibleHeight;

    v.listContentHeight = entryCount * (v.showRowHeight - 1);
    if (v.listContentHeight == 0) v.listContentHeight = 1;
    v.scrollThumbLength = int(double(vis) / v.listContentHeight * (vis - 2 * v.barSize) + 1.0);

    if (v.curVisShowListOffset > 0) v.curVisShowListOffset = 0;
    if (v.curVisShowListOffset < vis - v.listContentHeight)
        v.curVisShowListOffset = vis - v.listContentHeight;
    v.listOverflows = vis < v.listContentHeight;
    if (!v.listOverflows) v.curVisShowListOffset = 0;
    v.scrollThumbOffset = (vis - 2 * v.barSize) * -v.curVisShowListOffset / v.listContentHeight;

    for (int row = 0; row < 5; ++row) {
        for (int col = 0; col < 7; ++col) {
            int top = v.calTop + v.barSize + row * g.cellHeight + 1;
            int left = v.calLeft + col * g.cellWidth + 1;
            v.cellRect[row * 7 + col] =
                makeRect(top, left, top + g.cellHeight, left + g.cellWidth - 2);
        }
    }

    v.gridArea = makeRect(v.calTop, v.calLeft, v.calBottom, v.calRight);
    v.listArea = makeRect(v.calTop, v.outerMargin, v.calBottom, v.calLeft - 4);
    const int barLeft = v.calLeft - 18, barRight = v.calLeft - 4;
    g.scrollBar = makeRect(v.calTop, barLeft, v.calBottom, barRight);
    if (v.listOverflows) {
        v.scrollUpButton = makeRect(v.calTop, barLeft, v.calTop + 14, barRight);
        v.scrollDownButton = makeRect(v.calBottom - 14, barLeft, v.calBottom, barRight);
        int thumbTop = v.calTop + v.barSize + v.scrollThumbOffset;
        v.scrollThumb = makeRect(thumbTop, barLeft, thumbTop + v.scrollThumbLength, barRight);
    } else {
        // Nothing drawn, nothing to hit.
        v.scrollUpButton = v.scrollDownButton = v.scrollThumb = Rect();
    }
}

void layoutHeader(const CalVis& v, ViewLayout& g) {
    const int L = v.outerMargin, top = v.calTop, right = v.calRight;
    const int middle = g.width / 2;
    g.statusText = makeRect(0, 0, 20, g.width);
    g.progressFrame = makeRect(20, middle - 100, 34, middle + 101);
    g.lastUpdated = makeRect(0, v.calLeft, top - 5, right - 200);
    g.restarting = makeRect(0, L, 16, L + 400);
    g.tabs[kMyShowsTab] = makeRect(top - 20, L + 15, top - 1, L + 110);
    g.tabs[kCdReleasesTab] = makeRect(top - 20, L + 120, top - 1, v.calLeft - 5);
    g.tabs[kFriendShowsTab] = makeRect(top - 20, L + 227, top - 1, v.calLeft + 105);
    g.prevMonth = makeRect(top - 30, right - 188, top - 10, right - 160);
    g.nextMonth = makeRect(top - 30, right - 28, top - 10, right);
    g.monthTitle = makeRect(top - 30, right - 156, top - 1, right - 31);
    g.weekdayStrip = makeRect(top, v.calLeft, top + v.barSize, right);
    g.detailPanel = makeRect(20, v.calLeft, top - 5, right - 200);
    for (int i = 0; i < 3; ++i) {
        int rowTop = L + 21 * i;
        g.fieldLabels[i] = makeRect(rowTop, L, rowTop + 20, L + 60);
        g.fieldValues[i] = makeRect(rowTop, L + 61, rowTop + 20, v.calLeft);
    }
    g.banner = makeRect(top - 55, v.calLeft + 125, top - 15, right - 325);
    g.preferences = makeRect(1, right - 100, 20, right - 20);
    g.iPhone = makeRect(1, right - 220, 20, right - 120);
    g.android = makeRect(1, right - 385, 20, right - 225);
}

void layoutFooter(const CalVis& v, ViewLayout& g, CalTab tab) {
    const int middle = (v.calLeft + v.calRight) / 2;
    g.retry = makeRect(v.calBottom + 1, middle - 140, g.height, middle + 140);
    // Centred between calLeft and calRight - 85, at most 480 (the releases
    // line) or 300 pixels wide.
    const int room = std::max(0, v.calRight - 85 - v.calLeft);
    const int width = std::min(tab == kCdReleasesTab ? 480 : 300, room);
    const int left = v.calLeft + (room - width) / 2;
    g.promo = makeRect(v.calBottom + 3, left, v.calBottom + 20, left + width);
    g.version = makeRect(v.calBottom + 1, v.calRight - 80, g.height - 1, v.calRight);
}

} // namespace

ViewLayout computeLayout(CalVis& view, const Rect& port, int entryCount, CalTab tab) {
    ViewLayout g;
    g.width = port.right - port.left;
    g.height = port.bottom - port.top;
    layoutGridAndList(view, g, entryCount);
    layoutHeader(view, g);
    layoutFooter(view, g, tab);
    return g;
}

int weekdayNameX(const CalVis& view, const ViewLayout& layout, int column) {
    return view.calLeft + column * layout.cellWidth + layout.cellWidth / 2 - 10;
}
