// The geometry of one frame, computed before anything is painted: the grid
// and list edges from the port's size, the scroll geometry with the list
// offset brought back into range, and every fixed rectangle of the view.
// Painting (draw_*.cc) only reads it.
//
// All rectangles are in port coordinates (origin top left, y down).
//
// Threads: whoever renders, under CalVis::renderMutex.
#pragma once

#include "platform/rect.h"
#include "view/cal_vis.h"
#include "view/tab_lists.h"

// A Rect from ints, each side clamped to the int16 range.
Rect makeRect(int top, int left, int bottom, int right);

struct ViewLayout {
    int width = 0; // of the port
    int height = 0;
    int cellWidth = 0;
    int cellHeight = 0;
    int visibleHeight = 0; // of the list, calBottom - calTop

    Rect statusText;    // the status line
    Rect progressFrame; // the progress bar's outline
    Rect lastUpdated;
    Rect restarting; // "Restarting search" strip
    Rect scrollBar;  // the whole track
    Rect tabs[3];    // by CalTab
    Rect prevMonth;  // "<<"
    Rect nextMonth;  // ">>"
    Rect monthTitle;
    Rect weekdayStrip;
    Rect detailPanel;
    Rect fieldLabels[3]; // city, state, radius
    Rect fieldValues[3];
    Rect retry;   // internet-problem line
    Rect promo;   // promotional line
    Rect banner;  // newer-version banner
    Rect version; // version text
    Rect preferences;
    Rect iPhone;
    Rect android;
};

// Computes the frame's geometry for `port` (at the origin) with `entryCount`
// visible entries in the list of `tab`. Sets the view's per-frame fields
// (calRight, calBottom, listContentHeight, scrollThumbLength,
// scrollThumbOffset, listOverflows), clamps its list offset, and stores the
// cell rectangles and the list, grid and scroll bar rectangles.
ViewLayout computeLayout(CalVis& view, const Rect& port, int entryCount, CalTab tab);

// The left edge of the weekday name of column `column` (0 = Sunday).
int weekdayNameX(const CalVis& view, const ViewLayout& layout, int column);
