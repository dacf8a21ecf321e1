// Steps 6 and 7: the three tabs above the list and the month header above
// the grid (title, the two month buttons and the weekday names).
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "model/dates.h"
#include "view/draw_steps.h"
#include "view/navigation.h"

namespace {

constexpr int kTabSlant = 6; // horizontal run of a tab's slanted sides

// The tab's outline through pixel centres: bottom left, top left, top
// right, bottom right.
void tabShape(const Frame& f, const Rect& r, CanvasPoint out[4]) {
    const int h = f.height();
    const double top = h - (r.top + 0.5), bottom = h - (r.bottom - 0.5);
    const double left = r.left + 0.5, right = r.right - 0.5;
    out[0] = {left, bottom};
    out[1] = {left + kTabSlant, top};
    out[2] = {right - kTabSlant, top};
    out[3] = {right, bottom};
}

std::string tabLabel(Frame& f, CalTab tab) {
    switch (tab) {
    case kFriendShowsTab:
        return format("Friend Shows (%d)", int(f.lists.friendsShows->count));
    case kCdReleasesTab:
        return format("CD Releases (%d)",
                      int(VisibleWalk(f.store, kCdReleasesTab).count(f.lists.albums.get())));
    case kMyShowsTab:
        break;
    }
    return format(f.store.getUpdatingConcerts() ? "My Shows... (%d)" : "My Shows (%d)",
                  int(f.lists.concerts->count));
}

void drawTab(Frame& f, CalTab tab) {
    const bool selected = tab == f.tab;
    const Rect& r = f.layout.tabs[tab];
    CanvasPoint shape[4];
    tabShape(f, r, shape);
    f.canvas->fillPolygon(shape, 4, selected ? palette::white : palette::inactiveTab);
    // The selected tab stays open towards the list it shows.
    f.canvas->strokePolyline(shape, 4, !selected, palette::black);
    std::string label = tabLabel(f, tab);
    f.write(label.c_str(), makeRect(r.top + 2, r.left, r.bottom, r.right),
            {10, selected, palette::black, 10, kJustifyCentre});
}

} // namespace

void drawTabs(Frame& f) {
    HoverRegion* regions[3] = {&f.view.myShowsTab, &f.view.friendShowsTab, &f.view.cdReleasesTab};
    for (int tab = 0; tab < 3; ++tab)
        regions[tab]->rect = f.layout.tabs[tab];
    for (CalTab tab : {kMyShowsTab, kCdReleasesTab, kFriendShowsTab})
        if (tab != f.tab) drawTab(f, tab);
    drawTab(f, f.tab);
}

namespace {

void drawMonthButton(Frame& f, HoverRegion& region, const Rect& r, const char* label,
                     bool possible) {
    f.write(label, r,
            {12, false, possible ? palette::black : palette::disabledArrow, 12, kJustifyCentre});
    region.rect = r;
    if (region.hovered) f.outline(r, palette::outline);
}

} // namespace

void drawMonthHeader(Frame& f) {
    CalVis& v = f.view;
    f.fill(f.layout.weekdayStrip, palette::outline);
    drawMonthButton(f, v.prevMonthButton, f.layout.prevMonth, "<<",
                    canShowPreviousMonth(f.list, f.walk, v.curVisYear, v.curVisMonth));
    drawMonthButton(f, v.nextMonthButton, f.layout.nextMonth, ">>",
                    canShowNextMonth(f.list, f.walk, v.curVisYear, v.curVisMonth));

    const char* month =
        v.curVisMonth >= 1 && v.curVisMonth <= 12 ? monthStrings[v.curVisMonth - 1] : "";
    std::string title = format("%s %d", month, v.curVisYear);
    f.write(title.c_str(), f.layout.monthTitle, {15, false, palette::black, 15, kJustifyCentre});

    static const char* const kDayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    for (int column = 0; column < 7; ++column) {
        int x = weekdayNameX(v, f.layout, column);
        f.write(kDayNames[column], makeRect(v.calTop, x - 1, v.calTop + v.barSize, x + 40),
                {11, false, palette::black, 11, kJustifyLeft});
    }
}
