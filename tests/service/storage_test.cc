// What the database keeps: everything survives a restart on the same file,
// the schema is created once, the demo folder and an iCalendar file load.
#include "service_fixture.h"

#include "csv.h"
#include "geo.h"
#include "seed.h"

#include <fstream>

namespace service_test {
namespace {

using Persistence = ServiceTest;

TEST_F(Persistence, RegisteredUsersShowsAndAccountsSurviveARestart) {
    ASSERT_EQ(get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=U1&CITY=Origin"
                  "&STATE=ZZ&FIRSTNAME=A&LASTNAME=L"),
              "<OK>\n");
    ASSERT_EQ(get("/sharing/sharing.php?TODO=ADD_SHOW&USERNAME=ann&UUID=U1&YEAR=2031&MONTH=2"
                  "&DAY=3&TICKETSAVAILABLE=1&ARTIST=Beck&VENUE=V&LOCATION=L&URL=u"
                  "&OTHERARTISTS="),
              "<OK>\n");
    ASSERT_EQ(get("/iphone/exchange.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=U1&PWD=pw"),
              "<OK>\n");
    ASSERT_EQ(get("/iphone/exchange.php?TODO=ADD_ARTISTS&USERNAME=ann&PWD=pw&ARTISTS=Beck"),
              "<OK>\n");

    startService(); // new storage and server on the same file

    EXPECT_NE(get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=U2&CITY=a"
                  "&STATE=b&FIRSTNAME=c&LASTNAME=d")
                  .find("Error"),
              std::string::npos);
    EXPECT_NE(get("/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=ann")
                  .find("<event>2031@@2@@3@@1@@Beck@@"),
              std::string::npos);
    EXPECT_EQ(get("/iphone/exchange.php?TODO=ADD_ARTISTS&USERNAME=ann&PWD=pw&ARTISTS=Wilco"),
              "<OK>\n");
    EXPECT_EQ(storage_->phoneArtists("ann"), (std::vector<std::string>{"Beck", "Wilco"}));
    EXPECT_NE(get("/events/events.php?site=1&city=Origin&state=ZZ&radius=5").find("Near Band"),
              std::string::npos);
}

TEST_F(Persistence, ReseedingReplacesTheCatalogueButKeepsAccounts) {
    ASSERT_EQ(get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=U1&CITY=Origin"
                  "&STATE=ZZ&FIRSTNAME=A&LASTNAME=L"),
              "<OK>\n");
    service::Catalog smaller = testCatalog();
    smaller.events.resize(1);
    storage_->replaceCatalog(smaller);
    storage_->replaceCatalog(smaller);
    std::string page = get("/events/events.php?site=1&city=Origin&state=ZZ&radius=500");
    EXPECT_EQ(std::count(page.begin(), page.end(), '\n'), 1) << page;
    EXPECT_TRUE(storage_->sharingUserExists("ann"));
}

TEST(Schema, ANewerDatabaseIsRefusedAndAnOldOneReopened) {
    TempFolder folder;
    const std::string path = folder.path() + "/s.db";
    { service::SqliteStorage first(path); }
    { service::SqliteStorage again(path); } // migrating twice is harmless
    {
        service::Connection raw(path);
        raw.exec("UPDATE schema_version SET version = 99");
    }
    EXPECT_THROW(service::SqliteStorage newer(path), service::StorageError);
}

TEST(DemoSeed, TheShippedDemoFolderLoadsWithUpcomingData) {
    service::Catalog demo = service::loadCatalog(STAGEBEACON_DEMO_DIR);
    EXPECT_GE(demo.sites.size(), 3u);
    EXPECT_GE(demo.events.size(), 20u);
    EXPECT_GE(demo.releases.size(), 10u);
    size_t upcoming = 0;
    for (const auto& event : demo.events) upcoming += event.date >= service::isoDateFromToday(0);
    EXPECT_GE(upcoming, demo.events.size() - 2);
    TempFolder folder;
    service::SqliteStorage storage(folder.path() + "/demo.db");
    storage.replaceCatalog(demo);
    EXPECT_TRUE(storage.findPlace("Boston", "MA"));
}

TEST(DemoSeed, ABadLineIsNamedInTheError) {
    TempFolder folder;
    std::ofstream(folder.path() + "/places.csv") << "city,region,latitude,longitude\n"
                                                    "Origin,ZZ,0,0\nBroken,ZZ,north,0\n";
    try {
        service::loadCatalog(folder.path());
        FAIL() << "a non-numeric latitude was accepted";
    } catch (const service::CsvError& error) {
        EXPECT_NE(std::string(error.what()).find("places.csv line 3"), std::string::npos)
            << error.what();
    }
}

TEST(CalendarImport, EventsJoinOnlyASiteThatExists) {
    TempFolder folder;
    service::SqliteStorage storage(folder.path() + "/ics.db");
    storage.replaceCatalog(testCatalog());
    service::Event event;
    event.date = "2031-03-05";
    event.artists = {"Half Band"};
    EXPECT_TRUE(storage.addEvents(1, {event}));
    EXPECT_FALSE(storage.addEvents(42, {event}));
    EXPECT_EQ(storage.siteEvents(1, "2031-01-01", -90, 90, -180, 180).size(), 1u);
}

} // namespace
} // namespace service_test
