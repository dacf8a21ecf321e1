// latLongLoc and ipLoc against a loopback service: the request values they
// send, how they read the replies, and that every path releases the
// internet lock and leaves the store as promised.
#include "update/location.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <string>

#include "client_state.h"
#include "loopback_server.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

namespace {

class Location : public ::testing::Test {
  protected:
    void SetUp() override {
        resetHttpClient();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        unsetenv("STAGEBEACON_GEOLOCATION");
    }
    void TearDown() override {
        unsetenv("STAGEBEACON_SERVICE");
        unsetenv("STAGEBEACON_GEOLOCATION");
        resetHttpClient();
    }

    void expectUnlocked() {
        ASSERT_TRUE(app.calGetData.internetMutex.try_lock()) << "internet lock still held";
        app.calGetData.internetMutex.unlock();
    }
    std::string text(void (ProtectedData::*get)(char*)) {
        char value[256];
        (store().*get)(value);
        return value;
    }
    ProtectedData& store() { return app.protectedData; }
    void place(const char* city, const char* state) {
        store().setCurCity(city);
        store().setCurState(state);
        store().setCurLat(1.0);
        store().setCurLon(1.0);
    }

    LoopbackServer server;
    StagebeaconClass app;
};

const char* kZipPath = "/zipcodes/zipcodes.php";

TEST_F(Location, CoordinatesRequestCarriesCleanedCityAndAbbreviation) {
    place("new  york", "New York");
    server.onPath(kZipPath, ScriptedReply::ok("junk<LON>-122.08</LON> and <LAT>37.39</LAT>junk"));
    EXPECT_EQ(latLongLoc(&app), 0);
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].target,
              "/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=New+York&STATE=NY");
    // Read in single precision, as the service has always been read.
    EXPECT_EQ(store().getCurLat(), static_cast<double>(37.39f));
    EXPECT_EQ(store().getCurLon(), static_cast<double>(-122.08f));
    expectUnlocked();
}

TEST_F(Location, NotFoundWinsOverCoordinates) {
    place("Nowhere", "TX");
    server.onPath(kZipPath, ScriptedReply::ok("<NOTFOUND><LAT>1.5</LAT><LON>2.5</LON>"));
    EXPECT_EQ(latLongLoc(&app), 0);
    EXPECT_EQ(store().getCurLat(), 0.0);
    EXPECT_EQ(store().getCurLon(), 0.0);
    expectUnlocked();
}

TEST_F(Location, EachMissingTagFailsWithCoordinatesCleared) {
    const std::string whole = "<LAT>1.5</LAT><LON>2.5</LON>";
    for (const char* tag : {"<LAT>", "</LAT>", "<LON>", "</LON>"}) {
        std::string reply = whole;
        reply.erase(reply.find(tag), std::string(tag).size());
        server.onPath(kZipPath, ScriptedReply::ok(reply));
        place("Austin", "TX");
        EXPECT_EQ(latLongLoc(&app), -1) << reply;
        EXPECT_EQ(store().getCurLat(), 0.0);
        EXPECT_EQ(store().getCurLon(), 0.0);
        expectUnlocked();
    }
}

TEST_F(Location, UnknownRegionMakesNoRequest) {
    for (const char* state : {"Nova Scotia", "isl", "Deutschland", ""}) {
        place("Halifax", state);
        EXPECT_EQ(latLongLoc(&app), -1) << state;
        EXPECT_EQ(store().getCurLat(), 0.0);
    }
    EXPECT_EQ(server.requestCount(), 0u);
    expectUnlocked();
}

// The state is checked before the lock is taken: a caller that holds the
// lock (or a stalled download elsewhere) does not hold up a bad state.
TEST_F(Location, UnknownRegionFailsWithoutWaitingForTheLock) {
    place("Halifax", "Nova Scotia");
    app.calGetData.lockInternet();
    auto result = std::async(std::launch::async, [this] { return latLongLoc(&app); });
    bool finished = result.wait_for(std::chrono::seconds(2)) == std::future_status::ready;
    app.calGetData.unlockInternet();
    EXPECT_TRUE(finished);
    EXPECT_EQ(result.get(), -1);
}

