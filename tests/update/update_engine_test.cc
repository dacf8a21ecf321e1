// The update engine against a loopback service and two concert sites: what
// a search files, what it sends, and how it behaves when sites fail, hang or
// a stop arrives. Run under TSan too (make check-tsan).
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "temp_home.h"
#include "update_engine_fixture.h"

namespace {

using namespace std::chrono_literals;

TEST_F(UpdateEngine, ConcertSearchFilesLibraryShowsInDateOrder) {
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Spoon 3/1", "Beatles 3/1", "Wilco 8/9"}));
    ShowListRef list = app->concerts.current();
    EXPECT_TRUE(list->head->ticketsAvailable);         // from the ticket=1 site
    EXPECT_FALSE(list->head->next->ticketsAvailable);  // the other site
    EXPECT_STREQ(list->tail->venue, "Paradise");       // the same show from site two merged
    EXPECT_EQ(store().getUpdatingProgress(), 100.0);
    EXPECT_FALSE(store().getUpdatingConcerts());
    EXPECT_TRUE(store().getValid_internet_connection());

    char text[256];
    store().getCurCity(text);
    EXPECT_STREQ(text, "boston"); // committed as typed; cleaned only in requests
    EXPECT_EQ(store().getCurSearchRadius(), 50);
    EXPECT_NEAR(store().getCurLat(), 42.36, 1e-4);
}

TEST_F(UpdateEngine, RequestsCarryTheLocationInEachForm) {
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    std::vector<std::string> sent = targets();
    ASSERT_EQ(sent.size(), 4u);
    EXPECT_EQ(sent[0], "/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Boston&STATE=MA");
    EXPECT_EQ(sent[1], "/datasources/datasources.php?TODO=GETSITES&CITY=Boston&STATE=MA"
                       "&RADIUS=50&VERSION=2.9");
    EXPECT_EQ(sent[2], "/one?site=1&city=Boston&state=MA&radius=50");
    EXPECT_EQ(sent[3], "/two?site=2&city=Boston&state=MA&radius=50");
}

TEST_F(UpdateEngine, SiteRegionCodesDifferFromTheCoordinateLookup) {
    store().setCurCityDisplay("  saint   john ");
    store().setCurStateDisplay("New Brunswick");
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    std::vector<std::string> sent = targets();
    ASSERT_EQ(sent.size(), 3u); // the coordinate lookup knows no New Brunswick: no request
    EXPECT_EQ(sent[0], "/datasources/datasources.php?TODO=GETSITES&CITY=Saint+John&STATE=NB"
                       "&RADIUS=50&VERSION=2.9");
}

TEST_F(UpdateEngine, MarksCarryOverToTheNextSearch) {
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    std::weak_ptr<SHOWLIST> first = app->concerts.current();
    app->concerts.current()->tail->attending = true; // Wilco, marked by a click
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_TRUE(app->concerts.current()->tail->attending);
    EXPECT_FALSE(app->concerts.current()->head->attending);
    EXPECT_EQ(app->concerts.previous(), first.lock());
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_TRUE(first.expired()) << "a generation two searches old is released";
}

TEST_F(UpdateEngine, SettingsAreSavedOnlyAfterEveryDownloadWorked) {
    TempHome home;
    std::string pref = home.path() + "/StagebeaconPref";
    store().setStagebeaconPref(pref.c_str());
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    ASSERT_TRUE(exists(pref));
    std::string saved = readText(pref);
    EXPECT_NE(saved.find("Spoon"), std::string::npos);

    server.onPath("/two", ScriptedReply::status(500, "Internal Server Error"));
    server.onPath("/one", ScriptedReply::ok(event("Beirut", "1/1/2028")));
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_FALSE(store().getValid_internet_connection());
    EXPECT_EQ(readText(pref), saved);

    // A stopped task ends the run before the save, too.
    server.onPath("/two", ScriptedReply::ok(event("Beirut", "1/1/2028")));
    slowSiteOne(300);
    size_t siteOneRequested = server.requestCount() + 3;
    std::thread stopper([this, siteOneRequested] {
        server.waitForRequests(siteOneRequested, 5000);
        store().setForceUpdate(true);
    });
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    stopper.join();
    EXPECT_EQ(readText(pref), saved);
}

TEST_F(UpdateEngine, NoSitesGivesFullProgressAndNoSiteRequest) {
    server.onPath("/datasources/datasources.php", ScriptedReply::ok("<NOSITE/>"));
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(store().getUpdatingProgress(), 100.0);
    EXPECT_EQ(server.requestCount(), 2u);
    EXPECT_TRUE(shows().empty());
}

TEST_F(UpdateEngine, HangingSiteTimesOut) {
    slowSiteOne(4000);
    app->calGetData.fetchTimeout = 1;
    auto start = std::chrono::steady_clock::now();
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 3500ms);
    EXPECT_FALSE(store().getValid_internet_connection());
    EXPECT_TRUE(shows().empty());
}

// The client reads to the close whatever the announced length, so a page
// cut short is read as far as it came; its last, partial line is ignored.
TEST_F(UpdateEngine, SiteClosingMidPageFilesWhatArrived) {
    std::string first = event("Beirut", "1/1/2028");
    ScriptedReply cut = ScriptedReply::ok(first + event("Spoon", "1/2/2028"));
    cut.bodyBytesBeforeClose = first.size() + 30;
    server.onPath("/one", cut);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_TRUE(store().getValid_internet_connection());
    EXPECT_EQ(shows(), (std::vector<std::string>{"Beatles 3/1", "wilco 8/9", "Beirut 1/1"}));
}

