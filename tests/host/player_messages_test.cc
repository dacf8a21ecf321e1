// What the plug-in receives from a headless script: the message sequence,
// key codes, mouse-monitor delivery, snapshots, waiting for background
// work and the scripted answers behind the host services.
#include <gtest/gtest.h>

#include <cairo.h>

#include <chrono>
#include <cstdint>

#include "run_player.h"

namespace {

using Lines = std::vector<std::string>;

// Size of a PNG, and whether every pixel is opaque argb.
struct Png {
    int width = 0;
    int height = 0;
    bool all(uint32_t argb) const { return uniform && color == argb; }
    bool uniform = true;
    uint32_t color = 0;
};

Png readPng(const std::string& path) {
    Png png;
    cairo_surface_t* image = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(image) == CAIRO_STATUS_SUCCESS) {
        png.width = cairo_image_surface_get_width(image);
        png.height = cairo_image_surface_get_height(image);
        const unsigned char* data = cairo_image_surface_get_data(image);
        int stride = cairo_image_surface_get_stride(image);
        png.color = *reinterpret_cast<const uint32_t*>(data);
        for (int y = 0; y < png.height; ++y)
            for (int x = 0; x < png.width; ++x)
                if (reinterpret_cast<const uint32_t*>(data + y * stride)[x] != png.color)
                    png.uniform = false;
    }
    cairo_surface_destroy(image);
    return png;
}

