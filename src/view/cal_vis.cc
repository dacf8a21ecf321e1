// CalVis: construction, scrolling and month navigation.
#include "view/cal_vis.h"

#include <ctime>

#include "model/stagebeacon_class.h"
#include "view/navigation.h"

std::atomic<VisualPluginData*> CalVis::visualPluginData{nullptr};
std::mutex CalVis::renderMutex;

CalVis::~CalVis() { frameRequest->view = nullptr; }

CalVis::CalVis(StagebeaconClass* owner)
    : owner(owner), frameRequest(std::make_shared<FrameRequest>()) {
    frameRequest->view = this;
    time_t now = time(nullptr);
    struct tm local {};
    localtime_r(&now, &local);
    curVisMonth = local.tm_mon + 1;
    curVisYear = local.tm_year + 1900;
}

bool canShowNextMonth(SHOWLIST* list, const VisibleWalk& walk, int year, int month) {
    if (walk.count(list) < 1) return false;
    SHOWENTRY* last = walk.last(list);
    return last && monthKey(last->year, last->month) > monthKey(year, month);
}

bool canShowPreviousMonth(SHOWLIST* list, const VisibleWalk& walk, int year, int month) {
    if (walk.count(list) < 1) return false;
    SHOWENTRY* first = walk.first(list);
    return first && monthKey(first->year, first->month) < monthKey(year, month);
}

int entriesBefore(SHOWLIST* list, const VisibleWalk& walk, int year, int month) {
    int n = 0;
    for (SHOWENTRY* e = walk.first(list); e; e = walk.next(e)) {
        if (monthKey(e->year, e->month) >= monthKey(year, month)) break;
        ++n;
    }
    return n;
}

namespace {

// Moves the grid by `step` months (+1 or -1) when `allowed` says the current
// tab's list reaches that far; then brings the list and cells along.
void moveMonth(CalVis& view, int step, bool (*allowed)(SHOWLIST*, const VisibleWalk&, int, int)) {
    ProtectedData& store = view.owner->protectedData;
    CalTab tab = currentCalTab(store);
    ShowListRef list = listForTab(*view.owner, tab);
    VisibleWalk walk(store, tab);
    {
        std::lock_guard<std::mutex> guard(list->mutex);
        if (!allowed(list.get(), walk, view.curVisYear, view.curVisMonth)) return;
    }
    int key = monthKey(view.curVisYear, view.curVisMonth) + step;
    view.curVisYear = key / 12;
    view.curVisMonth = key % 12 + 1;

    view.setOffsetToMatchCurVisMonth();
    for (int& n : view.cellScroll)
        n = 0;
    // No hover survives a month change.
    std::lock_guard<std::mutex> guard(list->mutex);
    for (SHOWENTRY* e = list->head; e; e = e->next)
        e->highlighted = false;
}

} // namespace

void CalVis::incrementCurVisMonth() {
    moveMonth(*this, +1, canShowNextMonth);
}

void CalVis::decrementCurVisMonth() {
    moveMonth(*this, -1, canShowPreviousMonth);
}

void CalVis::setOffsetToMatchCurVisMonth() {
    ProtectedData& store = owner->protectedData;
    CalTab tab = currentCalTab(store);
    ShowListRef list = listForTab(*owner, tab);
    std::lock_guard<std::mutex> guard(list->mutex);
    int before = entriesBefore(list.get(), VisibleWalk(store, tab), curVisYear, curVisMonth);
    curVisShowListOffset = -(showRowHeight - 1) * before;
}
