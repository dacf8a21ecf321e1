// OK in the preferences window, group by group: what is stored, which alert
// a failure shows (the window then stays open and earlier groups keep what
// they stored), and the task set OK asks for.
#include <sys/stat.h>

#include "export/growl_script.h"
#include "library/support_files.h"
#include "prefs_fixture.h"

namespace {

class OkTest : public PrefsTest {
  protected:
    static std::string lastAlert() {
        std::vector<std::string> all = alerts();
        return all.empty() ? "" : all.back();
    }
};

TEST_F(OkTest, NothingChangedClosesWithoutAnUpdate) {
    open();
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(openPreferencesWindow(), nullptr);
    EXPECT_TRUE(updates().empty());
    EXPECT_TRUE(exists(home.support() + "StagebeaconPref")); // saved on the way out
    EXPECT_TRUE(alerts().empty());
}

TEST_F(OkTest, LibraryAndArtistListsAskForEverything) {
    writeText(includeFile(), "Low\n\nBeach House\n");
    open();
    EXPECT_EQ(control(CID_GENERAL_TBOX_includeArtists).text, "Low\rBeach House");
    set("CID_GENERAL_TBOX_libraryPath", "\"/other/library.xml\"");
    set("CID_GENERAL_TBOX_includeArtists", "\"Low\\rBeach House\\rWire\"");
    testing::internal::CaptureStdout();
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "scheduling update all\n");
    EXPECT_EQ(updates(), std::vector<unsigned long>{0xFFFFFFFFul});
    EXPECT_EQ(readText(includeFile()), "Low\nBeach House\nWire");
    EXPECT_FALSE(exists(home.support() + "StagebeaconExcludeBands.txt")); // unchanged: untouched
    char path[1024];
    store().getiTunes_xml_path(path);
    EXPECT_STREQ(path, "/other/library.xml");
}

