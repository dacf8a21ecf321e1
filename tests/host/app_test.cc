// The app's remembered window: saved whole, read back, junk refused.
#include <gtest/gtest.h>

#include <filesystem>

#include "temp_home.h"
#include "window_state.h"

namespace {

TEST(WindowState, SavesAtomicallyIntoNewFoldersAndRefusesJunk) {
    TempHome home;
    const std::string path = home.path() + "/config/stagebeacon/window";
    WindowGeometry saved{1280, 720, -40, 30, true, true};
    std::string error;
    ASSERT_TRUE(saveWindowGeometry(path, saved, error)) << error;
    EXPECT_FALSE(exists(path + ".tmp"));
    WindowGeometry read;
    ASSERT_TRUE(readWindowGeometry(path, read));
    EXPECT_EQ(read.width, 1280);
    EXPECT_EQ(read.height, 720);
    EXPECT_EQ(read.x, -40);
    EXPECT_EQ(read.y, 30);
    EXPECT_TRUE(read.positioned);
    EXPECT_TRUE(read.maximized);

    for (const char* junk : {"", "800 600", "0 600 0 0 0\n", "800 99999 0 0 0\n", "a b c d e\n"}) {
        writeText(path, junk);
        WindowGeometry kept{1, 2, 3, 4, false, false};
        EXPECT_FALSE(readWindowGeometry(path, kept)) << junk;
        EXPECT_EQ(kept.width, 1) << junk;
    }
    EXPECT_FALSE(readWindowGeometry(home.path() + "/missing", read));

    // A folder in the way of the config folder: a plain error, no file.
    writeText(home.path() + "/blocked", "x");
    EXPECT_FALSE(saveWindowGeometry(home.path() + "/blocked/stagebeacon/window", saved, error));
    EXPECT_NE(error.find("cannot make the folder"), std::string::npos) << error;
}

} // namespace
