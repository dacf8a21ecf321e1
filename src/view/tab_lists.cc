// The current tab's list and its visible entries.
#include "view/tab_lists.h"

#include "model/protected_data.h"
#include "model/stagebeacon_class.h"

CalTab currentCalTab(ProtectedData& store) {
    int tab = store.getCurCalTab();
    return tab == kFriendShowsTab || tab == kCdReleasesTab ? CalTab(tab) : kMyShowsTab;
}

namespace {

// Tab -> the application's list generations, in tab order.
ShowListGenerations StagebeaconClass::*const kTabGenerations[] = {
    &StagebeaconClass::concerts, &StagebeaconClass::friendsShows, &StagebeaconClass::albums};

} // namespace

ShowListRef listForTab(StagebeaconClass& app, CalTab tab) {
    return (app.*kTabGenerations[tab]).current();
}

SHOWLIST* ViewLists::forTab(CalTab tab) const {
    const ShowListRef* lists[] = {&concerts, &friendsShows, &albums};
    return lists[tab]->get();
}

bool VisibleWalk::hidden(SHOWENTRY* entry) const {
    return tab == kCdReleasesTab && store.isFilterOn(entry->tags);
}

SHOWENTRY* VisibleWalk::forwardFrom(SHOWENTRY* entry) const {
    while (entry && hidden(entry))
        entry = entry->next;
    return entry;
}

SHOWENTRY* VisibleWalk::backwardFrom(SHOWENTRY* entry) const {
    while (entry && hidden(entry))
        entry = entry->prev;
    return entry;
}

uint32_t VisibleWalk::count(SHOWLIST* list) const {
    return tab == kCdReleasesTab ? list->filteredSize(&store) : list->count;
}
