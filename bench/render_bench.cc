// Frame cost of the calendar view: a full Render at 1280x800 with 300 shows,
// a busy visible month and a hovered show, against the floor of a block copy
// of the same 1280x800 area (the offscreen image into the port, the copy
// every frame ends with), measured in the same run. The view redraws on every
// idle tick.
//
// Goal: a full frame under 5 ms (60 Hz at less than a third of a core).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "bench_support.h"
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "view/visual_plugin_data.h"
#include "support/demo_shows.h"

namespace {

constexpr int kWidth = 1280, kHeight = 800, kShows = 300, kRounds = 300;

template <typename F> double medianMilliseconds(F&& work) {
    std::vector<double> times;
    for (int i = 0; i < kRounds; ++i) {
        auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    setenv("STAGEBEACON_RESOURCES", STAGEBEACON_BENCH_RESOURCES, 0);
    StagebeaconClass app;
    time_t now = time(nullptr);
    struct tm t {};
    localtime_r(&now, &t);
    CalVis& view = app.calVis;
    view.curVisYear = t.tm_year + 1900;
    view.curVisMonth = t.tm_mon + 1;
    SHOWLIST* list = app.concerts.current().get();
    fillDemoShows(list, kShows, view.curVisYear, view.curVisMonth);
    list->head->next->highlighted = true; // the detail panel is up
    app.protectedData.setLastSearch_y(view.curVisYear);

    Port port(kWidth, kHeight);
    VisualPluginData data;
    data.destPort = &port;
    data.destRect.right = kWidth;
    data.destRect.bottom = kHeight;
    data.offscreen = std::make_unique<OffscreenImage>(kWidth, kHeight);
    CalVis::visualPluginData = &data;

    for (int i = 0; i < 20; ++i)
        view.Render(); // warm the font caches

    const Rect whole = data.destRect;
    double floor = medianMilliseconds([&] { copyBits(*data.offscreen, whole, port, whole); });
    double frame = medianMilliseconds([&] { view.Render(); });
    CalVis::visualPluginData = nullptr;

    printf("render %dx%d, %d shows (median of %d)\n", kWidth, kHeight, kShows, kRounds);
    printf("  full frame              %8.3f ms\n", frame);
    printf("  block copy (floor)      %8.3f ms\n", floor);
    printf("  ratio                   %8.1f\n", frame / floor);
    bool met = reportGoal("a full frame under 5 ms", frame < 5.0);
    return met ? 0 : 1;
}
