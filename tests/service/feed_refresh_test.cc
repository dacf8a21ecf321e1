// Feeds kept true against a loopback feed server: a refresh replaces a
// feed's events, an unchanged feed costs one 304, every kind of failure
// keeps what was imported and says why while the service goes on serving,
// two feeds listing one show serve it once, and the serving process
// refreshes due feeds in the background, a bounded number at once. The
// feeds and import-events command lines are driven as a user would.
#include "feed_refresh.h"
#include "feed_scheduler.h"
#include "loopback_server.h"
#include "service_fixture.h"

#include "geo.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <functional>

namespace service_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// A venue calendar of all-day shows `days` from today, at Origin Hall.
std::string calendar(const std::vector<std::pair<int, std::string>>& shows) {
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    for (const auto& [days, artist] : shows) {
        std::string date = service::isoDateFromToday(days);
        date.erase(7, 1).erase(4, 1);
        text += "BEGIN:VEVENT\r\nUID:" + artist + date + "\r\nDTSTART;VALUE=DATE:" + date +
                "\r\nSUMMARY:" + artist + "\r\nLOCATION:Origin Hall\\, 1 Main St\\, Origin\\, ZZ\r\n"
                "END:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

const char kLastModified[] = "Tue, 24 Nov 2026 10:00:00 GMT";

ScriptedReply withValidators(const std::string& body, const std::string& etag) {
    return ScriptedReply::status(200, "OK",
                                 "ETag: " + etag + "\r\nLast-Modified: " + kLastModified +
                                     "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n",
                                 body);
}

class FeedRefresh : public ServiceTest {
protected:
    void SetUp() override {
        ServiceTest::SetUp();
        settings_.fetch.totalSeconds = 1;
    }

    int64_t addFeed(const std::string& url, int64_t site = 1) {
        service::Feed feed;
        feed.url = url;
        feed.siteId = site;
        return storage_->addFeed(feed);
    }
    service::Feed feed(int64_t id) {
        for (const service::Feed& f : storage_->feeds())
            if (f.id == id) return f;
        ADD_FAILURE() << "no feed " << id;
        return {};
    }
    service::FeedOutcome refresh(int64_t id) {
        return service::refreshFeed(*storage_, feed(id), settings_);
    }
    // What the plug-in gets for a search around the origin.
    std::string page() { return get("/events/events.php?site=1&city=Origin&state=ZZ&radius=10"); }

    LoopbackServer feeds_;
    service::FeedSettings settings_;
};

TEST_F(FeedRefresh, EachGoodRefreshReplacesTheEventsAndAnUnchangedFeedCostsOne304) {
    const int64_t id = addFeed(feeds_.url("/club.ics"));
    feeds_.onPath("/club.ics", withValidators(calendar({{1, "Alpha"}, {2, "Bravo"}, {-3, "Gone"}}), "\"v1\""));
    EXPECT_EQ(refresh(id).result, "ok");
    EXPECT_EQ(feed(id).eventCount, 2); // the past show is not imported
    EXPECT_THAT(page(), AllOf(HasSubstr("<artist>Alpha</artist>"), HasSubstr("<artist>Bravo</artist>"),
                              Not(HasSubstr("Gone"))));

    feeds_.onPath("/club.ics", ScriptedReply::status(304, "Not Modified", "Content-Length: 0\r\n"));
    EXPECT_EQ(refresh(id).result, "unchanged");
    const RecordedRequest asked = feeds_.requests().back();
    std::string etag, since, agent;
    ASSERT_TRUE(asked.header("If-None-Match", &etag) && asked.header("If-Modified-Since", &since));
    EXPECT_EQ(etag, "\"v1\"");
    EXPECT_EQ(since, kLastModified);
    ASSERT_TRUE(asked.header("User-Agent", &agent));
    EXPECT_THAT(agent, HasSubstr("stagebeacon-service"));
    EXPECT_EQ(feed(id).eventCount, 2);

    feeds_.onPath("/club.ics", withValidators(calendar({{2, "Bravo"}, {4, "Delta"}}), "\"v2\""));
    EXPECT_EQ(refresh(id).result, "ok");
    EXPECT_THAT(page(), AllOf(Not(HasSubstr("Alpha")), HasSubstr("Bravo"), HasSubstr("Delta")));
    EXPECT_EQ(feed(id).etag, "\"v2\"");
    EXPECT_EQ(feed(id).lastError, "");
}

std::string garbage(size_t size) {
    std::string bytes(size, '\0');
    uint32_t state = 12345;
    for (char& c : bytes) c = static_cast<char>((state = state * 1103515245 + 12345) >> 24);
    return bytes;
}

std::string millionEvents() {
    std::string csv = "date,artist\n";
    csv.reserve(14u << 20);
    for (int i = 0; i < 1000000; ++i) csv += "2030-01-01,A\n";
    return csv;
}

TEST_F(FeedRefresh, EveryFailureKeepsTheImportedEventsAndRecordsWhy) {
    const struct {
        const char* fault;
        std::function<ScriptedReply()> reply; // null: nothing listens
        const char* error;
    } cases[] = {
        {"a 50 MB feed", [] { return ScriptedReply::ok(std::string(50u << 20, 'x')); },
         "larger than the limit of 33554432 bytes"},
        {"50 MB without a length",
         [] { return ScriptedReply::status(200, "OK", "Connection: close\r\n", std::string(50u << 20, 'x')); },
         "larger than the limit"},
        {"binary garbage", [] { return ScriptedReply::ok(garbage(4096)); }, "binary data"},
        {"a million events", [] { return ScriptedReply::ok(millionEvents()); },
         "more than 100000 events"},
        {"a redirect loop", [] { return ScriptedReply::redirect(302, "/club.ics"); },
         "more than 5 redirects"},
        {"a slow server",
         [] {
             ScriptedReply slow = ScriptedReply::ok(calendar({{1, "Late"}}));
             slow.delayBeforeHeadMs = 3000;
             return slow;
         },
         "no complete reply within 1 s"},
        {"a server error", [] { return ScriptedReply::status(500, "Oops", "Content-Length: 0\r\n"); },
         "HTTP 500"},
        {"a parse error",
         [] { return ScriptedReply::ok("<html><script type=\"application/ld+json\">{</script>"); },
         "not valid JSON"},
        {"an empty reply", [] { return ScriptedReply::ok("BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"); },
         "came back without events; keeping the 2"},
        {"a cut download",
         [] {
             ScriptedReply cut = ScriptedReply::ok(calendar({{1, "Alpha"}}));
             cut.bodyBytesBeforeClose = 40;
             return cut;
         },
         "transfer closed"},
        {"no server", nullptr, "connect"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fault);
        LoopbackServer server; // its own, so a slow reply holds up no other case
        const int64_t id = addFeed(server.url("/club.ics"));
        server.onPath("/club.ics", ScriptedReply::ok(calendar({{1, "Alpha"}, {2, "Bravo"}})));
        ASSERT_EQ(refresh(id).result, "ok");
        if (c.reply) server.onPath("/club.ics", c.reply());
        else server.stop();

        const auto started = std::chrono::steady_clock::now();
        service::FeedOutcome outcome = refresh(id);
        EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(3));
        EXPECT_EQ(outcome.result, "failed");
        EXPECT_THAT(feed(id).lastError, HasSubstr(c.error));
        EXPECT_EQ(feed(id).lastResult, "failed");
        EXPECT_EQ(feed(id).eventCount, 2);
        EXPECT_THAT(page(), AllOf(HasSubstr("<artist>Alpha</artist>"), HasSubstr("<artist>Bravo</artist>")));
        ASSERT_TRUE(storage_->removeFeed(id));
    }
}

TEST_F(FeedRefresh, TheSameShowFromTwoFeedsIsServedOnceAndSurvivesEitherFeed) {
    const int64_t club = addFeed(feeds_.url("/club.ics"));
    const int64_t promoter = addFeed(feeds_.url("/promoter.csv"));
    feeds_.onPath("/club.ics", ScriptedReply::ok(calendar({{3, "Alpha / Opener"}})));
    const std::string date = service::isoDateFromToday(3);
    feeds_.onPath("/promoter.csv", ScriptedReply::ok("Date,Artist,Venue,City,State\n" + date +
                                                     ",ALPHA,origin hall,Origin,ZZ\n"));
    ASSERT_EQ(refresh(club).result, "ok");
    ASSERT_EQ(refresh(promoter).result, "ok");
    std::string listed = page();
    EXPECT_EQ(listed.find("lpha</artist>"), listed.rfind("lpha</artist>")) << listed;
    EXPECT_THAT(listed, HasSubstr("<artist>Opener</artist>"));
    ASSERT_TRUE(storage_->removeFeed(club));
    EXPECT_THAT(page(), AllOf(HasSubstr("<artist>ALPHA</artist>"), Not(HasSubstr("Opener"))));
}

TEST_F(FeedRefresh, TheSchedulerRefreshesDueFeedsAFewAtOnceAndPrunesPastEvents) {
    // Three feeds on servers of their own, each taking a second to answer;
    // two workers: the third is asked only once one of the first is done.
    std::vector<std::unique_ptr<LoopbackServer>> servers;
    for (int i = 0; i < 3; ++i) {
        servers.push_back(std::make_unique<LoopbackServer>());
        ScriptedReply reply = ScriptedReply::ok(calendar({{i + 1, "Band " + std::to_string(i)}}));
        reply.delayBeforeHeadMs = 1000;
        servers.back()->onPath("/feed.ics", reply);
        ASSERT_GT(addFeed(servers.back()->url("/feed.ics")), 0);
    }
    settings_.workers = 2;
    settings_.fetch.totalSeconds = 10;
    service::FeedScheduler scheduler(*storage_, settings_, std::chrono::milliseconds(50));
    scheduler.start();
    auto asked = [&servers] {
        size_t count = 0;
        for (const auto& server : servers) count += server->requestCount();
        return count;
    };
    for (int waited = 0; asked() < 2 && waited < 5000; waited += 5)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(asked(), 2u);
    // Replies go on meanwhile.
    EXPECT_THAT(page(), HasSubstr("Near Band"));
    for (int waited = 0; scheduler.passes() < 3 && waited < 10000; waited += 10)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    scheduler.stop();
    EXPECT_EQ(asked(), 3u); // refreshed feeds are not due again for hours
    for (const service::Feed& f : storage_->feeds()) EXPECT_EQ(f.lastResult, "ok") << f.url;
    const std::string listed = page();
    EXPECT_THAT(listed, AllOf(HasSubstr("Band 0"), HasSubstr("Band 1"), HasSubstr("Band 2")));
    EXPECT_EQ(storage_->siteEvents(1, "0000-01-01", -90, 90, -180, 180).size(),
              storage_->siteEvents(1, service::isoDateFromToday(0), -90, 90, -180, 180).size());
}

TEST_F(FeedRefresh, StoppingTheSchedulerEndsATransferUnderWay) {
    ScriptedReply stuck = ScriptedReply::ok(calendar({{1, "Alpha"}}));
    stuck.delayBeforeHeadMs = 20000;
    feeds_.onPath("/stuck.ics", stuck);
    addFeed(feeds_.url("/stuck.ics"));
    settings_.fetch.totalSeconds = 30;
    service::FeedScheduler scheduler(*storage_, settings_, std::chrono::milliseconds(50));
    scheduler.start();
    ASSERT_TRUE(feeds_.waitForRequests(1, 5000));
    const auto started = std::chrono::steady_clock::now();
    scheduler.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(3));
}

