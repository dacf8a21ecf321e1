// The whole product, headless: the real player loads the real plug-in, which
// talks to the real service (demo data, loopback port) from a temporary
// home holding the sample library. The script types a location, the test
// reads back what the user would see: pages opened, marks kept, and the
// shows a venue's feed brought in.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "loopback_server.h"
#include "service_process.h"
#include "temp_home.h"

namespace {

namespace fs = std::filesystem;

struct PlayerRun {
    int status = -1;
    std::vector<std::string> log;

    bool logged(const std::string& start) const {
        for (const std::string& line : log)
            if (line.rfind(start, 0) == 0) return true;
        return false;
    }
};

class PlayerEndToEnd : public ::testing::Test {
  protected:
    TempHome home;
    ServiceProcess service{STAGEBEACON_SERVICE_BINARY, home.path() + "/service.db"};
    std::string library = home.path() + "/Music/iTunes/iTunes Music Library.xml";

    void SetUp() override {
        ASSERT_GT(service.port(), 0);
        fs::create_directories(fs::path(library).parent_path());
        fs::copy_file(STAGEBEACON_SAMPLE_LIBRARY, library);
    }

    PlayerRun play(const std::string& script) {
        std::string scriptPath = home.path() + "/run.script";
        std::string logPath = home.path() + "/run.log";
        writeText(scriptPath, script);
        fs::remove(logPath);
        pid_t child = fork();
        if (child == 0) {
            setenv("STAGEBEACON_SERVICE", service.url().c_str(), 1);
            setenv("STAGEBEACON_GEOLOCATION", (service.url() + "/ip-location").c_str(), 1);
            execl(STAGEBEACON_PLAYER_BINARY, "stagebeacon-player", "--headless", "--script",
                  scriptPath.c_str(), "--log", logPath.c_str(), STAGEBEACON_PLUGIN_LIBRARY,
                  static_cast<char*>(nullptr));
            _exit(127);
        }
        PlayerRun run;
        int status = 0;
        if (waitpid(child, &status, 0) == child && WIFEXITED(status))
            run.status = WEXITSTATUS(status);
        std::istringstream lines(exists(logPath) ? readText(logPath) : "");
        for (std::string line; std::getline(lines, line);) run.log.push_back(line);
        return run;
    }

    // The saved concert records ("0@@...") of the preference file.
    std::vector<std::string> savedConcerts() {
        std::vector<std::string> out;
        std::istringstream lines(readText(home.support() + "StagebeaconPref"));
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("0@@", 0) == 0 && line.find("/show.php?") != std::string::npos)
                out.push_back(line);
        return out;
    }
};

// Clicks at a point the way a user does: the pointer arrives, then the
// button goes down and up.
std::string click(int x, int y) {
    std::ostringstream s;
    s << "move " << x << " " << y << "\ndown " << x << " " << y << "\nup " << x << " " << y
      << "\n";
    return s.str();
}

// Clicks the city field, replaces the city, state and radius, and searches.
std::string searchFor(const std::string& city, const std::string& state, const std::string& radius) {
    std::string clear;
    for (int i = 0; i < 12; ++i) clear += "key backspace\n";
    return click(150, 28) + clear + "type " + city + "\nkey tab\n" + clear + "type " + state +
           "\nkey tab\n" + clear + "type " + radius + "\nkey return\n";
}

// The first show in the list sits right under the list's top edge.
constexpr int kFirstShowX = 100;
constexpr int kFirstShowY = 140;

TEST_F(PlayerEndToEnd, TypedLocationFindsShowsAClickOpensOneAndAMarkSurvivesARestart) {
    std::string search = "show 0 0 1280 800\nwait-updates 60\n" + searchFor("Boston", "MA", "50") +
                         "wait-updates 60\nidle 2\n" +
                         click(kFirstShowX, kFirstShowY) + "right " +
                         std::to_string(kFirstShowX) + " " + std::to_string(kFirstShowY) +
                         "\nidle 2\nquit\n";
    PlayerRun first = play(search);
    ASSERT_EQ(first.status, 0) << ::testing::PrintToString(first.log);

    // The demo has library artists' shows around Boston; they were filed and saved.
    std::vector<std::string> shows = savedConcerts();
    ASSERT_FALSE(shows.empty());
    std::string pref = readText(home.support() + "StagebeaconPref");
    EXPECT_NE(pref.find("Boston@@MA@@50@@"), std::string::npos);
    EXPECT_NE(pref.find("@@Radiohead@@"), std::string::npos);

    // The click went through the service's click-through page.
    EXPECT_TRUE(first.logged("open page: " + service.url() + "/clickthrough.php?target=" +
                             service.url() + "/show.php?artist=Radiohead"))
        << ::testing::PrintToString(first.log);

    // The secondary click marked exactly one show (second field: attending).
    int marked = 0;
    for (const std::string& line : shows) marked += line.rfind("0@@1@@", 0) == 0;
    ASSERT_EQ(marked, 1) << pref;

    // A new start searches again (forced by a new radius) and keeps the mark.
    PlayerRun second = play("show 0 0 1280 800\nwait-updates 60\n" + searchFor("Boston", "MA", "60") +
                            "wait-updates 60\nidle 2\nquit\n");
    ASSERT_EQ(second.status, 0) << ::testing::PrintToString(second.log);
    pref = readText(home.support() + "StagebeaconPref");
    EXPECT_NE(pref.find("Boston@@MA@@60@@"), std::string::npos);
    marked = 0;
    for (const std::string& line : savedConcerts()) marked += line.rfind("0@@1@@", 0) == 0;
    EXPECT_EQ(marked, 1) << pref;
}

