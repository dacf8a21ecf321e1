// Keeping the shows of a source that failed: copies of entries of the last
// good generation filed into the new one with SHOWLIST::addShow's rules (a
// show already there takes in the copy's tags, the user's mark carries over).
//
// Threads: the update thread, which alone files into the new generation;
// `from` is locked while it is walked.
#pragma once

#include <functional>

#include "model/show_list.h"

// A new entry with the show's fields and a copy of its tags; no rectangles.
SHOWENTRY* copyShow(const SHOWENTRY& show);

// Files a copy of every entry of `from` that `keep` accepts into `into`.
// Returns how many entries were accepted. Null lists keep nothing.
int keepShows(SHOWLIST* into, SHOWLIST* from, const std::function<bool(const SHOWENTRY&)>& keep);
