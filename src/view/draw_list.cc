// Steps 4 and 5: the scrolling show list beside the grid and its scroll bar.
//
// Entries are laid out from the list's top plus the (already clamped)
// offset, 54 pixels apart. Every entry reaching below the list's top records
// its box, cut at that top, as rect2, the rectangle the mouse handlers test;
// what is painted is cut there too. Boxes and texts are painted only well
// inside the port (top at least 3, bottom above port.bottom - 85 for boxes,
// texts between the port's top and port.bottom - 75), which leaves the
// bottom of the list empty on purpose.
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/draw_steps.h"
#include "view/ticket_icons.h"

namespace {

const char* const kNoFriendsHint =
    "You have not entered any of \nyour friends' calendar names.\nIf you want to see the shows "
    "\nthat your friends are interested \nin, click on the Edit \nPreferences link in the top "
    "\nright corner of this screen.\nThen select the sharing \ntab and add your friend's "
    "\ncalendars.";

constexpr int kTextInset = 3; // between a box's edges and its texts

bool textVisible(const Frame& f, const Rect& r) {
    return r.top >= 0 && r.bottom <= f.height() - 75;
}

void drawEntry(Frame& f, SHOWENTRY* e, int y) {
    CalVis& v = f.view;
    const int left = v.outerMargin, right = v.calLeft - v.outerMargin;
    const Rect box = makeRect(y, left, y + v.showRowHeight, right);
    if (y + v.showRowHeight > v.calTop) {
        e->rect2 = makeRect(std::max(v.calTop, y), left, y + v.showRowHeight, right);
        e->rect2Drawn = true;
    }
    if (box.top >= 3 && box.bottom < f.height() - 85) {
        f.outline(box, palette::outline);
        f.fill(makeRect(box.top + 1, box.left + 1, box.bottom - 1, box.right - 1), f.colors.entry);
    }

    const Color ink = e->attending ? palette::attending : palette::black;
    const bool bold = e->attending;
    const int textLeft = left + kTextInset;
    const int textRight = right - kTextInset - (e->ticketsAvailable ? kLargeTicketSpace : 0);

    Rect dateRect = makeRect(y + 1, textLeft, y + 1 + v.barSize, textRight);
    if (textVisible(f, dateRect))
        f.write(dateLine(e).c_str(), dateRect, {11, bold, ink, 11, kJustifyLeft});

    Rect artistRect = makeRect(y + v.barSize, textLeft,
                               y + v.barSize + (v.showRowHeight - v.barSize) / 2, textRight);
    if (textVisible(f, artistRect))
        f.write(e->artist, artistRect, {15, bold, ink, 15, kJustifyLeft}, e->highlighted);

    if (e->ticketsAvailable && textVisible(f, makeRect(y + 3, 0, y + 3 + 22, 0)))
        drawLargeTicketIcon(f.canvas, f.port, right - kLargeTicketSpace + 2, y + 3);

    Rect tagsRect = makeRect(artistRect.bottom, textLeft, y + v.showRowHeight, right - kTextInset);
    if (e->tags->head && textVisible(f, tagsRect)) {
        std::string tags = "   " + joinedTags(e);
        f.write(tags.c_str(), tagsRect, {9, false, palette::secondaryText, 9, kJustifyLeft});
    }
}

} // namespace

void drawShowList(Frame& f) {
    CalVis& v = f.view;
    // Nothing stays clickable from the last frame unless drawn again.
    for (SHOWENTRY* e = f.list->head; e; e = e->next)
        e->rect1Drawn = e->rect2Drawn = false;

    if (f.tab == kFriendShowsTab && f.list->count == 0 && f.lists.friends->count == 0) {
        f.write(kNoFriendsHint,
                makeRect(v.calTop + 20, v.outerMargin, v.calBottom, v.calLeft - v.outerMargin),
                {13, false, palette::black, 13, kJustifyLeft});
        return;
    }
    // Entries scrolled above the list's top slide under the tabs rather than
    // over the location fields: the list paints from its top down only.
    f.canvas->clipTo(convertRect(makeRect(v.calTop, 0, f.height(), f.layout.width), f.height()));
    int y = v.calTop + v.curVisShowListOffset;
    for (SHOWENTRY* e = f.walk.first(f.list); e; e = f.walk.next(e), y += v.showRowHeight - 1)
        drawEntry(f, e, y);
    f.canvas->unclip();
}

namespace {

// A small triangle in `button`, pointing up or down.
void drawButtonTriangle(Frame& f, const Rect& button, bool up) {
    const int h = f.height();
    const double cx = (button.left + button.right) / 2.0, cy = (button.top + button.bottom) / 2.0;
    const double tip = up ? cy - 3 : cy + 3, base = up ? cy + 2 : cy - 2;
    CanvasPoint points[3] = {{cx, h - tip}, {cx - 4, h - base}, {cx + 4, h - base}};
    f.canvas->fillPolygon(points, 3, palette::link);
}

} // namespace

void drawScrollBar(Frame& f) {
    CalVis& v = f.view;
    if (!v.listOverflows) return;
    f.fill(f.layout.scrollBar, palette::white);
    f.outline(f.layout.scrollBar, palette::outline);
    for (const Rect* button : {&v.scrollUpButton, &v.scrollDownButton}) {
        f.fill(*button, palette::white);
        f.outline(*button, palette::outline);
        drawButtonTriangle(f, *button, button == &v.scrollUpButton);
    }
    f.fill(v.scrollThumb, palette::thumb);
    f.outline(v.scrollThumb, palette::thumb);
}