TEST_F(PlayerEndToEnd, PreferencesStartTheirUpdatesAndTracksNotifyInBothStyles) {
    PlayerRun run = play(
        "show 0 0 1280 800\nwait-updates 60\n" + searchFor("Boston", "MA", "75") +
        "wait-updates 60\n"
        // A friend added in the preferences fetches that friend's shows.
        "configure\nset CID_SHARING_TBOX_addFriend \"alice\"\n"
        "press CID_SHARING_BTTN_addFriend\nset CID_NOTIFICATIONS_CBOX_concerts 1\n"
        "press CID_MAIN_BTTN_ok\nwait-updates 60\n"
        // The own window first, then the desktop service.
        "track \"Radiohead\" \"In Rainbows\"\n"
        "configure\nset CID_NOTIFICATIONS_RBTN_growlWindow 1\npress CID_MAIN_BTTN_ok\n"
        "play \"Norah Jones\" \"Come Away with Me\"\nquit\n");
    ASSERT_EQ(run.status, 0) << ::testing::PrintToString(run.log);
    EXPECT_TRUE(run.logged("preferences: opened"));
    EXPECT_TRUE(run.logged("notify window: Artist: Radiohead")) << ::testing::PrintToString(run.log);
    EXPECT_TRUE(run.logged("notify: Upcoming Concert | Artist: Norah Jones"))
        << ::testing::PrintToString(run.log);

    std::string pref = readText(home.support() + "StagebeaconPref");
    EXPECT_NE(pref.find("\nalice@@"), std::string::npos) << pref;
    // Friends' shows are saved as records of kind 2.
    EXPECT_NE(pref.find("\n2@@"), std::string::npos) << pref;
}

// A venue calendar with shows `days` from today by two library artists
// the demo data does not list near Boston.
std::string venueCalendar() {
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-TIMEZONE:America/New_York\r\n";
    const std::pair<int, const char*> shows[] = {{5, "Kraftwerk"}, {8, "Wilco / Beck"}};
    for (const auto& [days, summary] : shows) {
        char date[16];
        std::time_t when = std::time(nullptr) + days * 86400;
        std::strftime(date, sizeof date, "%Y%m%d", std::localtime(&when));
        text += std::string("BEGIN:VEVENT\r\nUID:") + date + "@paradise\r\nDTSTART:" + date +
                "T200000\r\nSUMMARY:" + summary +
                "\r\nLOCATION:Paradise Rock Club\\, 967 Commonwealth Ave\\, Boston\\, MA 02215\r\n"
                "URL:http://127.0.0.1/paradise/" + date + "\r\nEND:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

TEST_F(PlayerEndToEnd, AFeedAddedAndRefreshedBringsItsShowsIntoTheList) {
    LoopbackServer venue;
    venue.onPath("/calendar.ics", ScriptedReply::ok(venueCalendar()));
    const std::string db = " --db '" + home.path() + "/service.db' >/dev/null";
    const std::string service = STAGEBEACON_SERVICE_BINARY;
    ASSERT_EQ(std::system((service + " feeds add " + venue.url("/calendar.ics") + " --site 1" + db).c_str()), 0);
    ASSERT_EQ(std::system((service + " feeds refresh" + db).c_str()), 0);

    PlayerRun run = play("show 0 0 1280 800\nwait-updates 60\n" + searchFor("Boston", "MA", "50") +
                         "wait-updates 60\nidle 2\nquit\n");
    ASSERT_EQ(run.status, 0) << ::testing::PrintToString(run.log);
    // One show per performer, at the feed's venue, with its own address.
    std::string pref = readText(home.support() + "StagebeaconPref");
    for (const char* artist : {"Kraftwerk", "Wilco", "Beck"})
        EXPECT_NE(pref.find(std::string("@@") + artist + "@@Paradise Rock Club@@"), std::string::npos)
            << artist << "\n" << pref;
    EXPECT_NE(pref.find("http://127.0.0.1/paradise/"), std::string::npos) << pref;
}

} // namespace
