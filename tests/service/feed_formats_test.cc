// Feeds read into a site's events: the hand-written venue calendar, promoter
// page and CSV export (each a table of the shows it must give), the summary
// forms and text cleaning, refused input, and the real-world feeds of
// ../shared/fixtures/feeds where they fit.
#include "feed_event.h"
#include "feed_map.h"
#include "service_fixture.h"

#include "csv.h"
#include "text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace service_test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

const std::string kAssets = STAGEBEACON_TEST_ASSETS "/feeds/";
const std::string kFixtures = STAGEBEACON_SOURCE_DIR "/../shared/fixtures/feeds/";

class FeedFormats : public ::testing::Test {
protected:
    void SetUp() override {
        storage_ = std::make_unique<service::SqliteStorage>(folder_.path() + "/feeds.db");
        service::Catalog catalog;
        catalog.places = {{"Boston", "MA", 42.36, -71.06}, {"Cambridge", "MA", 42.37, -71.11}};
        catalog.sites = {site_};
        storage_->replaceCatalog(catalog);
    }

    // One line per show, sorted: "date time|artist+artist|venue|address|city,state|
    // url|ticket|availability|lat,lon".
    std::vector<std::string> shows(const std::string& body, const std::string& window = "2030-01-01") {
        service::ParseLimits limits;
        limits.windowStart = window;
        service::MapCounts counts;
        std::vector<std::string> lines;
        for (const service::Event& e : service::eventsFromFeed(
                 service::parseFeed(body, "", limits), site_, *storage_, window, counts)) {
            char where[64];
            std::snprintf(where, sizeof where, "%.2f,%.2f", e.latitude, e.longitude);
            lines.push_back(e.date + " " + e.time + "|" + service::join(e.artists, "+") + "|" +
                            e.venue + "|" + e.address + "|" + e.city + "," + e.state + "|" + e.url +
                            "|" + e.ticketUrl + "|" + e.availability + "|" + where);
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    TempFolder folder_;
    std::unique_ptr<service::SqliteStorage> storage_;
    service::Site site_{1, "Boston Stages", 42.0, -71.0, 50, true};
};

struct AssetCase {
    const char* file;
    std::vector<std::string> shows;
};

TEST_F(FeedFormats, HandWrittenFeedsGiveEveryShowWithItsPlaceTimeAndLinks) {
    const std::string club = "|Paradise Rock Club|967 Commonwealth Ave|Boston,MA|";
    const std::string lounge = "|Open Mic Night|Paradise Lounge|969 Commonwealth Ave|Boston,MA|||";
    const AssetCase cases[] = {
        // TZID wall times as written, UTC moved into the calendar's zone, an
        // all-day date, folded and escaped text, a weekly rule with an EXDATE
        // and a moved instance, a cancelled show left out, GEO kept.
        {"venue_calendar.ics",
         {"2030-01-01 19:00" + lounge + "|42.36,-71.06", "2030-01-08 19:00" + lounge + "|42.36,-71.06",
          "2030-01-23 19:00" + lounge + "|42.36,-71.06", "2030-01-29 19:00" + lounge + "|42.36,-71.06",
          "2030-02-05 19:00" + lounge + "|42.36,-71.06",
          "2030-03-15 20:00|Kraftwerk" + club + "https://paradiserockclub.example/events/1001|||42.36,-71.06",
          "2030-04-01 20:30|Wilco+Arcade Fire" + club +
              "https://paradiserockclub.example/events/1002|||42.36,-71.06",
          "2030-05-10 |Norah Jones; late show" + club + "|||42.36,-71.06",
          "2030-07-04 21:00|Sigur Rós|Harbor Stage||,|https://paradiserockclub.example/events/1005|||42.35,-71.05"}},
        // An @graph of MusicEvents: performers of both kinds, a PostalAddress,
        // entities decoded, the first offer's link and availability, a
        // cancelled show and a broken script block left out.
        {"promoter_page.html",
         {"2030-06-01 20:00|Radiohead+Thom Yorke|House of Blues|15 Lansdowne St|Boston,MA|"
          "https://northside.example/shows/radiohead-2030|https://tickets.example/e/88121|InStock|42.35,-71.10",
          "2030-06-12 |Simon & Garfunkel|Orpheum Theatre||Boston,MA|https://tickets.example/e/88190|"
          "https://tickets.example/e/88190|SoldOut|42.36,-71.06",
          "2030-07-20 19:30|Coldplay+The Beatles|Fenway Park|4 Jersey St|Boston,MA|||"
          "|42.36,-71.06"}},
        // Named columns, two date forms, 12-hour times, quoted commas, a
        // Latin-1 byte made UTF-8, an unreadable date skipped.
        {"export.csv",
         {"2030-07-04 19:30|Miles Davis Quintet+Norah Jones|Hatch Shell, Esplanade|47 David G Mugar Way|"
          "Boston,MA|https://tickets.example/e/1|https://tickets.example/e/1|InStock|42.36,-71.06",
          "2030-07-05 21:00|Late night, \"unplugged\"|The Sinclair|52 Church St|Cambridge,MA|||"
          "|42.37,-71.11",
          "2030-07-06 20:00|Beyoncé|Gillette Stadium||Foxborough,MA|https://tickets.example/e/3|"
          "https://tickets.example/e/3|SoldOut|42.00,-71.00"}},
    };
    for (const AssetCase& c : cases) {
        SCOPED_TRACE(c.file);
        EXPECT_THAT(shows(service::readFile(kAssets + c.file)), ElementsAreArray(c.shows));
    }
}

TEST_F(FeedFormats, RecurringEventsGiveTheirInstancesWithinAYearOnly) {
    // A monthly first Friday from long ago: only the coming year's instances.
    const std::string calendar = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:m\r\nSUMMARY:Monthly\r\n"
                                 "DTSTART:20200103T200000\r\nRRULE:FREQ=MONTHLY;BYDAY=1FR\r\n"
                                 "END:VEVENT\r\nEND:VCALENDAR\r\n";
    std::vector<std::string> lines = shows(calendar, "2030-01-01");
    EXPECT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines.front().substr(0, 16), "2030-01-04 20:00");
    EXPECT_EQ(lines.back().substr(0, 10), "2030-12-06");
}

TEST(FeedText, SummariesNameTheirArtistsAndTextIsCleanUtf8) {
    struct SummaryCase {
        const char* summary;
        std::vector<std::string> artists;
        const char* venue;
    };
    const SummaryCase summaries[] = {
        {"Beck at The Sinclair", {"Beck"}, "The Sinclair"},
        {"Live at Leeds at Town Hall", {"Live at Leeds"}, "Town Hall"},
        {"Wilco / Arcade Fire / Beck", {"Wilco", "Arcade Fire", "Beck"}, ""},
        {"Kraftwerk", {"Kraftwerk"}, ""},
    };
    for (const SummaryCase& c : summaries) {
        std::string venue;
        EXPECT_EQ(service::performersFromSummary(c.summary, &venue), c.artists) << c.summary;
        EXPECT_EQ(venue, c.venue) << c.summary;
    }
    const std::pair<std::string, std::string> texts[] = {
        {"  Sigur\tR\xf3s \r\n live ", "Sigur Rós live"},          // Latin-1, controls, blanks
        {"Simon &amp; Garfunkel &#8211; &#x263A;", "Simon & Garfunkel – ☺"},
        {"M\xc3\xb6tley \xe2\x82", "Mötley â\xc2\x82"},            // a cut sequence read as Latin-1
        {"&bogus; & &#0;", "&bogus; & \xef\xbf\xbd"},
    };
    for (const auto& [raw, clean] : texts) EXPECT_EQ(service::cleanText(raw), clean) << raw;
    // Long texts end on a whole character.
    std::string longText(service::kMaxFieldBytes - 1, 'a');
    longText += "é";
    EXPECT_EQ(service::cleanText(longText), std::string(service::kMaxFieldBytes - 1, 'a'));
}

TEST(FeedParse, RefusedInputSaysWhatIsWrong) {
    service::ParseLimits limits;
    limits.maxEvents = 3;
    limits.windowStart = "2030-01-01";
    std::string fourRows = "date,artist\n";
    for (int i = 0; i < 4; ++i) fourRows += "2030-01-0" + std::to_string(i + 1) + ",A\n";
    const struct {
        std::string body;
        const char* format;
        const char* error;
    } cases[] = {
        {std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), "", "binary data"},
        {"BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:A\r\n", "", "cut short"},
        {"BEGIN:VEVENT\r\nEND:VEVENT\r\n", "ics", "no BEGIN:VCALENDAR"},
        {"<html><script type=\"application/ld+json\">{\"@type\": </script></html>", "",
         "script block 1 is not valid JSON"},
        {"<html><body>no data here</body></html>", "jsonld", "no application/ld+json"},
        {"when,who\n2030-01-01,A\n", "", "no date column"},
        {"date,venue\n2030-01-01,Hall\n", "csv", "no artist or event name column"},
        {fourRows, "", "more than 3 events"},
        {"   \r\n", "", "empty"},
        {"x", "xml", "unknown feed format"},
    };
    for (const auto& c : cases) {
        try {
            (void)service::parseFeed(c.body, c.format, limits);
            ADD_FAILURE() << "accepted: " << c.body.substr(0, 40);
        } catch (const service::FeedError& error) {
            EXPECT_THAT(error.what(), HasSubstr(c.error));
        }
    }
}

