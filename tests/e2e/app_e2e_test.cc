// The desktop app, headless, beside a player it has never heard of: the
// real plug-in fetches shows from the real service (demo data), and a fake
// MPRIS player on a private session bus starting a Radiohead track raises
// the show notification.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "fake_mpris_player.h"
#include "private_bus.h"
#include "service_process.h"
#include "temp_home.h"

namespace {

namespace fs = std::filesystem;

bool fileHas(const std::string& path, const std::string& text) {
    return exists(path) && readText(path).find(text) != std::string::npos;
}

TEST(AppEndToEnd, AnMprisPlayersTrackRaisesTheShowNotification) {
    TempHome home;
    ServiceProcess service{STAGEBEACON_SERVICE_BINARY, home.path() + "/service.db"};
    ASSERT_GT(service.port(), 0);
    PrivateBus bus;
    ASSERT_FALSE(bus.address().empty()) << "dbus-daemon did not start";

    std::string library = home.path() + "/Music/iTunes/iTunes Music Library.xml";
    fs::create_directories(fs::path(library).parent_path());
    fs::copy_file(STAGEBEACON_SAMPLE_LIBRARY, library);
    fs::create_directories(home.support());
    // Boston, searched long ago (so a search is due), concert notifications
    // in the plug-in's own window.
    const std::string pref = home.support() + "StagebeaconPref";
    writeText(pref, library + "\n1\n2000@@1@@1\nBoston@@MA@@75@@4.236010e+01@@-7.105890e+01\n"
                              "0@@0@@0@@0@@0@@0@@0@@1@@1@@0@@0\n-\n-@@-@@-@@\n");

    const std::string log = home.path() + "/app.log";
    pid_t app = fork();
    if (app == 0) {
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
        setenv("STAGEBEACON_SERVICE", service.url().c_str(), 1);
        setenv("STAGEBEACON_GEOLOCATION", (service.url() + "/ip-location").c_str(), 1);
        execl(STAGEBEACON_APP_BINARY, "stagebeacon", "--headless", "--log", log.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    ASSERT_GT(app, 0);
    bool saved = waitFor([&] { return fileHas(pref, "@@Radiohead@@"); }, 60);
    EXPECT_TRUE(saved) << (exists(log) ? readText(log) : "no log");

    FakeMprisPlayer player(bus.address(), "fake");
    ASSERT_TRUE(player.ready());
    player.announce("'Playing'", "{'xesam:artist': <['Radiohead']>, 'xesam:album': <'OK "
                                 "Computer'>, 'xesam:title': <'Airbag'>}");
    bool notified = waitFor([&] { return fileHas(log, "notify window: Artist: Radiohead"); }, 10);

    kill(app, SIGTERM);
    int status = -1;
    waitpid(app, &status, 0);
    std::string text = exists(log) ? readText(log) : "";
    EXPECT_TRUE(notified) << text;
    EXPECT_NE(text.find("mpris: play Radiohead | OK Computer | Airbag "
                        "(org.mpris.MediaPlayer2.fake)"),
              std::string::npos)
        << text;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

} // namespace
