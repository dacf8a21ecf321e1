// drawCalendar: paints the whole view for one frame and records every
// rectangle the mouse handlers test (in CalVis and in the entries' rect1 and
// rect2), so what is clickable is exactly what was drawn last.
//
// Threads: called by CalVis::Render with the render lock and the locks of
// the four lists in `lists` held.
#pragma once

#include "platform/rect.h"
#include "view/tab_lists.h"

class Canvas;
class StagebeaconClass;

// `port` is the view's rectangle at the origin, the canvas its size.
void drawCalendar(Canvas* context, Rect* port, StagebeaconClass* app, const ViewLists& lists);
