// Filing shows: 100,000 events over 20 concert-site pages read and filed
// into a new show list (with the previous generation to carry marks from),
// against the floor of reading the same pages against an empty library, in
// the same run: every record read, every artist keyed and looked up, nothing
// filed. The ratio is what filing adds to reading.
//
// Pages are realistic: most sites list their events in date order, each
// over the whole year (so the pages interleave), a quarter list them in no
// order; about a third of the artists are in the library, names are of
// every length and script, and one show in twenty is listed by two sites.
//
// Goal: reading and filing within 1.5x of reading alone.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "model/artist_key.h"
#include "model/linked.h"
#include "update/event_page.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kPages = 20, kEventsPerPage = 5000, kArtists = 20000, kRounds = 7;

const char* const kWords[] = {"Velvet", "Harbor", "Sigur", "Rós", "Mötley", "Мумий", "Тролль",
                              "東京", "Orchestra", "of", "the", "Distant", "Lighthouses",
                              "Björk", "Crimson", "Wolves", "&amp;", "Ñandú"};

std::string artistName(int i) {
    std::string name;
    for (int w = 0; w <= i % 4; ++w) name += std::string(kWords[(i / (w + 1)) % 18]) + " ";
    return name + std::to_string(i);
}

struct Event {
    int month, day, artist, support;
};

std::string makePage(int page, std::mt19937& random) {
    std::vector<Event> events;
    for (int i = 0; i < kEventsPerPage; ++i) {
        // One show in twenty is also on the next page (same date, same act).
        int seed = (i % 20 == 0) ? (page + 1) * 100000 + i : page * 100000 + i;
        std::mt19937 own(static_cast<unsigned>(seed));
        int headliner = (own() % 3 == 0) ? static_cast<int>(own() % kArtists)
                                         : 100000 + static_cast<int>(own() % 200000);
        events.push_back({1 + static_cast<int>(own() % 12), 1 + static_cast<int>(own() % 28),
                          headliner, 300000 + static_cast<int>(own() % 100000)});
    }
    if (page % 4 != 3)
        std::sort(events.begin(), events.end(), [](const Event& a, const Event& b) {
            return a.month != b.month ? a.month < b.month : a.day < b.day;
        });
    else
        std::shuffle(events.begin(), events.end(), random);
    std::string text;
    for (const Event& e : events) {
        text += "<artist>" + artistName(e.artist) + "</artist><artist>" + artistName(e.support) +
                "</artist><event_date>" + std::to_string(e.month) + "/" + std::to_string(e.day) +
                "/2027</event_date><venue_name>Venue " + std::to_string(e.support % 700) +
                "</venue_name><event_url>http://127.0.0.1/site" + std::to_string(page) + "/e/" +
                std::to_string(e.support) + "</event_url><venue_city>Boston</venue_city>"
                "<venue_state>MA</venue_state></event>\n";
    }
    return text;
}

void addArtists(XML_Artist_List& library, int count) {
    for (int i = 0; i < count; ++i) {
        char key[kArtistKeySize];
        snprintf(key, sizeof key, "%s", artistName(i).c_str());
        cleanArtist(key);
        XMLARTIST* artist = new XMLARTIST(key);
        if (!library.add(artist)) delete artist;
    }
}

// Milliseconds to read (and file) every page into a new list.
double readPages(const std::vector<std::string>& pages, XML_Artist_List& library,
                 SHOWLIST& shows, SHOWLIST& previous) {
    auto start = Clock::now();
    LibraryArtistIndex index(library);
    for (const std::string& page : pages) {
        EventFiling filing{&library, &index, &shows, &previous, false, [] { return false; }};
        parseEventPage(page, filing);
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

int main() {
    std::mt19937 random(7);
    std::vector<std::string> pages;
    size_t bytes = 0;
    for (int p = 0; p < kPages; ++p) {
        pages.push_back(makePage(p, random));
        bytes += pages.back().size();
    }
    XML_Artist_List library, empty;
    addArtists(library, kArtists);

    std::vector<double> filingMs, floorMs;
    SHOWLIST lists[2];
    size_t filed = 0;
    for (int round = 0; round < kRounds; ++round) {
        SHOWLIST nothing, none;
        floorMs.push_back(readPages(pages, empty, nothing, none));
        // This round's list is filed against the last round's.
        SHOWLIST& shows = lists[round % 2];
        SHOWLIST& previous = lists[(round + 1) % 2];
        deleteShows(&shows);
        filingMs.push_back(readPages(pages, library, shows, previous));
        filed = shows.size();
    }
    double filing = median(filingMs), floor = median(floorMs);
    printf("filing: %d pages, %d events, %.1f MB, %d library artists, %zu shows filed\n", kPages,
           kPages * kEventsPerPage, bytes / 1e6, kArtists, filed);
    printf("  read and file        %8.1f ms  %10.0f events/s\n", filing,
           kPages * kEventsPerPage / filing * 1000);
    printf("  read alone (floor)   %8.1f ms\n", floor);
    printf("  ratio                %8.2f\n", filing / floor);
    bool met = reportGoal("reading and filing within 1.5x of reading alone", filing / floor <= 1.5);
    for (SHOWLIST& list : lists) deleteShows(&list);
    deleteNodes(library);
    return met ? 0 : 1;
}
