// The bounds of month navigation, shared by the navigation operations and by
// the month header, which greys out a direction that leads nowhere.
//
// Threads: the caller holds `list`'s lock.
#pragma once

#include "view/tab_lists.h"

// The month after (year, month) can be shown: some visible entry lies later.
bool canShowNextMonth(SHOWLIST* list, const VisibleWalk& walk, int year, int month);
// The month before can be shown: some visible entry lies earlier.
bool canShowPreviousMonth(SHOWLIST* list, const VisibleWalk& walk, int year, int month);
// Visible entries dated before (year, month).
int entriesBefore(SHOWLIST* list, const VisibleWalk& walk, int year, int month);