// Real feeds other software wrote: how many events each gives within a
// window starting on the date named (its own year), or the error it gives.
TEST(FeedFixtures, RealWorldFeedsGiveTheirEvents) {
    if (!std::filesystem::is_directory(kFixtures))
        GTEST_SKIP() << "no real-world feeds at " << kFixtures << " (../shared/fixtures absent)";
    const struct {
        const char* file;
        const char* window;
        size_t events; // when no error
        const char* error;
    } cases[] = {
        {"zimbra_recur_instances.ics", "2012-10-01", 12, nullptr}, // RDATE, EXDATE, two moved
        {"outlook_music_school_quoted_tzid.ics", "2022-10-01", 9, nullptr},
        {"google_x_wr_timezone_new_york.ics", "2021-01-01", 2, nullptr},
        {"mozilla_two_vcalendars_folded_names.ics", "2003-01-01", 2, nullptr},
        {"sabredav_utf8_emoji_trimmed.ics", "2020-01-01", 2, nullptr},
        {"bom_crlf_empty_calendar.ics", "2000-01-01", 0, nullptr},
        {"truncated_no_end_vcalendar.ics", "2000-01-01", 0, "cut short"},
        {"schemaorg_eg0201_musicevent_toplevel_array.html", "2014-01-01", 2, nullptr},
        {"schemaorg_eg0171_event_cancelled.html", "2000-01-01", 0, nullptr},
        {"extruct_null_and_escaped_jsonld.html", "2000-01-01", 0, nullptr},
        {"songkick_tovestyrke_artist.html", "2017-01-01", 1, nullptr},
        {"tec_events_import.csv", "2014-01-01", 4, nullptr}, // rows longer than the header
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        service::ParseLimits limits;
        limits.windowStart = c.window;
        try {
            std::vector<service::FeedEvent> events =
                service::parseFeed(service::readFile(kFixtures + c.file), "", limits);
            EXPECT_EQ(c.error, nullptr);
            EXPECT_EQ(events.size(), c.events);
        } catch (const service::FeedError& error) {
            ASSERT_NE(c.error, nullptr) << error.what();
            EXPECT_THAT(error.what(), HasSubstr(c.error));
        }
    }
}

} // namespace
} // namespace service_test
