// When the export runs: after a search (UpdateConcerts against the engine
// tests' loopback sites) and after a secondary click marks a show; which
// route each system version takes, and what stops it.
#include <cmath>

#include "export_support.h"
#include "temp_home.h"
#include "update/update_engine_fixture.h"
#include "view/mouse_fixture.h"

namespace {

std::vector<std::string> summaries(const std::string& file) {
    std::vector<std::string> out;
    for (const CalendarEvent& e : readEvents(readText(file)))
        out.push_back(e.summary);
    return out;
}

// The built helper module; no XDG_DATA_HOME, so the calendar store lies in
// the temporary home.
struct BuiltModule {
    ScopedVariable resources{"STAGEBEACON_RESOURCES", STAGEBEACON_MODULE_RESOURCES};
    ScopedVariable dataHome{"XDG_DATA_HOME", nullptr};
};

struct SearchExport : UpdateEngine, BuiltModule {
    TempHome home;
    std::string folder = home.path() + "/Stagebeacon.calendar/";

    void SetUp() override {
        UpdateEngine::SetUp();
        store().setStagebeaconPref((home.path() + "/StagebeaconPref").c_str());
        store().setiCalLoc((folder + "corestorage.ics").c_str());
        useSystem(10.4f);
        store().setExportTo_iCal(true);
        store().setExportAllShows(true);
    }
    void useSystem(float version) {
        app->calGetData.OSVersion = version;
        store().setOSXVersion(version);
    }
};

TEST_F(SearchExport, FileBelow10_5AndSwitchingOffRemovesItsFolder) {
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_EQ(summaries(folder + "corestorage.ics"),
              (std::vector<std::string>{"Spoon", "Beatles", "Wilco"}));
    EXPECT_TRUE(exists(folder + "Info.plist"));
    store().setExportTo_iCal(false);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_FALSE(exists(folder));
}

TEST_F(SearchExport, SourceFolderFailureEndsTheSearchUnexported) {
    store().setiCalLoc("corestorage.ics"); // no "/"
    ScopedWorkingFolder inHome(home.path());
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_FALSE(exists(home.path() + "/corestorage.ics"));
    EXPECT_FALSE(store().getUpdatingConcerts());
    EXPECT_TRUE(exists(home.path() + "/StagebeaconPref")); // the run itself went on
}

TEST_F(SearchExport, From10_5TheUpdateThreadFillsTheCalendarStore) {
    useSystem(10.5f);
    store().setExportTo_iCal(false);
    app->calGetData.performUpdate(CalGetData::kTaskConcerts);
    EXPECT_FALSE(exists(home.path() + "/.local"));
    store().setExportTo_iCal(true);
    app->calGetData.suggestUpdateShowList(CalGetData::kTaskConcerts, true);
    waitForUpdate();
    EXPECT_EQ(summaries(concertCalendarFile(home.path())),
              (std::vector<std::string>{"Spoon", "Beatles", "Wilco"}));
    EXPECT_FALSE(exists(folder));
}

struct MarkExport : MouseFixture, BuiltModule {
    SHOWENTRY* show = nullptr;
    std::string folder;

    void SetUp() override {
        MouseFixture::SetUp();
        show = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
        folder = home.path() + "/Library/Application Support/iCal/Sources/Stagebeacon.calendar/";
        store.setiCalLoc((folder + "corestorage.ics").c_str());
        store.setOSXVersion(10.4f);
        store.setExportTo_iCal(true);
        store.setExportAllShows(false);
    }
    void toggleMark() {
        pointAt(20, 20);
        handleRightMouseClicks();
    }
};

TEST_F(MarkExport, EachMarkRewritesTheFileBelow10_5) {
    toggleMark();
    EXPECT_EQ(summaries(folder + "corestorage.ics"), std::vector<std::string>{"Spoon"});
    EXPECT_TRUE(exists(folder + "Info.plist"));
    toggleMark();
    EXPECT_EQ(readText(folder + "corestorage.ics"), "BEGIN:VCALENDAR\nEND:VCALENDAR");
}

TEST_F(MarkExport, NothingWhenEveryShowIsExportedWhenOffOrWithoutASourceFolder) {
    store.setExportAllShows(true);
    toggleMark();
    store.setExportAllShows(false);
    store.setiCalLoc("corestorage.ics");
    ScopedWorkingFolder inHome(home.path());
    toggleMark();
    store.setExportTo_iCal(false);
    store.setOSXVersion(10.5f);
    toggleMark();
    EXPECT_TRUE(show->attending);
    EXPECT_FALSE(exists(folder));
    EXPECT_FALSE(exists(home.path() + "/corestorage.ics"));
    EXPECT_FALSE(exists(home.path() + "/.local"));
}

// From the system version variable on: start-up reads 10.5 and a mark goes
// to the calendar store; so it does with a version that is no number.
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
    bool parsed = false;
    EXPECT_TRUE(readEvents(readText(concertCalendarFile(home.path())), &parsed).empty());
    EXPECT_TRUE(parsed);
    EXPECT_FALSE(exists(home.path() + "/Library/Application Support/iCal"));
}

} // namespace
