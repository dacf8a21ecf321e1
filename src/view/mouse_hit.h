// What the mouse handlers share: the hit test on a list entry and the one
// way a location edit asks for a search.
//
// Threads: main thread.
#pragma once

#include "platform/rect.h"

class StagebeaconClass;
class SHOWLIST;
struct SHOWENTRY;

// The entry's drawn rectangles hold (x, y).
bool hitsEntry(const SHOWENTRY* entry, int x, int y);

// The first entry of `list`, in list order, whose drawn rectangles hold
// (x, y); null for none. The caller holds the list's lock when it needs one.
SHOWENTRY* hitEntry(SHOWLIST* list, int x, int y);

// True when (x, y) lies in neither of the entry's rectangles, drawn or not:
// only then does the move handler drop its highlight.
bool missesEntry(const SHOWENTRY* entry, int x, int y);

// A search of everything, not forced: it starts only when the location on
// screen differs from the one last searched (or the weekly refresh is due).
void askForSearch(StagebeaconClass& app);
