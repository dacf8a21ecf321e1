// A whole concert update against a loopback service with 20 sites of 500
// events each, beside the floor of merely downloading the same 22 pages in
// the same run. The ratio says how much the engine adds to the network.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "loopback_server.h"
#include "model/artist_key.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/http_fetch.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kSites = 20, kEventsPerSite = 500, kArtists = 20000, kRounds = 9;

std::string sitePage(int site) {
    std::string page;
    for (int i = 0; i < kEventsPerSite; ++i) {
        int artist = (i % 3 == 0) ? (site * 977 + i * 7) % kArtists : 100000 + i;
        int day = i * 336 / kEventsPerSite;
        page += "<artist>Band " + std::to_string(artist) + "</artist><event_date>" +
                std::to_string(1 + day / 28) + "/" + std::to_string(1 + day % 28) +
                "/2027</event_date><venue_name>Venue " + std::to_string(i % 50) +
                "</venue_name><event_url>http://127.0.0.1/e/" + std::to_string(i) +
                "</event_url><venue_city>Boston</venue_city><venue_state>MA</venue_state></event>\n";
    }
    return page;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main() {
    LoopbackServer server;
    setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
    std::string templates;
    std::vector<std::string> pages = {server.url("/zipcodes/zipcodes.php"),
                                      server.url("/datasources/datasources.php")};
    for (int s = 0; s < kSites; ++s) {
        std::string path = "/site" + std::to_string(s);
        server.onPath(path, ScriptedReply::ok(sitePage(s)));
        templates += "<site>" + server.url(path + "?q=1") + "</site>\n";
        pages.push_back(server.url(path));
    }
    server.onPath("/zipcodes/zipcodes.php", ScriptedReply::ok("<LAT>42.36</LAT><LON>-71.06</LON>"));
    server.onPath("/datasources/datasources.php", ScriptedReply::ok(templates));

    auto app = std::make_unique<StagebeaconClass>();
    for (int i = 0; i < kArtists; ++i) {
        char key[kArtistKeySize];
        snprintf(key, sizeof key, "Band %d", i);
        cleanArtist(key);
        XMLARTIST* a = new XMLARTIST(key);
        if (!app->calGetData.xmlArtists.add(a)) delete a;
    }
    app->calGetData.locateByIP = false;
    app->protectedData.setCurCityDisplay("Boston");
    app->protectedData.setCurStateDisplay("MA");

    std::vector<double> updateMs, fetchMs;
    size_t shows = 0;
    for (int round = 0; round < kRounds; ++round) {
        auto t0 = Clock::now();
        for (const std::string& url : pages) {
            char* body = nullptr;
            if (http_fetch(url.c_str(), &body) < 0) return 1;
            free(body);
        }
        auto t1 = Clock::now();
        app->calGetData.performUpdate(CalGetData::kTaskConcerts);
        auto t2 = Clock::now();
        shows = app->concerts.current()->size();
        fetchMs.push_back(std::chrono::duration<double, std::milli>(t1 - t0).count());
        updateMs.push_back(std::chrono::duration<double, std::milli>(t2 - t1).count());
    }
    double update = median(updateMs), fetch = median(fetchMs);
    int events = kSites * kEventsPerSite;
    printf("concert update: %d sites, %d events, %d library artists, %zu shows filed\n", kSites,
           events, kArtists, shows);
    printf("  whole update     %8.2f ms  %10.0f events/s\n", update, events / update * 1000);
    printf("  downloads alone  %8.2f ms  (floor)\n", fetch);
    printf("  ratio to floor   %8.2fx\n", update / fetch);
    app->calGetData.shutDown();
    return 0;
}
