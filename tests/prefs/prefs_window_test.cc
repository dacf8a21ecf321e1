// Opening the preferences window, its enable rules, the friend and nearby
// lists, the tabs and the script verbs' refusals.
#include "prefs_fixture.h"

#include "platform/headless.h"

namespace {

using WindowTest = PrefsTest;

TEST_F(WindowTest, OpeningFillsAndEnablesByTheStore) {
    writeText(includeFile(), "\nLow\n\n");
    store().setExportTo_iCal(true);
    store().setShareAllShows(true);
    open();
    EXPECT_EQ(headlessLogLines().back(), "preferences: opened");
    EXPECT_EQ(control(CID_GENERAL_TBOX_libraryPath).text, "/music/library.xml");
    EXPECT_EQ(control(CID_GENERAL_TBOX_includeArtists).text, "Low");
    EXPECT_TRUE(control(CID_SHARING_RBTN_shareAll).value);
    EXPECT_FALSE(control(CID_SHARING_RBTN_shareHighlighted).value);
    EXPECT_FALSE(control(CID_SHARING_TBOX_userName).enabled); // sharing is off
    EXPECT_FALSE(control(CID_SHARING_BTTN_removeFriend).enabled);
    EXPECT_FALSE(control(CID_SHARING_LBOX_seeLocalFriends).visible);
    EXPECT_FALSE(control(CID_IPHONE_TBOX_password).enabled);
    EXPECT_TRUE(control(CID_EXPORTING_TBOX_iCalPath).enabled); // 10.4 writes a file

    press("CID_SHARING_CBOX_shareCal");
    EXPECT_TRUE(control(CID_SHARING_TBOX_lastName).enabled);
    press("CID_SHARING_RBTN_shareHighlighted");
    EXPECT_FALSE(control(CID_SHARING_RBTN_shareAll).value);
    press("CID_MAIN_BTTN_cancel");
    EXPECT_FALSE(store().getSharing()); // Cancel stores nothing

    // From 10.5 on the export has no path to choose; off, nothing is enabled.
    struct Case {
        float os;
        bool exporting, path, radios;
    } cases[] = {
        {10.5f, true, false, true}, {9.2f, true, false, true}, {10.4f, false, false, false}};
    for (const Case& c : cases) {
        store().setOSXVersion(c.os);
        store().setExportTo_iCal(c.exporting);
        open();
        EXPECT_EQ(control(CID_EXPORTING_TBOX_iCalPath).enabled, c.path) << c.os;
        EXPECT_EQ(control(CID_EXPORTING_BTTN_iCalPath).enabled, c.path) << c.os;
        EXPECT_EQ(control(CID_EXPORTING_RBTN_exportAll).enabled, c.radios) << c.os;
        press("CID_MAIN_BTTN_cancel");
    }
}

TEST_F(WindowTest, ChoosersAndPages) {
    open();
    scriptFileChoice("/home/me/Music/iTunes Music Library.xml");
    press("CID_GENERAL_BTTN_libraryPath");
    scriptFileCancel();
    press("CID_GENERAL_BTTN_libraryPath"); // a cancelled dialog changes nothing
    EXPECT_EQ(control(CID_GENERAL_TBOX_libraryPath).text,
              "/home/me/Music/iTunes Music Library.xml");
    set("CID_EXPORTING_CBOX_exportToiCal", "1");
    scriptFileChoice("/cal/corestorage.ics");
    press("CID_EXPORTING_BTTN_iCalPath");
    EXPECT_EQ(control(CID_EXPORTING_TBOX_iCalPath).text, "/cal/corestorage.ics");
    press("CID_IPHONE_BTTN_getApp");
    press("CID_IPHONE_BTTN_watchDemo");

    std::vector<std::string> log = headlessLogLines();
    ASSERT_GE(log.size(), 5u);
    std::vector<std::string> last(log.end() - 5, log.end());
    EXPECT_EQ(last[0], "open file: Locate 'iTunes Music Library.xml' | "
                       "/home/me/Music/iTunes Music Library.xml");
    EXPECT_EQ(last[1], "open file: Locate 'iTunes Music Library.xml' | (cancel)");
    EXPECT_EQ(last[2], "save file: Specify iCal file export location. | /cal/corestorage.ics");
    EXPECT_EQ(last[3], "open page: " + server.url("/iphonelink.php"));
    EXPECT_EQ(last[4], "open page: " + server.url("/iphone.php"));
}

TEST_F(WindowTest, AddingAFriend) {
    open();
    set("CID_SHARING_TBOX_addFriend", "\"   \"");
    press("CID_SHARING_BTTN_addFriend");
    // The illegal-characters alert only warns: the name is checked and added.
    server.enqueue(ScriptedReply::ok("yes"));
    set("CID_SHARING_TBOX_addFriend", "bob.smith");
    press("CID_SHARING_BTTN_addFriend");
    server.enqueue(ScriptedReply::ok("Error"));
    set("CID_SHARING_TBOX_addFriend", "nobody");
    press("CID_SHARING_BTTN_addFriend");
    server.enqueue(ScriptedReply::ok("yes"));
    set("CID_SHARING_TBOX_addFriend", "BOB.SMITH"); // the same ignoring case
    press("CID_SHARING_BTTN_addFriend");
    EXPECT_EQ(control(CID_SHARING_TBOX_addFriend).text, "");
    goOffline();
    set("CID_SHARING_TBOX_addFriend", "carol");
    press("CID_SHARING_BTTN_addFriend");

    std::vector<std::string> expected = {
        "alert: Empty username. | Please enter a friend name in the text box. | OK",
        "alert: Illegal characters. | Names can only only contain letters, numbers, and spaces. | "
        "OK",
        "alert: Unknown username. | That friend name could not be found. | OK",
        "alert: Illegal characters. | Names can only only contain letters, numbers, and spaces. | "
        "OK",
        "alert: Internet problem. | There seemed to be a problem with your internet connection.  "
        "You must be online to add a friend. | OK"};
    EXPECT_EQ(alerts(), expected);
    PreferencesWindow& window = *openPreferencesWindow();
    ASSERT_EQ(window.model.friendRows.size(), 1u);
    EXPECT_EQ(window.model.friendRows[0].cells[0], "bob.smith");
    EXPECT_EQ(control(CID_SHARING_TBOX_addFriend).text, "carol"); // kept after a failure
    EXPECT_TRUE(window.friendsListChanged);
}

TEST_F(WindowTest, NearbyUsersAreListedSortedAndSelected) {
    app->friendsList->add(new FRIENDNAME("amy"));
    store().setCurCity("Portland");
    store().setCurState("OR");
    PreferencesWindow& window = open();
    server.enqueue(ScriptedReply::ok(
        "<entry><USERNAME>zed</USERNAME><CITY>Salem</CITY></entry>"
        "<entry><USERNAME>ann</USERNAME><FIRSTNAME>Ann</FIRSTNAME><CITY>Tigard</CITY></entry>"
        "<entry><USERNAME>max</USERNAME><CITY>Bend</CITY><STATE>OR</STATE></entry>"));
    press("CID_SHARING_BTTN_seeLocalFriends");
    EXPECT_EQ(server.requests().back().target,
              "/sharing/sharing.php?TODO=GETLOCALUSERS&CITY=Portland&STATE=OR");
    EXPECT_FALSE(control(CID_SHARING_BTTN_seeLocalFriends).visible);
    EXPECT_TRUE(control(CID_SHARING_TEXT_lboxHeader).visible);

    auto order = [&] {
        std::string names;
        for (const ListRow& row : window.model.nearbyRows)
            names += row.cells[0] + " ";
        return names;
    };
    EXPECT_EQ(order(), "zed ann max ");
    preferencesColumnClicked("CITY");
    EXPECT_EQ(order(), "max zed ann ");
    preferencesColumnClicked("CITY");
    EXPECT_EQ(order(), "ann zed max ");
    preferencesColumnClicked("UNME");
    EXPECT_EQ(order(), "ann max zed ");
    EXPECT_TRUE(nearbyItemLess(window.sharers, 1, 2, "FNME")); // "" before "Ann"
    EXPECT_FALSE(nearbyItemLess(window.sharers, 2, 1, "FNME"));
    EXPECT_TRUE(nearbyItemLess(window.sharers, 1, 3, "NONE")); // other columns: item order
    EXPECT_FALSE(nearbyItemLess(window.sharers, 3, 1, "NONE"));

    run("select", "CID_SHARING_LBOX_friendList 1");
    EXPECT_TRUE(control(CID_SHARING_BTTN_removeFriend).enabled);
    EXPECT_EQ(control(CID_SHARING_TBOX_addFriend).text, "amy");
    run("select", "CID_SHARING_LBOX_seeLocalFriends 2"); // as shown: max
    EXPECT_EQ(window.iFriendListItemSelected, -1);
    EXPECT_EQ(window.iLocalListItemSelected, 3);
    EXPECT_FALSE(control(CID_SHARING_BTTN_removeFriend).enabled);
    EXPECT_EQ(control(CID_SHARING_TBOX_addFriend).text, "max");
    run("select", "CID_SHARING_LBOX_seeLocalFriends 0");
    EXPECT_EQ(control(CID_SHARING_TBOX_addFriend).text, "");
}

TEST_F(WindowTest, TabsAndScriptRefusals) {
    std::string error;
    EXPECT_FALSE(preferencesScriptCommand("press", "CID_MAIN_BTTN_ok", &error));
    EXPECT_EQ(error, "no preferences window is open");

    PreferencesWindow& window = open();
    run("select-tab", "3");
    for (int position = 1; position <= 6; ++position)
        EXPECT_EQ(tabPaneShown(window, position), position == 3) << position;
    press("CID_MAIN_BTTN_cancel");
    EXPECT_TRUE(tabPaneShown(open(), 3)); // a new window opens on the last tab

    struct Case {
        const char *verb, *arguments, *error;
    } cases[] = {
        {"select-tab", "7", "no tab '7'"},
        {"set", "CID_NOPE \"x\"", "unknown control 'CID_NOPE'"},
        {"set", "CID_SHARING_CBOX_shareCal maybe", "expected 1, 0, true or false, not 'maybe'"},
        {"set", "CID_SHARING_TBOX_addFriend \"open", "missing closing quote"},
        {"set", "CID_SHARING_TBOX_userName Jane", "CID_SHARING_TBOX_userName is disabled"},
        {"press", "CID_SHARING_LBOX_seeLocalFriends", "CID_SHARING_LBOX_seeLocalFriends is hidden"},
        {"press", "CID_SHARING_TBOX_addFriend", "CID_SHARING_TBOX_addFriend cannot be pressed"},
        {"select", "CID_SHARING_LBOX_friendList 1", "no row '1' in CID_SHARING_LBOX_friendList"},
        {"click", "CID_MAIN_BTTN_ok", "unknown command 'click'"},
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(preferencesScriptCommand(c.verb, c.arguments, &error)) << c.arguments;
        EXPECT_EQ(error, c.error);
    }
}

} // namespace
