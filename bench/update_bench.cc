// Memory over many updates: 1,000 forced concert updates (each on its own
// update thread, as suggestUpdateShowList starts them) against a loopback
// service with 20 sites of 150 events, every update replacing the show list
// generation. The floor is the resident memory after the first 100 updates
// (everything warmed up: lists, caches, thread stacks), the figure the
// resident memory after all 1,000, measured in the same run. The service
// runs in a child process, so that what it records of every request does
// not count as the plug-in's memory.
//
// Goal: resident memory flat, within 5% of the floor.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "bench_support.h"
#include "loopback_server.h"
#include "model/artist_key.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

namespace {

constexpr int kSites = 20, kEventsPerSite = 150, kArtists = 5000, kUpdates = 1000,
              kWarmUpdates = 100;

std::string sitePage(int site, int variant) {
    std::string page;
    for (int i = 0; i < kEventsPerSite; ++i) {
        int artist = (i % 3 == 0) ? (site * 977 + i * 7 + variant) % kArtists : 100000 + i;
        int day = (i * 37 + site * 11) % 336;
        page += "<artist>Band " + std::to_string(artist) + "</artist><event_date>" +
                std::to_string(1 + day / 28) + "/" + std::to_string(1 + day % 28) +
                "/2027</event_date><venue_name>Venue " + std::to_string(i % 50) +
                "</venue_name><event_url>http://127.0.0.1/e/" + std::to_string(site) + "/" +
                std::to_string(i) +
                "</event_url><venue_city>Boston</venue_city><venue_state>MA</venue_state></event>\n";
    }
    return page;
}

double residentMegabytes() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * sysconf(_SC_PAGESIZE) / 1e6;
}

void forcedUpdate(StagebeaconClass& app) {
    (void)app.calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
    while (app.calGetData.updateRunning()) std::this_thread::sleep_for(std::chrono::microseconds(200));
}

// The child: serves the sites, tells the parent its port, and waits until
// the parent is done with it.
void serveSites(int portOut) {
    LoopbackServer server;
    std::string templates;
    for (int s = 0; s < kSites; ++s) {
        std::string path = "/site" + std::to_string(s);
        server.onPath(path, ScriptedReply::ok(sitePage(s, 0)));
        templates += "<site>" + server.url(path + "?q=1") + "</site>\n";
    }
    server.onPath("/zipcodes/zipcodes.php", ScriptedReply::ok("<LAT>42.36</LAT><LON>-71.06</LON>"));
    server.onPath("/datasources/datasources.php", ScriptedReply::ok(templates));
    int port = server.port();
    if (write(portOut, &port, sizeof port) != sizeof port) return;
    close(portOut);
    pause(); // until the parent's SIGTERM
}

} // namespace

int main() {
    char home[] = "/tmp/stagebeacon-bench-XXXXXX";
    if (!mkdtemp(home)) return 1;
    setenv("HOME", home, 1);
    int portPipe[2];
    if (pipe(portPipe) != 0) return 1;
    pid_t service = fork(); // before any thread of ours exists
    if (service < 0) return 1;
    if (service == 0) {
        close(portPipe[0]);
        serveSites(portPipe[1]);
        _exit(0);
    }
    close(portPipe[1]);
    int port = 0;
    bool started = read(portPipe[0], &port, sizeof port) == sizeof port;
    close(portPipe[0]);
    if (!started) {
        fprintf(stderr, "update_bench: the service did not start\n");
        return 1;
    }
    setenv("STAGEBEACON_SERVICE", ("http://127.0.0.1:" + std::to_string(port)).c_str(), 1);

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

    auto start = std::chrono::steady_clock::now();
    double floor = 0;
    for (int i = 1; i <= kUpdates; ++i) {
        forcedUpdate(*app);
        if (i == kWarmUpdates) floor = residentMegabytes();
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    double after = residentMegabytes();
    size_t shows = app->concerts.current()->size();
    app->calGetData.shutDown();

    printf("memory over updates: %d forced updates, %d sites x %d events, %zu shows a list "
           "(%.1f ms an update)\n",
           kUpdates, kSites, kEventsPerSite, shows, seconds * 1e3 / kUpdates);
    printf("  resident after %4d updates (floor)  %7.1f MB\n", kWarmUpdates, floor);
    printf("  resident after %4d updates          %7.1f MB\n", kUpdates, after);
    printf("  ratio                               %7.3f\n", after / floor);
    bool met = reportGoal("resident memory within 5% after 1,000 updates", after <= floor * 1.05 &&
                                                                              shows > 0);
    kill(service, SIGTERM);
    waitpid(service, nullptr, 0);
    rmdir(home);
    return met ? 0 : 1;
}