TEST_F(OkTest, SharingNamesAreValidatedBeforeAnythingOfTheGroupIsStored) {
    struct Case {
        const char *user, *first, *last, *alert;
    } cases[] = {
        {"", "Jane", "Doe", "Empty username. | Please enter a username."},
        {"jane_d", "Jane", "Doe",
         "Illegal characters. | You can only use letters, numbers, and spaces in you username."},
        {"jane", "J.", "Doe",
         "Illegal characters. | You can only use letters, numbers, and spaces in the first name."},
        {"jane", "Jane", "O'Doe",
         "Illegal characters. | You can only use letters, numbers, and spaces in the last name."},
    };
    open();
    set("CID_GENERAL_TBOX_libraryPath", "/other/library.xml");
    set("CID_SHARING_CBOX_shareCal", "1");
    for (const Case& c : cases) {
        set("CID_SHARING_TBOX_userName", std::string("\"") + c.user + "\"");
        set("CID_SHARING_TBOX_firstName", std::string("\"") + c.first + "\"");
        set("CID_SHARING_TBOX_lastName", std::string("\"") + c.last + "\"");
        press("CID_MAIN_BTTN_ok");
        EXPECT_EQ(lastAlert(), std::string("alert: ") + c.alert + " | OK");
        ASSERT_NE(openPreferencesWindow(), nullptr) << c.user;
    }
    EXPECT_FALSE(store().getSharing());
    char text[256];
    store().getUsername(text);
    EXPECT_STREQ(text, "");
    store().getiTunes_xml_path(text); // the group before the failure kept its change
    EXPECT_STREQ(text, "/other/library.xml");
    EXPECT_TRUE(updates().empty());
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(OkTest, SharingRegistration) {
    open();
    set("CID_SHARING_CBOX_shareCal", "true");
    set("CID_SHARING_TBOX_userName", "\"Jane Doe\"");
    server.enqueue(ScriptedReply::ok("<p>Error</p>"));
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(lastAlert(), "alert: Username already taken. | Sorry, that username is already "
                           "taken.  Please try a different username. | OK");
    ASSERT_NE(openPreferencesWindow(), nullptr);
    char user[64];
    store().getUsername(user); // a refused name is not kept
    EXPECT_STREQ(user, "");
    EXPECT_FALSE(store().getSharing());

    set("CID_SHARING_TBOX_userName", "Janet");
    goOffline();
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(lastAlert(), "alert: Internet Problem. | Internet Connection Problem... You must be "
                           "online to create a new username. | OK");
    ASSERT_NE(openPreferencesWindow(), nullptr);
    EXPECT_TRUE(updates().empty());

    setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
    set("CID_SHARING_TBOX_userName", "Jane");
    server.enqueue(ScriptedReply::ok("OK"));
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(openPreferencesWindow(), nullptr);
    EXPECT_EQ(server.requests().back().target.rfind(
                  "/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=Jane&", 0),
              0u);
    // A sharing change asks for the shared calendar and, with it, the concerts.
    EXPECT_EQ(updates(), std::vector<unsigned long>{0x01 | 0x10 | 0x02});
    EXPECT_TRUE(store().getSharing());
}

TEST_F(OkTest, FriendsChangeSurvivesCancelAndCountsOnOk) {
    open();
    server.enqueue(ScriptedReply::ok("exists"));
    set("CID_SHARING_TBOX_addFriend", "\"Bob  \"");
    press("CID_SHARING_BTTN_addFriend");
    press("CID_MAIN_BTTN_cancel");
    ASSERT_EQ(app->friendsList->count, 1u);
    EXPECT_STREQ(app->friendsList->head->name, "Bob");
    EXPECT_EQ(server.requests().back().target,
              "/sharing/sharing.php?TODO=USER_EXISTS&USERNAME=Bob");

    open();
    run("select", "CID_SHARING_LBOX_friendList 1");
    press("CID_SHARING_BTTN_removeFriend");
    EXPECT_EQ(app->friendsList->count, 0u);
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(updates(), std::vector<unsigned long>{0x01 | 0x08});
}

TEST_F(OkTest, ReleaseBoxesSetTheFilters) {
    store().addFormatFilter("Import");
    store().addFormatFilter("Live");
    open();
    EXPECT_FALSE(control(CID_RELEASES_CBOX_imports).value);
    EXPECT_TRUE(control(CID_RELEASES_CBOX_eps).value);
    for (const char* box : {"extraTracks", "singles", "eps", "remastered", "limitedEditions",
                            "soundtracks", "live", "nonActive"})
        set(std::string("CID_RELEASES_CBOX_") + box, "0");
    set("CID_RELEASES_CBOX_imports", "1");
    press("CID_MAIN_BTTN_ok");
    char filters[ProtectedData::FilterStringSize];
    store().getFilterString(filters);
    EXPECT_STREQ(filters, "Live@@Extra tracks@@CD-single@@EP@@Original recording remastered@@"
                          "Limited Edition@@Soundtrack@@Non-Active Artist@@");
    EXPECT_TRUE(updates().empty()); // the view filters; nothing to fetch
}

TEST_F(OkTest, ExportPathAndNotifier) {
    static std::vector<std::string> scripts;
    scripts.clear();
    setGrowlRegistrationRunner([](const std::string& script) { scripts.push_back(script); });
    open();
    set("CID_EXPORTING_CBOX_exportToiCal", "1");
    set("CID_EXPORTING_TBOX_iCalPath", "/cal/corestorage.ics");
    press("CID_EXPORTING_RBTN_exportAll");
    set("CID_NOTIFICATIONS_CBOX_concerts", "1");
    set("CID_NOTIFICATIONS_CBOX_albums", "0");
    press("CID_NOTIFICATIONS_RBTN_growlWindow");
    press("CID_MAIN_BTTN_ok");
    setGrowlRegistrationRunner(nullptr);

    EXPECT_TRUE(store().getExportTo_iCal());
    EXPECT_TRUE(store().getExportAllShows());
    EXPECT_TRUE(store().getNotificationWindowStyle());
    EXPECT_EQ(updates(), std::vector<unsigned long>{0x01 | 0x02});
    ASSERT_EQ(scripts.size(), 1u);
    // The window's registration keeps a blank before the comma of the full list.
    EXPECT_NE(scripts[0].find("allNotificationsList to \t\t\t{\"Upcoming Concert\" , \"Upcoming "
                              "Album Release\"}\n"),
              std::string::npos);
    EXPECT_NE(scripts[0].find("enabledNotificationsList to \t\t\t{\"Upcoming Concert\"}\n"),
              std::string::npos);
    EXPECT_EQ(scripts[0].size(), growlRegistrationScript(true, false).size() + 1);
}

TEST_F(OkTest, PhoneAccount) {
    struct Case {
        const char *user, *password, *alert;
    } cases[] = {
        {"", "pw1", "Empty username. | Please enter a username."},
        {"jane!", "pw1",
         "Illegal characters. | You can only use letters, numbers, and spaces in you username."},
        {"jane", "", "Empty password. | Please enter a password."},
        {"jane", "pass word",
         "Illegal characters. | You can only use letters and numbers in your password."},
    };
    open();
    set("CID_IPHONE_CBOX_sync", "1");
    for (const Case& c : cases) {
        set("CID_IPHONE_TBOX_userName", std::string("\"") + c.user + "\"");
        set("CID_IPHONE_TBOX_password", std::string("\"") + c.password + "\"");
        testing::internal::CaptureStdout();
        press("CID_MAIN_BTTN_ok");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "username or password changed\n");
        EXPECT_EQ(lastAlert(), std::string("alert: ") + c.alert + " | OK");
    }
    EXPECT_FALSE(store().getiPhoneSync());

    // The password lands only under the folder whose name holds the backslash.
    std::string odd = home.path() + "/Library/Application\\ Support/Stagebeacon/";
    ASSERT_TRUE(makeFolders(odd));
    set("CID_IPHONE_TBOX_userName", "jane");
    set("CID_IPHONE_TBOX_password", "secret9");
    server.enqueue(ScriptedReply::ok("<ERROR>"));
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(lastAlert(), "alert: Username already taken. | Sorry, that username is already "
                           "taken.  Please try a different username. | OK");
    std::string written = readText(odd + "pd");
    EXPECT_EQ(written, std::string("secret9") + std::string(64 - 7, '\0'));
    struct stat info {};
    ASSERT_EQ(stat((odd + "pd").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    EXPECT_FALSE(exists(home.support() + "pd"));
    EXPECT_FALSE(store().getiPhoneSync());

    server.enqueue(ScriptedReply::ok("welcome"));
    press("CID_MAIN_BTTN_ok");
    EXPECT_EQ(openPreferencesWindow(), nullptr);
    EXPECT_EQ(updates(), std::vector<unsigned long>{0x01 | 0x20});
    char password[64];
    store().getPassword(password);
    EXPECT_STREQ(password, "secret9");
}

} // namespace
