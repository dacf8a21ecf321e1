// The player's failures: each is one line on stderr and a non-zero exit,
// and a script that goes wrong still stops the plug-in (hide, cleanup)
// and sends nothing after the bad line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_player.h"

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(PlayerErrors, LoadFailuresAreOneLineWithStatusOne) {
    TempHome home;
    PlayerRun missing = runPlayer(home, "", "/no/such/plugin.so");
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, StartsWith("stagebeacon-player: cannot load plug-in "
                                           "/no/such/plugin.so: "));
    EXPECT_EQ(missing.errors.find('\n'), missing.errors.size() - 1);

    PlayerRun noEntry = runPlayer(home, "", NO_ENTRY_PLUGIN);
    EXPECT_EQ(noEntry.status, 1);
    EXPECT_EQ(noEntry.errors, std::string("stagebeacon-player: ") + NO_ENTRY_PLUGIN +
                                  " has no entry point iTunesPluginMainMachO\n");

    PlayerRun initFails = runPlayer(home, "", FAKE_PLUGIN, {}, "init-fails");
    EXPECT_EQ(initFails.status, 1);
    EXPECT_THAT(initFails.errors, HasSubstr("init failed with status -50"));

    PlayerRun noHandler = runPlayer(home, "", FAKE_PLUGIN, {}, "no-register");
    EXPECT_EQ(noHandler.status, 1);
    EXPECT_THAT(noHandler.errors, HasSubstr("registered no visual handler at init (status 0)"));
    EXPECT_EQ(noHandler.log.back(), "entry clr ");
}

TEST(PlayerErrors, UsageMistakesExitTwo) {
    TempHome home;
    EXPECT_EQ(runPlayer(home, "", "").status, 2);
    EXPECT_EQ(runPlayer(home, "", FAKE_PLUGIN, {"--size", "0x5"}).status, 2);
    EXPECT_EQ(runPlayer(home, "", FAKE_PLUGIN, {"--frobnicate"}).status, 2);
}

struct BadLine {
    const char* name;
    const char* script; // the third line is the bad one
    const char* error;
};

class PlayerBadLine : public ::testing::TestWithParam<BadLine> {};

TEST_P(PlayerBadLine, StopsAtTheLineAndStillCleansUp) {
    TempHome home;
    PlayerRun run = runPlayer(home, std::string("show 0 0 10 10\nidle 1\n") + GetParam().script +
                                        "\nidle 1\nconfigure\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, run.scriptPath + ":3: " + GetParam().error + "\n");
    EXPECT_EQ(linesStarting(run.log, "handler null").size(), 1u);
    EXPECT_TRUE(linesStarting(run.log, "handler cnfg").empty());
    ASSERT_GE(run.log.size(), 3u);
    EXPECT_EQ(std::vector<std::string>(run.log.end() - 3, run.log.end()),
              (std::vector<std::string>{"handler hide", "handler clr ", "entry clr "}));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, PlayerBadLine,
    ::testing::Values(BadLine{"UnknownVerb", "frobnicate 1", "unknown command frobnicate"},
                      BadLine{"NotANumber", "idle x", "idle: 'x' is not a number (0 or more)"},
                      BadLine{"ArgumentCount", "show 1 2 3", "show: expected 4 arguments, got 3"},
                      BadLine{"OpenQuote", "track \"Low", "unterminated quote"},
                      BadLine{"PluginRefuses", "fail now", "fail: it broke"},
                      BadLine{"UnwritableSnapshot", "snapshot /no/such/folder/x.png",
                              "snapshot: cannot write /no/such/folder/x.png: error while "
                              "writing to output stream"}),
    [](const ::testing::TestParamInfo<BadLine>& info) { return std::string(info.param.name); });

} // namespace
