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
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0], "alert: New Stagebeacon Version Available | Version 3.0 finds shows "
                      "faster. | Download");
    EXPECT_EQ(log[1], "open page: " + server.url("/download/download_mac_redirect.php"));
    EXPECT_TRUE(exists(prefPath)) << "the settings are saved after the alert";
}

TEST_F(VersionCheck, CancelOpensNothingButStillSaves) {
    reply("<message>Get 3.0</message>");
    scriptAlertAnswer(AlertButton::Cancel);
    app->calGetData.checkForVersionUpdate();
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
    resetHeadless();
    unlink(prefPath.c_str());
    reply("<html>maintenance</html>");
    app->calGetData.checkForVersionUpdate();
    EXPECT_TRUE(newer());
    EXPECT_EQ(message(), "");
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

TEST_F(VersionCheck, StartUpAsksOnlyWhenDue) {
    reply("<current>");
    std::string future = std::to_string(time(nullptr) + 3600);
    writeText(prefPath, "/lib.xml\n" + future + "\n");
    auto later = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(later->calGetData.initialize(), 0);
    EXPECT_EQ(server.requestCount(), 0u);

    writeText(prefPath, "/lib.xml\n" + std::to_string(time(nullptr) - 10) + "\n");
    auto due = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(due->calGetData.initialize(), 0);
    EXPECT_EQ(server.requestCount(), 1u);

    unlink(prefPath.c_str()); // first start: never checked before
    auto first = std::make_unique<StagebeaconClass>();
    ASSERT_EQ(first->calGetData.initialize(), 0);
    EXPECT_EQ(server.requestCount(), 2u);
}

} // namespace
