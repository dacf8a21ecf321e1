// When the export runs: after a search (UpdateConcerts, against the loopback
// sites of the engine tests) and after a show is marked with a secondary
// click; which route each system version takes, and what stops it.
#include <cmath>
#include <string>
#include <vector>

#include "export_support.h"
#include "temp_home.h"
#include "update/update_engine_fixture.h"
#include "view/mouse_fixture.h"

namespace {

std::vector<std::string> summaries(const std::string& file) {
    std::vector<std::string> out;
    for (const CalendarEvent& e : readCalendar(readText(file)).events) out.push_back(e.summary);
    return out;
}

// The helper module as built, and no XDG_DATA_HOME: the calendar store lies
// under the temporary home.
struct BuiltModule {
    ScopedVariable resources{"STAGEBEACON_RESOURCES", builtModuleFolder()};
    ScopedVariable dataHome{"XDG_DATA_HOME", nullptr};
};

struct SearchExport : UpdateEngine, BuiltModule {
    TempHome home;
    std::string folder = home.path() + "/Stagebeacon.calendar/";
    std::string calendarFile = folder + "corestorage.ics";

    void SetUp() override {
        UpdateEngine::SetUp();
        store().setStagebeaconPref((home.path() + "/StagebeaconPref").c_str());
        store().setiCalLoc(calendarFile.c_str());
        useSystem(10.4f);
        store().setExportTo_iCal(true);
        store().setExportAllShows(true);
    }
    void useSystem(float version) {
        app->calGetData.OSVersion = version;
        store().setOSXVersion(version);
    }
};

TEST_F(SearchExport, SearchWritesTheCalendarFileAndSwitchingOffRemovesIt) {
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(summaries(calendarFile), (std::vector<std::string>{"Spoon", "Beatles", "Wilco"}));
    EXPECT_TRUE(exists(folder + "Info.plist"));
    EXPECT_FALSE(exists(concertCalendarFile(home.path())));

    store().setExportTo_iCal(false);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_FALSE(exists(folder)); // the next search takes the source folder away
}

TEST_F(SearchExport, SourceFolderFailureEndsTheSearchUnexported) {
    store().setiCalLoc("corestorage.ics"); // no folder in it
    ScopedWorkingFolder inHome(home.path());
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(shows().size(), 3u);
    EXPECT_FALSE(store().getUpdatingConcerts());
    EXPECT_FALSE(exists(home.path() + "/corestorage.ics"));
    EXPECT_TRUE(exists(home.path() + "/StagebeaconPref")); // the run itself went on
}

TEST_F(SearchExport, From10_5TheUpdateThreadFillsTheCalendarStore) {
    useSystem(10.5f);
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
    waitForUpdate();
    EXPECT_EQ(summaries(concertCalendarFile(home.path())),
              (std::vector<std::string>{"Spoon", "Beatles", "Wilco"}));
    EXPECT_FALSE(exists(folder));
}

struct MarkExport : MouseFixture, BuiltModule {
    SHOWENTRY* show = nullptr;
    std::string folder;
    std::string calendarFile;

    void SetUp() override {
        MouseFixture::SetUp();
        show = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
        folder = home.path() + "/Library/Application Support/iCal/Sources/Stagebeacon.calendar/";
        calendarFile = folder + "corestorage.ics";
        store.setiCalLoc(calendarFile.c_str());
        store.setOSXVersion(10.4f);
        store.setExportTo_iCal(true);
        store.setExportAllShows(false);
    }
    void toggleMark() {
        pointAt(20, 20);
        handleRightMouseClicks();
    }
};

TEST_F(MarkExport, MarkingRewritesTheCalendarFileBelow10_5) {
    toggleMark();
    EXPECT_EQ(summaries(calendarFile), std::vector<std::string>{"Spoon"});
    EXPECT_TRUE(exists(folder + "Info.plist"));
    toggleMark();
    EXPECT_EQ(readText(calendarFile), "BEGIN:VCALENDAR\nEND:VCALENDAR");
    EXPECT_FALSE(exists(concertCalendarFile(home.path())));
}

TEST_F(MarkExport, NothingIsExportedWhenOffOrWhenEveryShowIs) {
    store.setExportAllShows(true);
    toggleMark();
    store.setExportAllShows(false);
    store.setExportTo_iCal(false);
    toggleMark();
    store.setOSXVersion(10.5f);
    toggleMark();
    EXPECT_TRUE(show->attending);
    EXPECT_FALSE(exists(folder));
    EXPECT_FALSE(exists(concertCalendarFile(home.path())));
}

TEST_F(MarkExport, SourceFolderFailureSkipsTheFile) {
    store.setiCalLoc("corestorage.ics");
    ScopedWorkingFolder inHome(home.path());
    toggleMark();
    EXPECT_TRUE(show->attending);
    EXPECT_FALSE(exists(home.path() + "/corestorage.ics"));
}

// The whole way from the system version variable: start-up reads 10.5, and
// a mark goes to the calendar store; so does a version that is no number.
TEST_F(MarkExport, From10_5AndForNoNumberTheCalendarStoreTakesTheMarks) {
    ScopedVariable version("STAGEBEACON_SYSTEM_VERSION", "0x1058");
    server.onPath("/current_version.php", ScriptedReply::ok("<current>"));
    ASSERT_EQ(app->calGetData.initialize(), 0);
    store.setExportTo_iCal(true);
    store.setExportAllShows(false);

    toggleMark();
    EXPECT_EQ(summaries(concertCalendarFile(home.path())), std::vector<std::string>{"Spoon"});
    store.setOSXVersion(std::nanf(""));
    toggleMark();
    CalendarContents unmarked = readCalendar(readText(concertCalendarFile(home.path())));
    EXPECT_TRUE(unmarked.parsed);
    EXPECT_TRUE(unmarked.events.empty());
    EXPECT_FALSE(exists(home.path() + "/Library/Application Support/iCal"));
}

} // namespace
