// Steps 8, 9 and 11: the month grid. Five weeks from the Sunday on or before
// the 1st (a month that needs a sixth week loses its last days, as designed),
// each cell with its day strip, today's colours, and as many of the day's
// shows as fit; a cell with more shows than room gets "back" and "more"
// arrows whose rectangles the mouse handlers test.
#include "model/dates.h"
#include "view/draw_steps.h"
#include "view/ticket_icons.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLinePitch = 15; // one show line in a cell
constexpr int kArrowSpace = 8; // taken from the text column by the arrows

struct Day {
    int day, month, year;
    int key() const { return (year * 12 + month) * 32 + day; }
};

int dateKey(const SHOWENTRY* e) {
    return (e->year * 12 + e->month) * 32 + e->day;
}

void drawLines(Frame& f) {
    CalVis& v = f.view;
    const ViewLayout& g = f.layout;
    const int cellsTop = v.calTop + v.barSize;
    f.outline(makeRect(cellsTop, v.calLeft, v.calBottom, v.calRight), f.colors.grid);
    // Between the columns' 3-pixel gaps, one pixel clear on either side.
    for (int c = 1; c < 7; ++c) {
        int x = v.calLeft + c * g.cellWidth - 1;
        f.fill(makeRect(cellsTop, x, v.calBottom, x + 1), f.colors.grid);
    }
    for (int r = 1; r < 5; ++r) {
        int y = cellsTop + r * g.cellHeight;
        f.fill(makeRect(y, v.calLeft, y + 1, v.calRight), f.colors.grid);
    }
}

void drawArrow(Frame& f, const Rect& r, bool up, bool active) {
    const int h = f.height();
    const double cx = (r.left + r.right) / 2.0;
    const double tip = up ? r.top : r.bottom, base = up ? r.bottom : r.top;
    CanvasPoint points[3] = {{cx, double(h - tip)},
                             {double(r.left), double(h - base)},
                             {double(r.right), double(h - base)}};
    f.canvas->fillPolygon(points, 3, active ? palette::link : palette::outOfMonth);
}

// Step 9 for one cell: `first` is the first visible entry on the cell's day
// (or later); returns the first entry after the day.
SHOWENTRY* drawCellShows(Frame& f, int cell, const Day& day, SHOWENTRY* first) {
    CalVis& v = f.view;
    const Rect& r = v.cellRect[cell];
    int count = 0;
    SHOWENTRY* after = first;
    while (after && dateKey(after) == day.key()) {
        ++count;
        after = f.walk.next(after);
    }
    const int bodyTop = r.top + v.barSize;
    // Cells lower than a strip and a line have room for nothing (not for
    // a negative number of lines, which would put arrows on empty days).
    const int room = std::max(0, int(std::floor((f.layout.cellHeight - 15) / double(kLinePitch))));
    int columnRight = r.right;
    if (count > room) {
        v.cellHasBack[cell] = v.cellScroll[cell] > 0;
        v.cellHasMore[cell] = room < count - v.cellScroll[cell];
        v.cellBackRect[cell] = makeRect(bodyTop + 1, r.right - kArrowSpace, bodyTop + 9, r.right);
        v.cellMoreRect[cell] =
            makeRect(r.bottom - 10, r.right - kArrowSpace, r.bottom - 2, r.right);
        drawArrow(f, v.cellBackRect[cell], true, v.cellHasBack[cell]);
        drawArrow(f, v.cellMoreRect[cell], false, v.cellHasMore[cell]);
        columnRight -= kArrowSpace;
    } else {
        v.cellHasBack[cell] = v.cellHasMore[cell] = false;
        v.cellScroll[cell] = 0;
    }

    SHOWENTRY* e = first;
    for (int skip = v.cellScroll[cell]; e != after && skip > 0; --skip)
        e = f.walk.next(e);
    for (int line = 0; line < room && e != after; ++line, e = f.walk.next(e)) {
        const int top = bodyTop + line * kLinePitch;
        e->rect1 = makeRect(top, r.left, top + kLinePitch, columnRight);
        e->rect1Drawn = true;
        const int textRight = columnRight - (e->ticketsAvailable ? kSmallTicketSpace : 0);
        f.write(e->artist, makeRect(top, r.left, top + kLinePitch, textRight),
                {11, e->attending, e->attending ? palette::attending : palette::black, 11,
                 kJustifyCentre},
                e->highlighted);
        if (e->ticketsAvailable) drawSmallTicketIcon(f.canvas, f.port, textRight + 1, top + 2);
    }
    return after;
}

void drawCell(Frame& f, int cell, const Day& day) {
    CalVis& v = f.view;
    const Rect& r = v.cellRect[cell];
    const int row = cell / 7;
    const bool outside = (row == 0 && day.day > 7) || (row == 4 && day.day <= 7);
    const bool today =
        day.day == f.todayDay && day.month == f.todayMonth && day.year == f.todayYear;
    const Color strip = outside ? palette::outOfMonth : today ? f.colors.accent : f.colors.grid;
    f.fill(makeRect(r.top, r.left, r.top + v.barSize, r.right), strip);
    // The body stops short of the cell's last row, where the grid line runs.
    if (today)
        f.fill(makeRect(r.top + v.barSize, r.left, r.bottom - 1, r.right), palette::todayBody);
    std::string number = format("%d", day.day);
    f.write(number.c_str(), makeRect(r.top, r.left, r.top + v.barSize, r.right - 4),
            {11, false, palette::black, 11, kJustifyRight});
}

} // namespace

void drawGrid(Frame& f) {
    CalVis& v = f.view;
    drawLines(f);
    Day day{1, v.curVisMonth, v.curVisYear};
    for (int back = getDayOfTheWeek(1, v.curVisMonth, v.curVisYear); back > 0; --back)
        decrementDay(&day.day, &day.month, &day.year);

    SHOWENTRY* cursor = f.walk.first(f.list);
    for (int cell = 0; cell < CalVis::kCells; ++cell) {
        drawCell(f, cell, day);
        while (cursor && dateKey(cursor) < day.key())
            cursor = f.walk.next(cursor);
        cursor = drawCellShows(f, cell, day, cursor);
        incrementDay(&day.day, &day.month, &day.year);
    }
}

void drawGridFrame(Frame& f) {
    f.outline(f.view.gridArea, palette::frame);
}
