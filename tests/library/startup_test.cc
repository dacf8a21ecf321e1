// Start-up: the version and export tables, the support files, the order of
// initialize, the registration script and the calendar source folder.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "library/file_io.h"
#include "export/growl_script.h"
#include "export/ical_source.h"
#include "library/startup_tables.h"
#include "library/support_files.h"
#include "library_generator.h"
#include "loopback_server.h"
#include "platform/headless.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "temp_home.h"

namespace {

class SystemVersionVariable {
  public:
    explicit SystemVersionVariable(const char* value) {
        if (value)
            setenv("STAGEBEACON_SYSTEM_VERSION", value, 1);
        else
            unsetenv("STAGEBEACON_SYSTEM_VERSION");
    }
    ~SystemVersionVariable() { unsetenv("STAGEBEACON_SYSTEM_VERSION"); }
};

std::string field(ProtectedData& store, void (ProtectedData::*get)(char*)) {
    char buffer[1024];
    (store.*get)(buffer);
    return buffer;
}

bool looksLikeUuid(const std::string& text) {
    if (text.size() != 36) return false;
    for (size_t i = 0; i < text.size(); ++i) {
        bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        char c = text[i];
        if (hyphen ? c != '-' : !(isdigit(static_cast<unsigned char>(c)) || (c >= 'A' && c <= 'F')))
            return false;
    }
    return true;
}

TEST(StartupTables, SystemVersionByValue) {
    EXPECT_FLOAT_EQ(systemVersionFromQuery(false, 0x1058), 10.4f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x1039), 10.3f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x103F), 10.3f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x1040), 10.4f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x1049), 10.4f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x1050), 10.5f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x106F), 10.6f);
    EXPECT_FLOAT_EQ(systemVersionFromQuery(true, 0x1075), 10.4f);
}

TEST(StartupTables, ExportLocationByVersion) {
    EXPECT_EQ(exportLocationFor(10.3f, "/h"), "/h/Library/Calendars/Stagebeacon.ics");
    EXPECT_EQ(exportLocationFor(10.4f, "/h"),
              "/h/Library/Application Support/iCal/Sources/Stagebeacon.calendar/corestorage.ics");
    EXPECT_EQ(exportLocationFor(10.5f, "/h"), "Custom export location not available in OS X 10.5");
    EXPECT_EQ(exportLocationFor(10.6f, "/h"), "Custom export location not available in OS X 10.6");
}

TEST(GrowlScript, ExactText) {
    EXPECT_EQ(growlRegistrationScript(true, true),
              "tell application \"System Events\"\n"
              "\tset bGrowlIsRunning to (count of (every process whose name is "
              "\"GrowlHelperApp\")) > 0\n"
              "\tif bGrowlIsRunning is true then\n"
              "\t\ttell application \"GrowlHelperApp\"\n"
              "\t\t\tset the allNotificationsList to \t\t\t{\"Upcoming Concert\", \"Upcoming "
              "Album Release\"}\n"
              "\t\t\tset the enabledNotificationsList to \t\t\t{\"Upcoming Concert\", "
              "\"Upcoming Album Release\"}\n"
              "\t\t\tregister as application \"Stagebeacon\" \t\t\tall notifications "
              "allNotificationsList \t\t\tdefault notifications enabledNotificationsList "
              "\t\t\ticon of application \"Stagebeacon_Installer.app\"\n"
              "\t\tend tell\n"
              "\tend if\n"
              "end tell");
    auto enabledLine = [](bool concerts, bool albums) {
        std::string script = growlRegistrationScript(concerts, albums);
        size_t at = script.find("enabledNotificationsList to \t\t\t");
        size_t from = at + strlen("enabledNotificationsList to \t\t\t");
        return script.substr(from, script.find('\n', from) - from);
    };
    EXPECT_EQ(enabledLine(true, false), "{\"Upcoming Concert\"}");
    EXPECT_EQ(enabledLine(false, true), "{\"Upcoming Album Release\"}");
    EXPECT_EQ(enabledLine(false, false), "{}");
}