TEST(PlayerMessages, EveryCommandInOrder) {
    TempHome home;
    const std::string shot = home.path() + "/shot.png";
    PlayerRun run = runPlayer(home, "# every command the player knows\n"
                                    "show 10 20 100 50\n"
                                    "idle 2\n"
                                    "\n"
                                    "key return\n"
                                    "type Ab\n"
                                    "down 15 25\n"
                                    "up 15 25\n"
                                    "ctrl-up 16 26\n"
                                    "right 17 27\n"
                                    "move 18 28\n"
                                    "wheel 19 29 -3\n"
                                    "track \"Low\" \"Things We Lost\"\n"
                                    "play \"A \\\"B\\\"\" \"\"\n"
                                    "pause\n"
                                    "unpause\n"
                                    "configure\n"
                                    "resize 0 0 40 30\n"
                                    "snapshot " +
                                        shot +
                                        "\n"
                                        "sleep 1\n"
                                        "hide\n"
                                        "quit\n"
                                        "idle 1\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    ASSERT_FALSE(run.log.empty());
    char resolved[4096];
    ASSERT_TRUE(realpath(FAKE_PLUGIN, resolved));
    EXPECT_EQ(run.log[0], std::string("entry init version 9.20 headless 1 file ") + resolved);
    Lines rest(run.log.begin() + 1, run.log.end());
    EXPECT_EQ(rest, (Lines{"handler init",
                           "handler show 20 10 70 110 port 110x70",
                           "handler null",
                           "handler null",
                           "handler vevt key 13",
                           "handler vevt key 65",
                           "handler vevt key 98",
                           "handler vevt what 1 15 25",
                           "monitor 1 15 25 button 1 mods 0 delta 0",
                           "monitor 2 15 25 button 1 mods 0 delta 0",
                           "monitor 2 16 26 button 1 mods 4096 delta 0",
                           "monitor 1 17 27 button 2 mods 0 delta 0",
                           "monitor 2 17 27 button 2 mods 0 delta 0",
                           "monitor 5 18 28 button 0 mods 0 delta 0",
                           "monitor 10 19 29 button 0 mods 0 delta -3",
                           "handler ctrk [Low] [Things We Lost] name [Things We Lost]",
                           "handler vply [A \"B\"] [] name []",
                           "handler vpau",
                           "handler vunp",
                           "handler cnfg",
                           "handler swin 0 0 30 40 port 40x30",
                           "handler vupd",
                           "snapshot: " + shot,
                           "handler hide",
                           "handler clr ",
                           "entry clr "}));
    Png png = readPng(shot);
    EXPECT_EQ(png.width, 40);
    EXPECT_EQ(png.height, 30);
    EXPECT_TRUE(png.all(0xFF0000FF)) << std::hex << png.color; // the update painted it blue
}

TEST(PlayerMessages, KeyCodesFromNamesNumbersAndTypedText) {
    TempHome home;
    PlayerRun run = runPlayer(home, "key tab\nkey enter\nkey backspace\nkey space\n"
                                    "key left\nkey right\nkey up\nkey down\nkey 200\n"
                                    "type  a b \ntype \"q\\\"\\\\\"\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    Lines codes;
    for (const std::string& line : linesStarting(run.log, "handler vevt key "))
        codes.push_back(line.substr(17));
    EXPECT_EQ(codes, (Lines{"9", "13", "8", "32", "28", "29", "30", "31", "200", "97", "32", "98",
                            "113", "34", "92"}));
}

TEST(PlayerMessages, MonitorGetsListedKindsOnlyWhileInstalled) {
    TempHome home;
    PlayerRun run = runPlayer(home, "down 1 1\n"
                                    "kinds 1 5 5\n"
                                    "show 0 0 50 50\n"
                                    "down 2 2\nup 2 2\nmove 3 3\nwheel 4 4 1\nright 4 4\n"
                                    "hide\n"
                                    "move 5 5\n"
                                    "show 0 0 50 50\n"
                                    "move 6 6\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(
        linesStarting(run.log, "monitor"),
        (Lines{"monitor 1 2 2 button 1 mods 0 delta 0", "monitor 5 3 3 button 0 mods 0 delta 0",
               "monitor 1 4 4 button 2 mods 0 delta 0", "monitor 5 6 6 button 0 mods 0 delta 0"}));
    // The event record still reports every press, monitor or not.
    EXPECT_EQ(linesStarting(run.log, "handler vevt what 1").size(), 2u);
}

TEST(PlayerMessages, WaitUpdatesTicksUntilTheWorkEnds) {
    TempHome home;
    const std::string shot = home.path() + "/after.png";
    auto started = std::chrono::steady_clock::now();
    // The work paints red frames from its own thread while the window
    // changes and is saved; the update after the work paints blue.
    PlayerRun run = runPlayer(home, "show 0 0 10 10\nbusy 300\nresize 5 7 20 10\n"
                                    "snapshot " +
                                        home.path() +
                                        "/during.png\n"
                                        "wait-updates 10\nsnapshot " +
                                        shot + "\n");
    auto elapsed = std::chrono::steady_clock::now() - started;
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_LT(elapsed, std::chrono::seconds(5));
    EXPECT_GE(linesStarting(run.log, "handler null").size(), 3u);
    Png png = readPng(shot);
    EXPECT_EQ(png.width, 25);
    EXPECT_EQ(png.height, 17);
    EXPECT_TRUE(png.all(0xFF0000FF)) << std::hex << png.color;
}

TEST(PlayerMessages, WaitUpdatesTimesOutAsAFailure) {
    TempHome home;
    PlayerRun run = runPlayer(home, "show 0 0 10 10\nbusy 600\nwait-updates 0.1\nconfigure\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, run.scriptPath + ":3: wait-updates: timed out after 0.1 s\n");
    EXPECT_EQ(linesStarting(run.log, "wait-updates").size(), 1u);
    EXPECT_TRUE(linesStarting(run.log, "handler cnfg").empty());
    EXPECT_EQ(run.log.back(), "entry clr ");
}

TEST(PlayerMessages, ScriptedAnswersReachThePluginInOrder) {
    TempHome home;
    PlayerRun run = runPlayer(home, "answer cancel\nanswer default\n"
                                    "choose \"/tmp/some file.ics\"\nchoose-cancel\n"
                                    "alert\nalert\nalert\nfile\nfile\nfile\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    Lines answers = linesStarting(run.log, "alert");
    Lines files = linesStarting(run.log, "file");
    answers.insert(answers.end(), files.begin(), files.end());
    EXPECT_EQ(answers, (Lines{"alert answer 1", "alert answer 0", "alert answer -1",
                              "file answer 1 [/tmp/some file.ics]", "file answer 0 []",
                              "file answer -1 []"}));
}

} // namespace
