// Library scan benchmark: CalGetData::parseXML over a generated library of
// 100,000 tracks, against `wc -l` on the same file in the same run (the
// machine is shared, so only the ratio means much). Also reports the peak
// memory after scanning a library a quarter of the size and after the full
// one: the file is streamed, so what grows is only the per-track table the
// playlist pass needs.
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "library/file_io.h"
#include "library/library_reader.h"
#include "library_generator.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

extern char** environ;

namespace {

constexpr int kTracks = 100000;
constexpr int kRounds = 5;

double seconds(const std::function<void()>& work) {
    auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double best(const std::function<void()>& work) {
    double fastest = 1e9;
    for (int i = 0; i < kRounds; ++i) fastest = std::min(fastest, seconds(work));
    return fastest;
}

void wcLines(const std::string& path) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1 /* O_WRONLY */, 0);
    std::string program = "wc", option = "-l", file = path;
    char* argv[] = {&program[0], &option[0], &file[0], nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, "wc", &actions, nullptr, argv, environ) != 0) {
        fprintf(stderr, "cannot start wc\n");
        exit(1);
    }
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    waitpid(child, &status, 0);
}

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

LibraryShape shapeOf(int tracks) {
    LibraryShape shape;
    shape.tracks = tracks;
    shape.artists = tracks / 12;
    shape.commaEvery = 17;
    shape.podcastEvery = 41;
    shape.variousEvery = 29;
    return shape;
}

} // namespace

int main() {
    char folder[] = "/tmp/stagebeacon-bench-XXXXXX";
    if (!mkdtemp(folder)) return 1;
    setenv("HOME", folder, 1);
    std::string small = std::string(folder) + "/small.xml";
    std::string large = std::string(folder) + "/library.xml";

    LibraryFacts smallFacts, facts;
    double generation = seconds([&] {
        if (!writeLibrary(large, shapeOf(kTracks), &facts)) exit(1);
    });
    if (!writeLibrary(small, shapeOf(kTracks / 4), &smallFacts)) return 1;

    StagebeaconClass app;
    int result = 0;
    app.protectedData.setiTunes_xml_path(small.c_str());
    result |= app.calGetData.parseXML();
    double smallPeak = peakMegabytes();

    app.protectedData.setiTunes_xml_path(large.c_str());
    wcLines(large); // both timings start from a warm file cache
    double scan = best([&] { result |= app.calGetData.parseXML(); });
    double wc = best([&] { wcLines(large); });
    size_t lines = 0;
    double reading = best([&] {
        LineReader reader(large.c_str());
        std::string_view line;
        for (lines = 0; reader.next(&line);) ++lines;
    });
    size_t keyLines = 0;
    double filtering = best([&] {
        LibraryReader reader(large.c_str());
        std::string_view line;
        for (keyLines = 0; reader.next(&line, true);) ++keyLines;
    });
    double largePeak = peakMegabytes();

    double megabytes = facts.bytes / 1e6;
    printf("library scan: %d tracks, %.1f MB, %llu lines (generated in %.2f s)\n", kTracks,
           megabytes, static_cast<unsigned long long>(facts.lines), generation);
    printf("  parseXML   %8.1f ms  %7.1f MB/s  (%u artists, %u albums, result %d)\n",
           scan * 1e3, megabytes / scan, app.calGetData.xmlArtists.count,
           app.calGetData.xmlAlbums.count, result);
    printf("  wc -l      %8.1f ms  %7.1f MB/s\n", wc * 1e3, megabytes / wc);
    printf("  lines only %8.1f ms  %7.1f MB/s  (the scan's line reader alone, %zu lines)\n",
           reading * 1e3, megabytes / reading, lines);
    printf("  key lines  %8.1f ms  %7.1f MB/s  (the scan's reader finding key lines, %zu lines)\n",
           filtering * 1e3, megabytes / filtering, keyLines);
    printf("  ratio parseXML / wc -l: %.2f (goal: at most 3)\n", scan / wc);
    printf("  peak memory: %.1f MB after a %.1f MB library, %.1f MB after the %.1f MB one\n",
           smallPeak, smallFacts.bytes / 1e6, largePeak, megabytes);

    unlink(small.c_str());
    unlink(large.c_str());
    std::string support = std::string(folder) + "/Library/Application Support/Stagebeacon";
    rmdir(support.c_str());
    rmdir((std::string(folder) + "/Library/Application Support").c_str());
    rmdir((std::string(folder) + "/Library").c_str());
    rmdir(folder);
    return result == 0 ? 0 : 1;
}