TEST_F(Location, FailedCoordinatesDownloadReleasesTheLock) {
    place("Austin", "TX");
    server.onPath(kZipPath, ScriptedReply::status(500, "Oops", "Content-Length: 0\r\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(latLongLoc(&app), -1);
    testing::internal::GetCapturedStderr();
    EXPECT_FALSE(store().getValid_internet_connection());
    expectUnlocked();
}

struct GeoCase {
    const char* page;
    const char* city;
    const char* state;
};

TEST_F(Location, GeolocationPageForEveryCountryMarker) {
    const GeoCase cases[] = {
        {"<span>>UNITED STATES, CALIFORNIA, MOUNTAIN VIEW</span>", "Mountain View", "CA"},
        {">UNITED KINGDOM, ENGLAND, LONDON</span>", "London", "UK"},
        {">GERMANY, BAYERN, MUNCHEN</span>", "Munchen", "GER"},
        {"x>CANADA, ONTARIO, TORONTO</span>y", "Toronto", "ON"},
        {">ITALY, LAZIO, ROMA</span>", "Roma", "ITA"},
        // An unknown region is kept in its cleaned form.
        {">UNITED STATES, ATLANTIS, SUNKEN CITY</span>", "Sunken City", "atlantis"},
        // The table order decides, not the order on the page.
        {">ITALY, LAZIO, ROMA</span>>UNITED STATES, TEXAS, AUSTIN</span>", "Austin", "TX"},
        {">ITALY, LAZIO, ROMA</span>>CANADA, QUEBEC, MONTREAL</span>", "Montreal", "QC"},
    };
    for (const GeoCase& c : cases) {
        StagebeaconClass fresh;
        server.onPath("/ip-location", ScriptedReply::ok(c.page));
        ASSERT_EQ(ipLoc(&fresh), 0) << c.page;
        char value[256];
        fresh.protectedData.getCurCity(value);
        EXPECT_STREQ(value, c.city) << c.page;
        fresh.protectedData.getCurCityDisplay(value);
        EXPECT_STREQ(value, c.city);
        fresh.protectedData.getCurState(value);
        EXPECT_STREQ(value, c.state) << c.page;
        fresh.protectedData.getCurStateDisplay(value);
        EXPECT_STREQ(value, c.state);
        EXPECT_TRUE(fresh.calGetData.locatedFromNetwork);
        ASSERT_TRUE(fresh.calGetData.internetMutex.try_lock());
        fresh.calGetData.internetMutex.unlock();
    }
}

TEST_F(Location, MalformedGeolocationPagesChangeNothing) {
    const char* pages[] = {
        "<html>no country here</html>",
        ">UNITED STATES</span>",                            // no marker comma
        ">UNITED STATES, CALIFORNIA</span>",                // no comma after the region
        ">UNITED STATES, CALIFORNIA</span>, X",             // the comma after the span
        ">UNITED STATES, CALIFORNIA, MOUNTAIN VIEW",        // no span end
        ">united states, california, mountain view</span>", // markers are upper case
    };
    for (const char* page : pages) {
        server.onPath("/ip-location", ScriptedReply::ok(page));
        EXPECT_EQ(ipLoc(&app), -1) << page;
        EXPECT_EQ(text(&ProtectedData::getCurCity), "-");
        EXPECT_EQ(text(&ProtectedData::getCurState), "-");
        EXPECT_FALSE(app.calGetData.locatedFromNetwork);
        expectUnlocked();
    }
}

TEST_F(Location, GeolocationPageAddressFollowsTheConfiguration) {
    setenv("STAGEBEACON_GEOLOCATION", server.url("/where-am-i?fmt=html").c_str(), 1);
    server.onPath("/where-am-i", ScriptedReply::ok(">CANADA, ALBERTA, CALGARY</span>"));
    ASSERT_EQ(ipLoc(&app), 0);
    EXPECT_EQ(server.requests().back().target, "/where-am-i?fmt=html");
    EXPECT_EQ(text(&ProtectedData::getCurState), "AB");

    server.onPath("/where-am-i", ScriptedReply::status(404, "No", "Content-Length: 0\r\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(ipLoc(&app), -1);
    testing::internal::GetCapturedStderr();
    expectUnlocked();
}

} // namespace
