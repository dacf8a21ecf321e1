// The entry hit test and the location fields' search request.
#include "view/mouse_hit.h"

#include "model/show_list.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

bool hitsEntry(const SHOWENTRY* entry, int x, int y) {
    return (entry->rect1Drawn && strictlyInside(entry->rect1, x, y)) ||
           (entry->rect2Drawn && strictlyInside(entry->rect2, x, y));
}

SHOWENTRY* hitEntry(SHOWLIST* list, int x, int y) {
    for (SHOWENTRY* e = list->head; e; e = e->next)
        if (hitsEntry(e, x, y)) return e;
    return nullptr;
}

bool missesEntry(const SHOWENTRY* entry, int x, int y) {
    return !strictlyInside(entry->rect1, x, y) && !strictlyInside(entry->rect2, x, y);
}

void askForSearch(StagebeaconClass& app) {
    (void)app.calGetData.suggestUpdateShowList(CalGetData::kTaskAll, false);
}
