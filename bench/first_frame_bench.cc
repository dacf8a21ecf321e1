// The first frame: how long after the plug-in's start (loading the library,
// the entry point's and the handler's init, the show message) the player
// has its first frame, with a 300,000-track library, against the floor of
// the same start with an empty library, in the same run. Each start is a
// process of its own (the plug-in keeps its application object for the life
// of the process), timed from inside, the same way for both.
//
// Goal: the first frame within 50 ms of the start: the library scan runs on
// the update thread and never delays it.
//
// Usage: first_frame_bench            (the whole benchmark)
//        first_frame_bench --one      (one start; prints milliseconds)
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "bench_support.h"
#include "host_services.h"
#include "library_generator.h"
#include "log.h"
#include "loopback_server.h"
#include "session.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTracks = 300000, kRounds = 7;

std::atomic<bool> frameSeen{false};
Clock::time_point firstFrame;

void frameArrived(void*) {
    if (!frameSeen.exchange(true)) firstFrame = Clock::now();
}

int oneStart() {
    PlayerLog log;
    std::string error;
    if (!log.open("/dev/null", error)) return 1;
    HostServices services(log, true);
    VisualSession session;
    session.display().setRedrawRequest(frameArrived, nullptr);
    auto start = Clock::now();
    if (!session.start(PLUGIN_PATH, services.record(), error)) {
        fprintf(stderr, "first_frame_bench: %s\n", error.c_str());
        return 1;
    }
    session.show(0, 0, 1280, 800);
    while (!frameSeen && Clock::now() - start < std::chrono::seconds(10)) {
        session.idle();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (!frameSeen) return 1;
    printf("%.3f\n", std::chrono::duration<double, std::milli>(firstFrame - start).count());
    fflush(stdout);
    session.display().setRedrawRequest(nullptr, nullptr);
    session.quit();
    return 0;
}

std::string makeHome(const std::string& folder, int tracks, uint64_t* bytes) {
    std::string library = folder + "/Music/iTunes";
    if (system(("mkdir -p '" + library + "'").c_str()) != 0) exit(1);
    LibraryFacts facts;
    if (!writeLibrary(library + "/iTunes Music Library.xml", realisticShape(tracks), &facts)) exit(1);
    *bytes = facts.bytes;
    return folder;
}

double timedStart(const std::string& self, const std::string& home, const std::string& service,
                  const std::string& output) {
    ProcessRun run = runProcess({self, "--one"}, {"HOME=" + home, "STAGEBEACON_SERVICE=" + service},
                                output.c_str());
    double ms = -1;
    std::ifstream in(output);
    if (!run.ok || !(in >> ms)) exit(1);
    return ms;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "--one") return oneStart();

    char folder[] = "/tmp/stagebeacon-bench-XXXXXX";
    if (!mkdtemp(folder)) return 1;
    uint64_t bigBytes = 0, emptyBytes = 0;
    std::string big = makeHome(std::string(folder) + "/big", kTracks, &bigBytes);
    std::string empty = makeHome(std::string(folder) + "/empty", 0, &emptyBytes);
    std::string output = std::string(folder) + "/ms";
    LoopbackServer service; // answers the version check of a first start
    service.onPath("/current_version.php", ScriptedReply::ok("<current>"));
    std::string url = service.url("");
    std::string self = "/proc/self/exe";
    char path[4096];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n > 0) self.assign(path, static_cast<size_t>(n));

    std::vector<double> bigMs, emptyMs;
    for (int round = 0; round < kRounds; ++round) {
        emptyMs.push_back(timedStart(self, empty, url, output));
        bigMs.push_back(timedStart(self, big, url, output));
    }
    double first = median(bigMs), floor = median(emptyMs);
    printf("first frame: %d-track library (%.0f MB), median of %d starts\n", kTracks,
           bigBytes / 1e6, kRounds);
    printf("  first frame, %d tracks    %8.2f ms\n", kTracks, first);
    printf("  first frame, empty library (floor) %8.2f ms\n", floor);
    printf("  ratio                          %8.2f\n", first / floor);
    bool met = reportGoal("first frame within 50 ms of the start", first <= 50.0);
    if (system(("rm -rf '" + std::string(folder) + "'").c_str()) != 0)
        fprintf(stderr, "first_frame_bench: could not remove %s\n", folder);
    return met ? 0 : 1;
}
