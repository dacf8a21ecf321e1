// The version check against a loopback service: what the store learns, when
// the alert comes, what "Download" opens, when the settings are saved, and
// when start-up asks at all.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include "client_state.h"
#include "library/file_io.h"
#include "loopback_server.h"
#include "platform/headless.h"
#include "platform/main_thread.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "temp_home.h"

namespace {

class VersionCheck : public ::testing::Test {
  protected:
    void SetUp() override {
        resetHttpClient();
        resetHeadless();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        makeFolders(home.support());
        app->protectedData.setStagebeaconPref(prefPath.c_str());
        app->protectedData.setiTunes_xml_path("/lib.xml");
    }
    void TearDown() override {
        (void)drainMainThreadQueue(); // no alert outlives its test
        unsetenv("STAGEBEACON_SERVICE");
        resetHttpClient();
        resetHeadless();
    }
    void reply(const std::string& page) {
        server.onPath("/current_version.php", ScriptedReply::ok(page));
    }
    std::string message() {
        char text[ProtectedData::UpdateMessageSize];
        app->protectedData.getUpdateMessage(text);
        return text;
    }
    bool newer() { return app->protectedData.getStagebeacon_version_update(); }

    TempHome home;
    LoopbackServer server;
    std::string prefPath = home.support() + "StagebeaconPref";
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
};

TEST_F(VersionCheck, CurrentReleaseClearsTheFlagQuietly) {
    app->protectedData.setStagebeacon_version_update(true);
    reply("<html><current></html>");
    app->calGetData.checkForVersionUpdate();
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].target, "/current_version.php?VERSION=2.9&OS=MAC");
    EXPECT_FALSE(newer());
    EXPECT_TRUE(headlessLogLines().empty());
    EXPECT_FALSE(exists(prefPath));
}

TEST_F(VersionCheck, NewerReleaseWithMessageOffersTheDownload) {
    reply("<p><message>Version 3.0 finds shows faster.</message><message>second</message>");
    app->calGetData.checkForVersionUpdate();
    EXPECT_TRUE(newer());
    EXPECT_EQ(message(), "Version 3.0 finds shows faster.");
    EXPECT_TRUE(exists(prefPath)) << "the settings are saved with the answer";
    EXPECT_TRUE(headlessLogLines().empty()) << "the alert waits for the main thread";
    EXPECT_EQ(drainMainThreadQueue(), 1u);
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0], "alert: New Stagebeacon Version Available | Version 3.0 finds shows "
                      "faster. | Download");
    EXPECT_EQ(log[1], "open page: " + server.url("/download/download_mac_redirect.php"));
}

TEST_F(VersionCheck, CancelOpensNothingButStillSaves) {
    reply("<message>Get 3.0</message>");
    scriptAlertAnswer(AlertButton::Cancel);
    app->calGetData.checkForVersionUpdate();
    (void)drainMainThreadQueue();
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0], "alert: New Stagebeacon Version Available | Get 3.0 | Cancel");
    EXPECT_TRUE(exists(prefPath));
}

TEST_F(VersionCheck, ReplyShapes) {
    // Both tags: current wins, the message is ignored.
    reply("<message>ignored</message><current>");
    app->calGetData.checkForVersionUpdate();
    EXPECT_FALSE(newer());
    EXPECT_EQ(message(), "");

    // An unclosed message runs to the end of the page; the store keeps 511.
    reply("<message>" + std::string(600, 'm'));
    app->calGetData.checkForVersionUpdate();
    EXPECT_TRUE(newer());
    EXPECT_EQ(message(), std::string(511, 'm'));

    // Neither tag: newer, no message, so no alert and no save.
    (void)drainMainThreadQueue();
    resetHeadless();
    unlink(prefPath.c_str());
    reply("<html>maintenance</html>");
    app->calGetData.checkForVersionUpdate();
    EXPECT_TRUE(newer());
    EXPECT_EQ(message(), "");
    EXPECT_EQ(drainMainThreadQueue(), 0u);
    EXPECT_TRUE(headlessLogLines().empty());
    EXPECT_FALSE(exists(prefPath));
}

TEST_F(VersionCheck, NoConnectionChangesNothing) {
    app->protectedData.setStagebeacon_version_update(true);
    app->protectedData.setUpdateMessage("kept");
    server.stop();
    app->calGetData.checkForVersionUpdate();
    EXPECT_TRUE(newer());
    EXPECT_EQ(message(), "kept");
    EXPECT_TRUE(headlessLogLines().empty());
}

// Start-up only notes a due check; the update thread asks before its
// first update, so the first frame never waits for the service.
TEST_F(VersionCheck, StartUpLeavesADueCheckToTheUpdateThread) {
    reply("<message>Get 3.0</message>");
    auto owes = [](StagebeaconClass& started) {
        return (started.calGetData.startupWork.load() & CalGetData::kStartupVersionCheck) != 0;
    };
    std::string future = std::to_string(time(nullptr) + 3600);
    writeText(prefPath, "/lib.xml\n" + future + "\n");
    auto later = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(later->calGetData.initialize(), 0);
    EXPECT_FALSE(owes(*later));

    unlink(prefPath.c_str()); // first start: never checked before
    auto first = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(first->calGetData.initialize(), 0);
    EXPECT_TRUE(owes(*first));

    writeText(prefPath, "/lib.xml\n" + std::to_string(time(nullptr) - 10) + "\n");
    auto due = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(due->calGetData.initialize(), 0);
    ASSERT_TRUE(owes(*due));
    EXPECT_EQ(server.requestCount(), 0u) << "initialize never asks the service";

    // A stop with no answer keeps the check owed; the next thread asks.
    server.onPath("/current_version.php", ScriptedReply::status(503, "Unavailable"));
    due->protectedData.setForceUpdate(true);
    EXPECT_EQ(due->calGetData.runStartupWork(), 1);
    EXPECT_TRUE(owes(*due));
    due->protectedData.setForceUpdate(false);
    reply("<message>Get 3.0</message>");
    EXPECT_EQ(due->calGetData.runStartupWork(), 0);
    EXPECT_FALSE(owes(*due));
    EXPECT_TRUE(due->protectedData.getStagebeacon_version_update());
    EXPECT_EQ(drainMainThreadQueue(), 1u) << "the alert is handed to the main thread";
}

} // namespace
