// The calendar-store route with the real helper module: what the calendar
// file holds after an export and after the next one, where it goes, which
// texts and dates it takes, and that a missing or foreign module does
// nothing.
#include <dlfcn.h>
#include <uuid/uuid.h>

#include <memory>
#include <string>

#include "export/calendar_store.h"
#include "export_support.h"
#include "library/file_io.h"
#include "plugin/stagebeacon_class.h"
#include "support/demo_shows.h"
#include "temp_home.h"

namespace {

struct CalendarStore : ::testing::Test {
    TempHome home;
    ScopedVariable resources{"STAGEBEACON_RESOURCES", builtModuleFolder()};
    ScopedVariable dataHome{"XDG_DATA_HOME", nullptr};
    ScopedVariable service{"STAGEBEACON_SERVICE", "http://127.0.0.1:9"};
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
    SHOWLIST* shows = app->concerts.current().get();

    SHOWENTRY* addShow(const char* artist, int year, int month, int day, bool marked) {
        SHOWENTRY* e = makeDemoShow(artist, year, month, day);
        e->attending = marked;
        snprintf(e->url, sizeof e->url, "http://e/%s", artist);
        return fileDemoShow(shows, e);
    }
    CalendarContents exportedCalendar(const std::string& file) {
        EXPECT_EQ(performExportTo_iCalCalendarStore(app.get()), 0);
        return readCalendar(readText(file));
    }
};

TEST_F(CalendarStore, MarkedShowsBecomeAllDayEventsAndTheNextExportReplacesThem) {
    app->protectedData.setExportAllShows(false);
    SHOWENTRY* wilco = addShow("Wilco", 2027, 12, 31, true);
    snprintf(wilco->otherArtists, sizeof wilco->otherArtists, "Spoon; Beirut");
    wilco->ticketsAvailable = true;
    SHOWENTRY* spoon = addShow("Spoon", 2027, 3, 5, true);
    snprintf(spoon->location, sizeof spoon->location, "-");
    addShow("Beirut", 2027, 4, 1, false);

    CalendarContents calendar = exportedCalendar(concertCalendarFile(home.path()));
    ASSERT_TRUE(calendar.parsed);
    EXPECT_EQ(calendar.name, "Stagebeacon_Concerts");
    ASSERT_EQ(calendar.events.size(), 2u);
    const CalendarEvent& first = calendar.events[0];
    EXPECT_EQ(first.summary, "Spoon");
    EXPECT_EQ(dayText(first.start), "2027-03-05 (date)");
    EXPECT_EQ(first.location, "The Venue"); // no "-" for an unknown town
    EXPECT_EQ(first.description, "");
    const CalendarEvent& second = calendar.events[1];
    EXPECT_EQ(second.summary, "Wilco");
    EXPECT_EQ(dayText(second.start), "2027-12-31 (date)");
    EXPECT_EQ(dayText(second.end), "2028-01-01 (date)"); // one whole day
    EXPECT_EQ(second.location, "The Venue, Springfield, IL");
    EXPECT_EQ(second.description, "With: Spoon; Beirut\nTickets available");
    EXPECT_EQ(second.url, "http://127.0.0.1:9/clickthrough.php?target=http://e/Wilco");
    EXPECT_NE(first.uid, second.uid);

    wilco->attending = false;
    calendar = exportedCalendar(concertCalendarFile(home.path()));
    ASSERT_EQ(calendar.events.size(), 1u);
    EXPECT_EQ(calendar.events[0].summary, "Spoon");

    app->protectedData.setExportAllShows(true);
    EXPECT_EQ(exportedCalendar(concertCalendarFile(home.path())).events.size(), 3u);
}

TEST_F(CalendarStore, DataFolderFromTheEnvironmentAndTextsMadeUtf8) {
    ScopedVariable data("XDG_DATA_HOME", (home.path() + "/data").c_str());
    app->protectedData.setExportAllShows(true);
    addShow("Caf\xe9 Tacvba", 2027, 2, 28, false); // Latin-1
    addShow("Sigur R\xc3\xb3s", 2027, 3, 1, false); // already UTF-8
    addShow("Nobody", 2027, 2, 30, false);          // no such day

    const std::string file = home.path() + "/data/stagebeacon/calendars/Stagebeacon_Concerts.ics";
    CalendarContents calendar = exportedCalendar(file);
    ASSERT_EQ(calendar.events.size(), 2u);
    EXPECT_EQ(calendar.events[0].summary, "Caf\xc3\xa9 Tacvba");
    EXPECT_EQ(calendar.events[1].summary, "Sigur R\xc3\xb3s");
    EXPECT_FALSE(exists(concertCalendarFile(home.path())));
}

TEST_F(CalendarStore, MissingOrForeignModuleExportsNothing) {
    app->protectedData.setExportAllShows(true);
    addShow("Wilco", 2027, 5, 5, false);
    const std::string folder = home.path() + "/resources";
    ASSERT_TRUE(makeFolders(folder));
    ScopedVariable elsewhere("STAGEBEACON_RESOURCES", folder.c_str());
    const std::string module = folder + "/" + kCalendarHelperModule;

    void* bundle = &bundle;
    LoadPrivateFrameworkBundle(kCalendarHelperModule, &bundle);
    EXPECT_EQ(bundle, nullptr);
    LoadPrivateFrameworkBundle(kCalendarHelperModule, nullptr); // no place: nothing

    writeText(module, "not a module");
    EXPECT_EQ(performExportTo_iCalCalendarStore(app.get()), 0);

    // A real library under the module's name, without the entry points.
    Dl_info uuidLibrary{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&uuid_generate), &uuidLibrary), 0);
    writeText(module, readText(uuidLibrary.dli_fname));
    EXPECT_EQ(performExportTo_iCalCalendarStore(app.get()), 0);

    EXPECT_FALSE(exists(home.path() + "/.local"));
}

} // namespace
