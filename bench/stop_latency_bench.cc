// How long stopping an update takes while its download hangs: a loopback
// peer accepts and then says nothing (before the reply's head, or in the
// middle of its body), at three points of an update: the site list, a
// site's head, a site's body. Goal: the update thread has ended within
// 100 ms of the stop request, every time. The floor, measured in the same
// run, is stopping an update that has already finished (the join alone).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "loopback_server.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr double kGoalMs = 100.0;
constexpr int kTrials = 10;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

enum class Point { SiteList, SiteHead, SiteBody };

// One update that hangs at `point`, stopped once the hanging peer has the
// request; returns the milliseconds shutDown took.
double stopOnce(Point point) {
    LoopbackServer service;
    LoopbackServer site;
    setenv("STAGEBEACON_SERVICE", service.url("").c_str(), 1);
    auto app = std::make_unique<StagebeaconClass>();
    app->calGetData.locateByIP = false;
    app->calGetData.fetchTimeout = 60;
    app->protectedData.setCurCityDisplay("Boston");
    app->protectedData.setCurStateDisplay("MA");

    ScriptedReply hanging = ScriptedReply::ok("<artist>Wilco</artist>\n");
    (point == Point::SiteBody ? hanging.delayBeforeBodyMs : hanging.delayBeforeHeadMs) = 60000;
    service.onPath("/zipcodes/zipcodes.php", ScriptedReply::ok("<LAT>42.36</LAT><LON>-71.06</LON>"));
    if (point == Point::SiteList) {
        service.onPath("/datasources/datasources.php", hanging);
    } else {
        service.onPath("/datasources/datasources.php",
                       ScriptedReply::ok("<site>" + site.url("/s?a=1") + "</site>\n"));
        site.onPath("/s", hanging);
    }
    LoopbackServer& peer = point == Point::SiteList ? service : site;
    size_t expected = point == Point::SiteList ? 2 : 1;

    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
    if (!peer.waitForRequests(expected, 10000)) {
        fprintf(stderr, "stop_latency_bench: the hanging peer was never asked\n");
        exit(2);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // well inside the wait
    Clock::time_point start = Clock::now();
    app->calGetData.shutDown();
    double took = msSince(start);
    unsetenv("STAGEBEACON_SERVICE");
    return took;
}

// Stopping an update that has already ended.
double floorOnce() {
    LoopbackServer service;
    setenv("STAGEBEACON_SERVICE", service.url("").c_str(), 1);
    auto app = std::make_unique<StagebeaconClass>();
    app->calGetData.locateByIP = false;
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
    while (app->calGetData.updateRunning()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    Clock::time_point start = Clock::now();
    app->calGetData.shutDown();
    double took = msSince(start);
    unsetenv("STAGEBEACON_SERVICE");
    return took;
}

} // namespace

int main() {
    struct Row {
        const char* name;
        Point point;
    };
    const Row rows[] = {{"site list, before its head", Point::SiteList},
                        {"a site, before its head", Point::SiteHead},
                        {"a site, inside its body", Point::SiteBody}};
    std::vector<double> floors;
    for (int i = 0; i < kTrials; ++i) floors.push_back(floorOnce());
    double floor = *std::max_element(floors.begin(), floors.end());

    double worst = 0.0;
    for (const Row& row : rows) {
        std::vector<double> times;
        for (int i = 0; i < kTrials; ++i) times.push_back(stopOnce(row.point));
        std::sort(times.begin(), times.end());
        printf("stop while hanging at %-28s median %.2f ms, worst %.2f ms\n", row.name,
               times[times.size() / 2], times.back());
        worst = std::max(worst, times.back());
    }
    printf("stop latency: worst %.2f ms of %d stops (goal %.0f ms); floor (join of a finished "
           "update) %.2f ms; ratio %.1f\n",
           worst, 3 * kTrials, kGoalMs, floor, floor > 0 ? worst / floor : 0.0);
    if (worst > kGoalMs) {
        printf("stop latency: GOAL MISSED\n");
        return 1;
    }
    return 0;
}
