// The calendar-store route with the built helper module: the calendar after
// an export and after the next one, its folder, its texts and dates, and a
// missing or foreign module.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <uuid/uuid.h>

#include "export/calendar_store.h"
#include "export_support.h"
#include "library/file_io.h"
#include "model/stagebeacon_class.h"
#include "support/demo_shows.h"
#include "temp_home.h"

namespace {

struct CalendarStore : ::testing::Test {
    TempHome home;
    ScopedVariable resources{"STAGEBEACON_RESOURCES", STAGEBEACON_MODULE_RESOURCES};
    ScopedVariable dataHome{"XDG_DATA_HOME", nullptr};
    ScopedVariable service{"STAGEBEACON_SERVICE", "http://127.0.0.1:9"};
    StagebeaconClass app;

    SHOWENTRY* addShow(const char* artist, int year, int month, int day, bool marked) {
        SHOWENTRY* e = makeDemoShow(artist, year, month, day);
        e->attending = marked;
        snprintf(e->url, sizeof e->url, "http://e/%s", artist);
        return fileDemoShow(app.concerts.current().get(), e);
    }
    std::vector<CalendarEvent> exported(const std::string& file) {
        EXPECT_EQ(performExportTo_iCalCalendarStore(&app), 0);
        return readEvents(readText(file));
    }
};

TEST_F(CalendarStore, MarkedShowsBecomeAllDayEventsThatTheNextExportReplaces) {
    app.protectedData.setExportAllShows(false);
    SHOWENTRY* wilco = addShow("Wilco", 2027, 12, 31, true);
    snprintf(wilco->otherArtists, sizeof wilco->otherArtists, "Spoon; Beirut");
    wilco->ticketsAvailable = true;
    snprintf(addShow("Spoon", 2027, 3, 5, true)->location, sizeof wilco->location, "-");
    addShow("Beirut", 2027, 4, 1, false);

    const std::string file = concertCalendarFile(home.path());
    std::vector<CalendarEvent> events = exported(file);
    EXPECT_NE(readText(file).find("X-WR-CALNAME:Stagebeacon_Concerts"), std::string::npos);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].summary, "Spoon");
    EXPECT_EQ(events[0].start, "2027-03-05");
    EXPECT_EQ(events[0].location, "The Venue"); // an unknown town ("-") left out
    EXPECT_EQ(events[0].description, "");
    EXPECT_EQ(events[1].start, "2027-12-31");
    EXPECT_EQ(events[1].end, "2028-01-01"); // one whole day
    EXPECT_EQ(events[1].location, "The Venue, Springfield, IL");
    EXPECT_EQ(events[1].description, "With: Spoon; Beirut\nTickets available");
    EXPECT_EQ(events[1].url, "http://127.0.0.1:9/clickthrough.php?target=http://e/Wilco");
    EXPECT_NE(events[0].uid, events[1].uid);

    wilco->attending = false;
    EXPECT_EQ(exported(file).size(), 1u);
    app.protectedData.setExportAllShows(true);
    EXPECT_EQ(exported(file).size(), 3u);
}

TEST_F(CalendarStore, DataFolderFromTheEnvironmentTextsInUtf8ImpossibleDatesLeftOut) {
    ScopedVariable data("XDG_DATA_HOME", (home.path() + "/data").c_str());
    app.protectedData.setExportAllShows(true);
    addShow("Caf\xe9 Tacvba", 2027, 2, 28, false);  // Latin-1
    addShow("Sigur R\xc3\xb3s", 2027, 3, 1, false); // UTF-8 already
    addShow("Nobody", 2027, 2, 30, false);
    std::vector<CalendarEvent> events =
        exported(home.path() + "/data/stagebeacon/calendars/Stagebeacon_Concerts.ics");
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].summary, "Caf\xc3\xa9 Tacvba");
    EXPECT_EQ(events[1].summary, "Sigur R\xc3\xb3s");
}

TEST_F(CalendarStore, MissingOrForeignModuleExportsNothing) {
    app.protectedData.setExportAllShows(true);
    addShow("Wilco", 2027, 5, 5, false);
    const std::string folder = home.path() + "/resources";
    ASSERT_TRUE(makeFolders(folder));
    ScopedVariable elsewhere("STAGEBEACON_RESOURCES", folder.c_str());
    void* bundle = &bundle;
    LoadPrivateFrameworkBundle(kCalendarHelperModule, &bundle);
    EXPECT_EQ(bundle, nullptr);
    LoadPrivateFrameworkBundle(kCalendarHelperModule, nullptr); // no place: nothing

    const std::string module = folder + "/" + kCalendarHelperModule;
    writeText(module, "not a module");
    EXPECT_EQ(performExportTo_iCalCalendarStore(&app), 0);
    Dl_info library{}; // a real library, without the entry points
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&uuid_generate), &library), 0);
    writeText(module, readText(library.dli_fname));
    EXPECT_EQ(performExportTo_iCalCalendarStore(&app), 0);
    EXPECT_FALSE(exists(home.path() + "/.local"));
}

} // namespace
