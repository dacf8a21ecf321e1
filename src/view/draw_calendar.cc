// drawCalendar: geometry first, then the painting steps in order.
#include "view/draw_calendar.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "model/dates.h"
#include "view/draw_steps.h"

std::string format(const char* fmt, ...) {
    char buffer[1024];
    va_list args;
    va_start(args, fmt);
    vsnprintf(buffer, sizeof buffer, fmt, args);
    va_end(args);
    return buffer;
}

std::string dateLine(const SHOWENTRY* e) {
    const char* month = e->month >= 1 && e->month <= 12 ? monthStrings[e->month - 1] : "";
    if (strcmp(e->location, "-") == 0)
        return format("%s %d, %d - %s", month, e->day, e->year, e->venue);
    return format("%s %d, %d - %s  (%s)", month, e->day, e->year, e->venue, e->location);
}

std::string joinedTags(const SHOWENTRY* e) {
    constexpr size_t kLimit = 5099;
    std::string out;
    for (FRIENDNAME* n = e->tags->head; n; n = n->next) {
        if (!out.empty()) out += ", ";
        out += n->name;
    }
    if (out.size() > kLimit) out.resize(kLimit);
    return out;
}

namespace {

// Painting order: later steps lie on top of earlier ones.
void (*const kSteps[])(Frame&) = {
    drawStatus, drawShowList,    drawScrollBar, drawTabs,           drawMonthHeader,
    drawGrid,   drawDetailPanel, drawGridFrame, drawLocationFields, drawNoticesAndLinks,
};

SHOWENTRY* firstHighlighted(SHOWLIST* list, const VisibleWalk& walk) {
    for (SHOWENTRY* e = walk.first(list); e; e = walk.next(e))
        if (e->highlighted) return e;
    return nullptr;
}

} // namespace

void drawCalendar(Canvas* context, Rect* port, StagebeaconClass* app, const ViewLists& lists) {
    ProtectedData& store = app->protectedData;
    CalTab tab = currentCalTab(store);
    SHOWLIST* list = lists.forTab(tab);
    VisibleWalk walk(store, tab);

    time_t now = time(nullptr);
    struct tm today {};
    localtime_r(&now, &today);

    Frame f{context,
            port,
            app,
            app->calVis,
            store,
            lists,
            tab,
            list,
            walk,
            kTabColors[tab],
            computeLayout(app->calVis, *port, int(walk.count(list)), tab),
            today.tm_mday,
            today.tm_mon + 1,
            today.tm_year + 1900,
            firstHighlighted(list, walk)};

    macClearScreen(context, port);
    context->selectFont(13, false);
    for (auto step : kSteps)
        step(f);
}
