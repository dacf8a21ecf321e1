// Sources that fail never cost shows: a concert site, the site list, the
// release feed refusing, hanging, hanging up or answering garbage. The shows
// of the last good list stay, the status line says so, and the file on disk
// keeps the last good list. Also: a stop ends a download at once.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "temp_home.h"
#include "update_engine_fixture.h"

namespace {

using namespace std::chrono_literals;

// How a peer fails.
enum class Failure { Refuse, Hang, HangUp, Garbage };

// Makes `server` fail at `target` the given way.
void failAt(LoopbackServer& server, const std::string& target, Failure failure) {
    ScriptedReply reply;
    switch (failure) {
    case Failure::Refuse:
        server.stop();
        return;
    case Failure::Hang:
        reply = ScriptedReply::ok("");
        reply.delayBeforeHeadMs = 1500; // past the 1 s time-out; then the peer is free again
        break;
    case Failure::HangUp:
        reply.bodyBytesBeforeClose = 0; // closes without a byte
        break;
    case Failure::Garbage:
        reply.head = "\x01\x02 no status line here\r\n\r\n";
        reply.body = "<event>";
        break;
    }
    server.onPath(target, reply);
}

class FailedSources : public UpdateEngine {
  protected:
    // Site one lives on its own server, so that it can refuse alone.
    LoopbackServer siteOne;
    TempHome home;
    std::string pref;

    void SetUp() override {
        UpdateEngine::SetUp();
        app->calGetData.fetchTimeout = 1;
        siteOne.onPath("/one", ScriptedReply::ok(event("Wilco", "8/9/2027") +
                                                 event("Spoon", "3/1/2027")));
        server.onPath("/datasources/datasources.php",
                      ScriptedReply::ok("<site>" + siteOne.url("/one?site=1") + "</site>\n<site>" +
                                        server.url("/two?site=2") + "</site>\n"));
        pref = home.path() + "/StagebeaconPref";
        store().setStagebeaconPref(pref.c_str());
        app->calGetData.performUpdate(CalGetData::kTaskConcerts);
        ASSERT_EQ(shows(), (std::vector<std::string>{"Spoon 3/1", "Beatles 3/1", "Wilco 8/9"}));
        markLastGood();
        // Site two has news this time.
        server.onPath("/two", ScriptedReply::ok(event("Beirut", "1/1/2028")));
    }
    // The last good list's date, as saved, and a file to tell a save by.
    void markLastGood() {
        store().setLastSearch_m(11);
        store().setLastSearch_d(22);
        store().setLastSearch_y(2026);
        writeText(pref, "the last good list\n");
    }
    std::string note() {
        char text[ProtectedData::SourceNoteSize];
        store().getSourceNote(text);
        return text;
    }
};

TEST_F(FailedSources, FailedSiteKeepsItsShowsAndSaysSo) {
    for (Failure failure : {Failure::HangUp, Failure::Garbage, Failure::Hang, Failure::Refuse}) {
        SCOPED_TRACE(static_cast<int>(failure));
        failAt(siteOne, "/one", failure);
        app->calGetData.performUpdate(CalGetData::kTaskConcerts);
        // Site one's shows from the last good list, site two's fresh one.
        EXPECT_EQ(shows(), (std::vector<std::string>{"Spoon 3/1", "Wilco 8/9", "Beirut 1/1"}));
        EXPECT_EQ(note(), "1 of 2 concert sites did not answer; their shows are from 11/22/2026");
        EXPECT_EQ(readText(pref), "the last good list\n");
    }
}

TEST_F(FailedSources, UnreachableServiceKeepsTheWholeList) {
    app->concerts.current()->head->attending = true; // Spoon, marked
    LoopbackServer closed;
    std::string url = closed.url("");
    closed.stop();
    setenv("STAGEBEACON_SERVICE", url.c_str(), 1);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Spoon 3/1", "Beatles 3/1", "Wilco 8/9"}));
    EXPECT_TRUE(app->concerts.current()->head->attending);
    EXPECT_EQ(note(), "The concert service did not answer; the shows are from 11/22/2026");
    EXPECT_EQ(readText(pref), "the last good list\n");

    // The next update reaches every source again: the note goes, the file is saved.
    setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(note(), "");
    EXPECT_NE(readText(pref).find("Beirut"), std::string::npos);
}

TEST_F(FailedSources, FailedReleaseFeedKeepsItsReleases) {
    server.onPath("/CDReleases/data/cdReleasesData_0.html",
                  ScriptedReply::ok("<D>2027-05-04</D><A>Spoon</A><T>New</T><F>Live@@</F><L>B01</L>\n"));
    for (int page = 1; page < 10; ++page)
        server.onPath("/CDReleases/data/cdReleasesData_" + std::to_string(page) + ".html",
                      ScriptedReply::ok(""));
    app->calGetData.performUpdate(CalGetData::kTaskAlbums);
    ASSERT_EQ(app->albums.current()->size(), 1u);
    markLastGood();
    failAt(server, "/CDReleases/data/cdReleasesData_0.html", Failure::Garbage);
    app->calGetData.performUpdate(CalGetData::kTaskAlbums);
    ASSERT_EQ(app->albums.current()->size(), 1u);
    EXPECT_STREQ(app->albums.current()->head->venue, "New");
    EXPECT_EQ(note(), "The album release list did not answer; its releases are from 11/22/2026");
    EXPECT_EQ(readText(pref), "the last good list\n");
}

// A stop ends the update thread at once wherever its download waits: for
// the reply's head or in the middle of its body.
TEST_F(FailedSources, StopEndsAHangingDownloadAtOnce) {
    app->calGetData.fetchTimeout = 60;
    for (bool inBody : {false, true}) {
        SCOPED_TRACE(inBody ? "body" : "head");
        LoopbackServer site;
        ScriptedReply hanging = ScriptedReply::ok(event("Beirut", "1/1/2028"));
        (inBody ? hanging.delayBeforeBodyMs : hanging.delayBeforeHeadMs) = 30000;
        site.onPath("/hang", hanging);
        server.onPath("/datasources/datasources.php",
                      ScriptedReply::ok("<site>" + site.url("/hang?x") + "</site>\n"));
        app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
        ASSERT_TRUE(site.waitForRequests(1, 5000));
        std::this_thread::sleep_for(50ms); // inside the wait
        auto start = std::chrono::steady_clock::now();
        app->calGetData.shutDown();
        // The goal is 100 ms (bench/stop_latency_bench); sanitizer builds get room.
        EXPECT_LT(std::chrono::steady_clock::now() - start, 1000ms);
        EXPECT_FALSE(app->calGetData.updateStarted());
        store().setShutingDown(false);
    }
}

} // namespace
