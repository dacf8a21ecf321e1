// The painting steps of drawCalendar, in the order they run, and the state
// one frame shares between them. Geometry comes from the frame's ViewLayout;
// the steps only paint and record what they painted.
//
// Threads: inside CalVis::Render (render lock and the four list locks held).
#pragma once

#include <string>

#include "model/protected_data.h"
#include "model/show_list.h"
#include "platform/canvas.h"
#include "view/cal_vis.h"
#include "view/layout.h"
#include "view/palette.h"
#include "view/tab_lists.h"
#include "view/text_writer.h"

class StagebeaconClass;

struct Frame {
    Canvas* canvas;
    Rect* port;
    StagebeaconClass* app;
    CalVis& view;
    ProtectedData& store;
    const ViewLists& lists;
    CalTab tab;
    SHOWLIST* list; // the tab's list
    VisibleWalk walk;
    const TabColors& colors;
    ViewLayout layout;
    int todayDay, todayMonth, todayYear;
    SHOWENTRY* highlighted; // first highlighted visible entry, or null

    int height() const { return layout.height; }
    void fill(const Rect& r, Color c) { fillScreenRect(canvas, r, port, c); }
    void outline(const Rect& r, Color c) { strokeScreenRect(canvas, r, port, c); }
    void write(const char* text, const Rect& r, const TextStyle& style, bool underline = false) {
        writeText(canvas, text, r, port, style, underline);
    }
};

// Step 3: what is being fetched, with a progress bar, or when it last was.
void drawStatus(Frame& f);
// Step 4: the show list (or the hint to enter friends), recording rect2.
void drawShowList(Frame& f);
// Step 5: the list's scroll bar while the list overflows.
void drawScrollBar(Frame& f);
// Step 6: the three tabs, the selected one on top.
void drawTabs(Frame& f);
// Step 7: weekday strip, month title and the two month buttons.
void drawMonthHeader(Frame& f);
// Steps 8 and 9: grid lines, day cells and the shows in each cell.
void drawGrid(Frame& f);
// Step 10: the detail panel of the highlighted show.
void drawDetailPanel(Frame& f);
// Step 11: the frame around the grid.
void drawGridFrame(Frame& f);
// Step 12: the city, state and radius fields.
void drawLocationFields(Frame& f);
// Steps 13 to 17: restart notice, connection or promotional line, newer
// version banner, version text and the links at the top right.
void drawNoticesAndLinks(Frame& f);

// Shared text builders.
// "%s %d, %d - %s  (%s)" (or without the location when it is "-").
std::string dateLine(const SHOWENTRY* e);
// The tag names joined with ", ", at most 5099 characters.
std::string joinedTags(const SHOWENTRY* e);
// printf into a std::string.
std::string format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