// The command line, run as a user runs it.
std::string run(const std::string& arguments, int* status) {
    const std::string command = std::string(STAGEBEACON_SERVICE_BINARY) + " " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    char buffer[512];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
    const int raw = pipe ? pclose(pipe) : -1;
    *status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return output;
}

TEST_F(FeedRefresh, TheFeedsCommandAddsListsRefreshesAndRemoves) {
    feeds_.onPath("/club.ics", ScriptedReply::ok(calendar({{1, "Alpha"}, {2, "Bravo"}})));
    const std::string db = " --db " + dbPath();
    const struct {
        std::string arguments;
        int status;
        std::string output;
    } steps[] = {
        {"feeds add " + feeds_.url("/club.ics") + " --site 9", 1, "there is no site 9"},
        {"feeds add " + feeds_.url("/club.ics") + " --site 1 --every 1s", 2, "a minute or more"},
        {"feeds add ftp://example/x.ics --site 1", 2, "http:// or https://"},
        {"feeds add " + feeds_.url("/club.ics") + " --site 1 --every 2h --format ics", 0,
         "added feed 1 for site 1, refreshed every 2h"},
        {"feeds list", 0, "never"},
        {"feeds refresh", 0, "feed 1: ok, 2 events"},
        {"feeds list", 0, "ok               2  " + feeds_.url("/club.ics")},
        {"feeds refresh 7", 1, "there is no feed 7"},
        {"feeds remove 1", 0, "removed feed 1 and its events"},
        {"feeds remove 1", 1, "there is no feed 1"},
        // A calendar file takes the same road once.
        {"import-events " STAGEBEACON_TEST_ASSETS "/feeds/venue_calendar.ics --site 1", 0,
         "imported 5 events into site 1, skipped 0"},
        {"import-events " STAGEBEACON_TEST_ASSETS "/feeds/promoter_page.html --site 1", 1,
         "no BEGIN:VCALENDAR"},
    };
    for (const auto& step : steps) {
        int status = -1;
        const std::string output = run(step.arguments + db, &status);
        EXPECT_EQ(status, step.status) << step.arguments << "\n" << output;
        EXPECT_THAT(output, HasSubstr(step.output)) << step.arguments;
    }
    EXPECT_THAT(page(), AllOf(Not(HasSubstr("Alpha")), HasSubstr("<artist>Kraftwerk</artist>")));
}

} // namespace
} // namespace service_test
