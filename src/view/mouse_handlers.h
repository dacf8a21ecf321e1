// The pointer's events on the calendar view. The host's mouse monitor stores
// the pointer in CalVis::mouseX/mouseY (port coordinates) and then calls one
// of these; each hit test reads the rectangles the previous frame recorded,
// with the strict test of platform/rect.h, so a region that was not drawn (a
// zero rectangle) can never be hit.
//
// Most actions wait for the release, through the hover flags the move handler
// keeps current; the location fields, the scroll controls, the month buttons
// and the per-day arrows act on the press.
//
// Threads: main thread only. They change CalVis fields without a lock (the
// update thread's renders read them); the move and release walks hold the
// current list's lock, the marking walk does not, because the sharing,
// settings and export code it calls take their own locks.
// They reach the application through the global `Stagebeacon`; with none set
// they do nothing.
#pragma once

// Any button pressed.
void handleLeftMouseClicks();
// Primary button released without the Control key.
void handleMouseUp();
// Secondary button released, or primary released with Control held.
void handleRightMouseClicks();
// Pointer moved or dragged; also after keyboard navigation and wheel
// actions, so the hover state follows content that moved under the pointer.
void handleMouseMoveEvents();
// The wheel's signed delta; positive is a turn upwards.
void handleMouseWheelMoved(int delta);