TEST(SupportFiles, IdentifierIsMadeOnceAndKept) {
    TempHome home;
    std::string folder = home.path() + "/";
    std::string id = readOrCreateInstallationId(folder);
    EXPECT_TRUE(looksLikeUuid(id)) << id;
    std::string bytes = readText(folder + "sbn");
    ASSERT_EQ(bytes.size(), 39u);
    EXPECT_EQ(bytes.substr(0, 36), id);
    EXPECT_EQ(bytes[36], '\0');
    struct stat info {};
    ASSERT_EQ(stat((folder + "sbn").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    EXPECT_EQ(readOrCreateInstallationId(folder), id);
    unlink((folder + "sbn").c_str());
    std::string fresh = readOrCreateInstallationId(folder);
    EXPECT_NE(fresh, id);
    EXPECT_TRUE(looksLikeUuid(fresh));
    // A damaged identifier file: the text before the NUL, whatever follows.
    writeText(folder + "sbn", std::string("ABC\0xy", 6));
    EXPECT_EQ(readOrCreateInstallationId(folder), "ABC");
}

TEST(SupportFiles, PasswordFileReadsTheTextBeforeTheNul) {
    TempHome home;
    std::string folder = home.path() + "/";
    std::string password;
    EXPECT_FALSE(readPasswordFile(folder, &password));
    std::string record("hunter2", 7);
    record.resize(64, '\0');
    record.replace(20, 5, "junk!");
    writeText(folder + "pd", record);
    ASSERT_TRUE(readPasswordFile(folder, &password));
    EXPECT_EQ(password, "hunter2");
    writeText(folder + "pd", std::string(100, 'p'));
    ASSERT_TRUE(readPasswordFile(folder, &password));
    EXPECT_EQ(password, std::string(63, 'p'));
    EXPECT_EQ(dialogPasswordPath("/home/u"), "/home/u/Library/Application\\ Support/Stagebeacon/pd");
}

class Startup : public ::testing::Test {
  protected:
    TempHome home;
    // Plays the service for the version check of a first start.
    LoopbackServer service;
    void SetUp() override {
        resetHeadless();
        setenv("STAGEBEACON_SERVICE", service.url("").c_str(), 1);
        service.onPath("/current_version.php", ScriptedReply::ok("<current>"));
    }
    void TearDown() override {
        unsetenv("STAGEBEACON_SERVICE");
        resetHeadless();
    }
    std::unique_ptr<StagebeaconClass> start() {
        auto app = std::make_unique<StagebeaconClass>();
        EXPECT_EQ(app->calGetData.initialize(), 0);
        return app;
    }
    // What the first update thread does before its tasks: the scan that
    // start-up left to it. No update is due here, so the thread does only that.
    static unsigned scanned(StagebeaconClass& app) {
        EXPECT_EQ(app.calGetData.xmlArtists.count, 0u) << "start-up itself never scans";
        (void)app.calGetData.suggestUpdateShowList(CalGetData::kTaskAll, false);
        while (app.calGetData.updateRunning()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_EQ(app.calGetData.startupWork.load(), 0u);
        app.calGetData.shutDown(); // joins the thread
        return app.calGetData.xmlArtists.count;
    }
    std::string defaultLibrary() { return home.path() + "/Music/iTunes/iTunes Music Library.xml"; }
    void writeSmallLibrary(const std::string& path) {
        makeFolders(path.substr(0, path.rfind('/')));
        LibraryShape shape;
        shape.tracks = 40;
        shape.artists = 4;
        LibraryFacts facts;
        ASSERT_TRUE(writeLibrary(path, shape, &facts));
    }
};

TEST_F(Startup, FirstStartOnAnEmptyHome) {
    SystemVersionVariable none(nullptr);
    auto app = start();
    ProtectedData& store = app->protectedData;
    std::string support = home.support();
    EXPECT_FLOAT_EQ(store.getOSXVersion(), 10.4f);
    EXPECT_FLOAT_EQ(app->calGetData.OSVersion, 10.4f);
    EXPECT_TRUE(canOpenForReading(support.c_str()));
    EXPECT_EQ(field(store, &ProtectedData::getStagebeaconPref), support + "StagebeaconPref");
    EXPECT_EQ(field(store, &ProtectedData::getStagebeaconIncludeBandsList),
              support + "StagebeaconIncludeBands.txt");
    EXPECT_EQ(field(store, &ProtectedData::getStagebeaconExcludeBandsList),
              support + "StagebeaconExcludeBands.txt");
    EXPECT_EQ(field(store, &ProtectedData::getiCalLoc),
              home.path() +
                  "/Library/Application Support/iCal/Sources/Stagebeacon.calendar/corestorage.ics");
    EXPECT_EQ(field(store, &ProtectedData::getiTunes_xml_path), defaultLibrary());
    EXPECT_TRUE(looksLikeUuid(field(store, &ProtectedData::getUUID)));
    EXPECT_TRUE(store.getExportAllShows());
    EXPECT_TRUE(store.getShareAllShows());
    EXPECT_TRUE(store.getNotifyConcerts());
    EXPECT_TRUE(store.getNotifyAlbums());
    EXPECT_FALSE(store.getExportTo_iCal());
    EXPECT_TRUE(app->calGetData.locateByIP);
    EXPECT_EQ(app->calGetData.nextRefresh, 0);
    // No library: the user was asked (headless: cancelled) and nothing scanned.
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0], "open file: Locate 'iTunes Music Library.xml' | (cancel)");
    EXPECT_EQ(app->calGetData.xmlArtists.count, 0u);
}

TEST_F(Startup, SecondStartKeepsTheIdentifierAndReadsThePassword) {
    std::string first;
    {
        auto app = start();
        first = field(app->protectedData, &ProtectedData::getUUID);
    }
    std::string record = "s3cret";
    record.resize(64, '\0');
    writeText(home.support() + "pd", record);
    auto again = start();
    EXPECT_EQ(field(again->protectedData, &ProtectedData::getUUID), first);
    EXPECT_EQ(field(again->protectedData, &ProtectedData::getPassword), "s3cret");
}

TEST_F(Startup, LeftoverTemporaryFileOfACrashedSaveIsRemoved) {
    makeFolders(home.support());
    writeText(home.support() + "StagebeaconPref.q7Rt2x", "half a file");
    auto app = start();
    EXPECT_FALSE(exists(home.support() + "StagebeaconPref.q7Rt2x"));
}

TEST_F(Startup, LibraryFromTheDefaultPlaceTheSettingsOrTheDialog) {
    writeSmallLibrary(defaultLibrary());
    EXPECT_EQ(scanned(*start()), 4u);
    EXPECT_TRUE(headlessLogLines().empty()) << "no dialog when the library is found";

    // A path saved in the preference file replaces the default.
    std::string saved = home.path() + "/elsewhere/lib.xml";
    writeSmallLibrary(saved);
    unlink(defaultLibrary().c_str());
    writeText(home.support() + "StagebeaconPref", saved + "\n");
    EXPECT_EQ(scanned(*start()), 4u);

    // Neither: the dialog's answer is stored and scanned.
    unlink((home.support() + "StagebeaconPref").c_str());
    std::string chosen = home.path() + "/picked.xml";
    writeSmallLibrary(chosen);
    scriptFileChoice(chosen);
    auto app = start();
    EXPECT_EQ(field(app->protectedData, &ProtectedData::getiTunes_xml_path), chosen);
    EXPECT_EQ(scanned(*app), 4u);
}

TEST_F(Startup, StandInVersionChoosesTheCalendarStoreRows) {
    SystemVersionVariable leopard("0x1058");
    writeText(home.path() + "/x", "");
    makeFolders(home.support());
    writeText(home.support() + "StagebeaconPref",
              "/lib.xml\n99\n2020@@1@@1\nA@@B@@75@@0@@0\n1@@1@@1@@1@@1@@1@@1@@1@@1@@1@@1\n/file\n");
    auto app = start();
    EXPECT_FLOAT_EQ(app->protectedData.getOSXVersion(), 10.5f);
    EXPECT_EQ(field(app->protectedData, &ProtectedData::getiCalLoc),
              "Custom export location not available in OS X 10.5");
    EXPECT_TRUE(app->protectedData.getNotificationWindowStyle());
    EXPECT_FALSE(app->calGetData.locateByIP);
}

class CalendarSource : public Startup {
  protected:
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
    std::string folder = home.path() + "/Library/Application Support/iCal/Sources/"
                                       "Stagebeacon.calendar/";
    void SetUp() override {
        app->protectedData.setiCalLoc((folder + "corestorage.ics").c_str());
        app->protectedData.setOSXVersion(10.4f);
    }
};

TEST_F(CalendarSource, ExportOnPreparesTheFolderAndItsDescription) {
    app->protectedData.setExportTo_iCal(true);
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), 0);
    EXPECT_EQ(readText(folder + "Info.plist"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n"
              "      <key>Key</key>\n      <string>Stagebeacon</string>\n"
              "      <key>Title</key>\n      <string>Stagebeacon</string>\n"
              "      <key>Type</key>\n      <string>com.apple.ical.sources.naivereadwrite</string>\n"
              "</dict>\n</plist>\n");
    // An existing description is left alone.
    writeText(folder + "Info.plist", "mine");
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), 0);
    EXPECT_EQ(readText(folder + "Info.plist"), "mine");
}

