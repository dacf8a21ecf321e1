// Importing a 10,000-event iCalendar feed (parse with libical, map into a
// site's events, store in one transaction) beside libical's own parse of
// the same text in the same run. Goal: the whole import within 2x of the
// bare parse. The calendar is shaped like a busy venue's export: a
// VTIMEZONE, TZID times, folded descriptions, escaped locations, links.
#include "feed_event.h"
#include "feed_map.h"
#include "geo.h"
#include "sqlite_storage.h"

#include <libical/ical.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kEvents = 10000, kRounds = 5;
constexpr double kGoal = 2.0;

std::string venueCalendar() {
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Bench Hall//EN\r\n"
                       "X-WR-TIMEZONE:America/New_York\r\nBEGIN:VTIMEZONE\r\nTZID:America/New_York\r\n"
                       "BEGIN:DAYLIGHT\r\nTZOFFSETFROM:-0500\r\nTZOFFSETTO:-0400\r\nTZNAME:EDT\r\n"
                       "DTSTART:19700308T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\r\nEND:DAYLIGHT\r\n"
                       "BEGIN:STANDARD\r\nTZOFFSETFROM:-0400\r\nTZOFFSETTO:-0500\r\nTZNAME:EST\r\n"
                       "DTSTART:19701101T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\r\nEND:STANDARD\r\n"
                       "END:VTIMEZONE\r\n";
    for (int i = 0; i < kEvents; ++i) {
        std::string date = service::isoDateFromToday(1 + i % 360);
        date.erase(7, 1).erase(4, 1);
        const std::string n = std::to_string(i);
        text += "BEGIN:VEVENT\r\nUID:show-" + n + "@bench.example\r\nDTSTAMP:20260101T000000Z\r\n"
                "DTSTART;TZID=America/New_York:" + date + "T200000\r\n"
                "DTEND;TZID=America/New_York:" + date + "T230000\r\n"
                "SUMMARY:Band " + n + " / Support " + std::to_string(i % 97) + "\r\n"
                "LOCATION:Room " + std::to_string(i % 7) + "\\, 1 Main St\\, Boston\\, MA 02134\r\n"
                "URL:https://bench.example/shows/" + n + "\r\n"
                "DESCRIPTION:An evening with Band " + n + ". Doors at seven\\, music at eight.\r\n"
                " Tickets at the box office or online\\; all ages welcome.\r\nEND:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

template <typename Work> double bestSeconds(Work work) {
    double best = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = Clock::now();
        work();
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return best;
}

} // namespace

int main() {
    const std::string text = venueCalendar();
    char folder[] = "/tmp/stagebeacon-feed-bench-XXXXXX";
    if (!mkdtemp(folder)) return 1;
    const std::string db = std::string(folder) + "/bench.db";
    size_t imported = 0;
    double floor = 0, import = 0;
    {
        service::SqliteStorage storage(db);
        service::Catalog catalog;
        catalog.places = {{"Boston", "MA", 42.36, -71.06}};
        catalog.sites = {{1, "Bench Stages", 42.36, -71.06, 50, false}};
        storage.replaceCatalog(catalog);
        service::Feed feed;
        feed.url = "http://127.0.0.1/bench.ics";
        feed.siteId = 1;
        const int64_t feedId = storage.addFeed(feed);

        floor = bestSeconds([&] { icalcomponent_free(icalparser_parse_string(text.c_str())); });
        import = bestSeconds([&] {
            service::ParseLimits limits;
            limits.windowStart = service::isoDateFromToday(0);
            service::MapCounts counts;
            std::vector<service::Event> events = service::eventsFromFeed(
                service::parseFeed(text, "", limits), *storage.site(1), storage,
                limits.windowStart, counts);
            service::FeedOutcome outcome;
            outcome.result = "ok";
            if (!storage.replaceFeedEvents(feedId, events, outcome)) std::abort();
            imported = events.size();
        });
    }
    std::remove((db + "-wal").c_str());
    std::remove((db + "-shm").c_str());
    std::remove(db.c_str());
    rmdir(folder);

    const double ratio = import / floor;
    std::printf("feed import: %d-event iCalendar feed (%.1f MB), best of %d\n", kEvents,
                static_cast<double>(text.size()) / 1e6, kRounds);
    std::printf("  libical parse alone (floor)     %8.1f ms\n", floor * 1e3);
    std::printf("  import: parse, map, store       %8.1f ms  (%zu events)\n", import * 1e3, imported);
    std::printf("  ratio %.2f (goal <= %.1f): %s\n", ratio, kGoal, ratio <= kGoal ? "met" : "MISSED");
    return imported == static_cast<size_t>(kEvents) && ratio <= kGoal ? 0 : 1;
}