TEST_F(UpdateEngine, StopMidSiteEndsTheRunAndSkipsLaterTasks) {
    slowSiteOne(300);
    std::thread stopper([this] {
        server.waitForRequests(3, 5000);
        store().setForceUpdate(true);
    });
    app->calGetData.performUpdate(CalGetData::kTaskConcerts | CalGetData::kTaskAlbums);
    stopper.join();
    EXPECT_FALSE(store().getUpdatingConcerts());
    for (const std::string& t : targets()) {
        EXPECT_EQ(t.find("/two"), std::string::npos) << t;
        EXPECT_EQ(t.find("CDReleases"), std::string::npos) << t;
    }
}

TEST_F(UpdateEngine, AlbumPagesFailingOneByOneStillFinish) {
    store().setCurCity("new   york");
    store().setCurState("New York");
    server.onPath("/CDReleases/data/cdReleasesData_3.html",
                  ScriptedReply::ok("<D>2027-05-04</D><A>Spoon</A><T>New</T><F>Live@@</F><L>B01</L>\n"));
    app->calGetData.performUpdate(CalGetData::kTaskAlbums);
    EXPECT_EQ(store().getUpdatingProgress(), 100.0);
    EXPECT_FALSE(store().getUpdatingAlbums());
    EXPECT_FALSE(store().getValid_internet_connection()); // nine pages were missing
    ShowListRef releases = app->albums.current();
    ASSERT_EQ(releases->size(), 1u);
    EXPECT_STREQ(releases->head->venue, "New");
    EXPECT_EQ(std::string(releases->head->url).find(server.url("/CDReleases/cdreleaseclickthrough.php"
                                                               "?ASIN=B01&CITY=New+York&STATE=NY")),
              0u);
    EXPECT_EQ(server.requestCount(), 10u);
}

TEST_F(UpdateEngine, SuggestionWithUnchangedLocationStartsNothing) {
    store().setCurCity("Boston");
    store().setCurState("MA");
    store().setCurSearchRadius(50);
    store().setCurSearchRadiusDisplay("050");
    app->calGetData.nextRefresh = 0;
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, false);
    EXPECT_FALSE(app->calGetData.updateStarted());
    app->calGetData.nextRefresh = static_cast<int32_t>(time(nullptr)) + 1000;
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, false);
    EXPECT_FALSE(app->calGetData.updateStarted());
}

TEST_F(UpdateEngine, DueRefreshStartsAnUpdateAndMovesTheDeadline) {
    store().setCurCity("Boston");
    store().setCurState("MA");
    store().setCurSearchRadius(50);
    int32_t now = static_cast<int32_t>(time(nullptr));
    app->calGetData.nextRefresh = now - 10;
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, false);
    EXPECT_TRUE(app->calGetData.updateStarted());
    EXPECT_GE(app->calGetData.nextRefresh, now + CalGetData::kRefreshInterval);
    waitForUpdate();
    EXPECT_EQ(shows().size(), 3u);
}

TEST_F(UpdateEngine, NewSuggestionStopsAndRestartsARunningSearch) {
    slowSiteOne(400);
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
    ASSERT_TRUE(server.waitForRequests(3, 5000));
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
    EXPECT_FALSE(store().getRestartingSearch());
    waitForUpdate();
    // The first run stopped after its slow site; the second one ran to the end.
    EXPECT_EQ(shows(), (std::vector<std::string>{"Beatles 3/1", "wilco 8/9", "Beirut 1/1"}));
    std::vector<std::string> sent = targets();
    EXPECT_EQ(sent.size(), 7u);
    EXPECT_EQ(std::count_if(sent.begin(), sent.end(),
                            [](const std::string& t) { return t.rfind("/two", 0) == 0; }),
              1);
}

TEST_F(UpdateEngine, ShutdownDuringADownloadJoinsPromptly) {
    slowSiteOne(500);
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
    ASSERT_TRUE(server.waitForRequests(3, 5000));
    auto start = std::chrono::steady_clock::now();
    app->calGetData.shutDown();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2000ms);
    EXPECT_FALSE(app->calGetData.updateStarted());
    // A later suggestion starts a thread that returns at once.
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
    app->calGetData.shutDown();
    EXPECT_EQ(server.requestCount(), 3u);
}

TEST_F(UpdateEngine, RapidRestartsNeitherRaceNorDeadlock) {
    for (int i = 0; i < 200; ++i)
        app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts | CalGetData::kTaskAlbums,
                                              true);
    app->calGetData.shutDown();
    EXPECT_FALSE(store().getRestartingSearch());
}

// A thousand forced updates: only the current and the previous generation
// stay alive (and LeakSanitizer checks at exit that the rest was released).
TEST_F(UpdateEngine, ThousandUpdatesKeepGenerationsBounded) {
    std::vector<std::weak_ptr<SHOWLIST>> seen;
    for (int i = 0; i < 1000; ++i) {
        app->calGetData.performUpdate(CalGetData::kTaskConcerts);
        seen.push_back(app->concerts.current());
    }
    int alive = 0;
    for (const auto& w : seen) alive += !w.expired();
    EXPECT_EQ(alive, 2);
    EXPECT_EQ(shows().size(), 3u);
}

} // namespace