TEST_F(CalendarSource, ExportOffRemovesTheSource) {
    makeFolders(folder);
    for (const char* name : {"corestorage.ics", "Index", "Info.plist"})
        writeText(folder + name, "x");
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), 0);
    EXPECT_FALSE(exists(folder));
    EXPECT_TRUE(exists(home.path() + "/Library/Application Support/iCal/Sources"));
    // Nothing to remove: nothing happens.
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), 0);
}

TEST_F(CalendarSource, OldestSystemAndBadLocations) {
    std::string calendars = home.path() + "/Library/Calendars/";
    app->protectedData.setOSXVersion(10.3f);
    app->protectedData.setiCalLoc((calendars + "Stagebeacon.ics").c_str());
    app->protectedData.setExportTo_iCal(true);
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), 0);
    EXPECT_TRUE(exists(calendars));
    EXPECT_FALSE(exists(calendars + "Info.plist"));

    app->protectedData.setiCalLoc("Custom export location not available in OS X 10.5");
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), -1);

    app->protectedData.setOSXVersion(10.4f);
    writeText(home.path() + "/plain-file", "x");
    app->protectedData.setiCalLoc((home.path() + "/plain-file/corestorage.ics").c_str());
    EXPECT_EQ(checkForInitialiCalFiles(app->protectedData), -1);
}

} // namespace
