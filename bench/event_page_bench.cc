// How fast a concert site's page is read: a generated page of 10,000 events
// against a 20,000-artist library, beside the floor of merely splitting the
// same page into lines, measured in the same run. Prints milliseconds per
// page (median of the rounds), events per second and the ratio to the floor.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "model/artist_key.h"
#include "model/linked.h"
#include "update/event_page.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string artistName(int i) { return "The Band Number " + std::to_string(i); }

// Every third event is by a library artist; a fifth of the events spread
// over several lines, as some sites write them. Sites list events in date
// order (about 27 a day over a year); `shuffled` cycles the dates instead,
// the worst case for filing.
std::string makePage(int events, bool shuffled) {
    std::string page;
    page.reserve(static_cast<size_t>(events) * 260);
    for (int i = 0; i < events; ++i) {
        int artist = (i % 3 == 0) ? (i * 7) % 20000 : 100000 + i;
        int day = shuffled ? (i % 12) * 28 + i % 28 : i * 336 / events;
        std::string date = std::to_string(1 + day / 28) + "/" + std::to_string(1 + day % 28) +
                           "/" + std::to_string(shuffled ? 2027 + i % 3 : 2027);
        std::string sep = (i % 5 == 0) ? "\n" : "";
        page += "<artist>" + artistName(artist) + "</artist>" + sep + "<artist>Opening Act " +
                std::to_string(i) + "</artist>" + sep + "<event_date>" + date + "</event_date>" +
                sep + "<venue_name>Venue " + std::to_string(i % 400) + "</venue_name>" + sep +
                "<event_url>http://127.0.0.1/e/" + std::to_string(i) + "</event_url>" + sep +
                "<venue_city>Boston</venue_city><venue_state>MA</venue_state></event>\n";
    }
    return page;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

size_t countLines(const std::string& page) {
    size_t lines = 0;
    for (size_t at = page.find('\n'); at != std::string::npos; at = page.find('\n', at + 1)) ++lines;
    return lines;
}

const int kEvents = 10000, kArtists = 20000, kRounds = 15;

// Returns the median milliseconds per page of parsing and of the floor.
void measure(const char* name, const std::string& page, XML_Artist_List& library) {
    std::vector<double> parseMs, floorMs;
    size_t filed = 0, lines = 0;
    for (int round = 0; round < kRounds; ++round) {
        auto t0 = Clock::now();
        lines += countLines(page);
        auto t1 = Clock::now();
        SHOWLIST shows, previous;
        LibraryArtistIndex index(library);
        EventFiling filing{&library, &index, &shows, &previous, false, [] { return false; }, ""};
        parseEventPage(page, filing);
        auto t2 = Clock::now();
        filed = shows.size();
        deleteShows(&shows);
        floorMs.push_back(std::chrono::duration<double, std::milli>(t1 - t0).count());
        parseMs.push_back(std::chrono::duration<double, std::milli>(t2 - t1).count());
    }
    double parse = median(parseMs), floor = median(floorMs);
    printf("%s page: %d events (%.1f MB, %zu lines), %d library artists, %zu shows filed\n", name,
           kEvents, page.size() / 1e6, lines / kRounds, kArtists, filed);
    printf("  parse and file  %8.2f ms/page  %10.0f events/s\n", parse, kEvents / parse * 1000);
    printf("  line split      %8.2f ms/page  (floor)\n", floor);
    printf("  ratio to floor  %8.1fx\n", parse / floor);
}

} // namespace

int main() {
    XML_Artist_List library;
    for (int i = 0; i < kArtists; ++i) {
        char key[kArtistKeySize];
        snprintf(key, sizeof key, "%s", artistName(i).c_str());
        cleanArtist(key);
        XMLARTIST* artist = new XMLARTIST(key);
        if (!library.add(artist)) delete artist;
    }
    printf("goal: a date-ordered page in under 50 ms\n");
    measure("date-ordered", makePage(kEvents, false), library);
    measure("shuffled", makePage(kEvents, true), library);
    deleteNodes(library);
    return 0;
}
