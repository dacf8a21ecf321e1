#include "model/list_generations.h"

namespace {

void releaseList(SHOWLIST* list) {
    deleteShows(list); // takes the list's lock, so no walk can be under way
    delete list;
}

} // namespace

ShowListRef makeShowList() { return ShowListRef(new SHOWLIST, releaseList); }

ShowListGenerations::ShowListGenerations()
    : currentList(makeShowList()), previousList(makeShowList()) {}

ShowListRef ShowListGenerations::current() const { return std::atomic_load(&currentList); }

ShowListRef ShowListGenerations::previous() const { return std::atomic_load(&previousList); }

ShowListRef ShowListGenerations::replace() {
    ShowListRef fresh = makeShowList();
    std::atomic_store(&previousList, current());
    std::atomic_store(&currentList, fresh);
    return fresh;
}
