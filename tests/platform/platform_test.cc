// The platform interfaces' headless back ends, the page opener's program
// start, and the small system look-ups.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/alert.h"
#include "platform/file_dialog.h"
#include "platform/headless.h"
#include "platform/home_folder.h"
#include "platform/page_opener.h"
#include "platform/system_version.h"
#include "platform/uuid_text.h"
#include "temp_home.h"

namespace {

class Headless : public ::testing::Test {
  protected:
    void SetUp() override { resetHeadless(); }
    void TearDown() override { resetHeadless(); }
};

AlertRequest versionAlert() {
    return AlertRequest{"New Stagebeacon Version Available", "Get 3.0", "Download", "Cancel"};
}

TEST_F(Headless, AlertsTakeTheDefaultUnlessScripted) {
    EXPECT_EQ(runAlert(versionAlert()), AlertButton::Default);
    scriptAlertAnswer(AlertButton::Cancel);
    EXPECT_EQ(runAlert(versionAlert()), AlertButton::Cancel);
    EXPECT_EQ(runAlert(versionAlert()), AlertButton::Default);
    // A one-button alert cannot be cancelled, but uses up the answer.
    scriptAlertAnswer(AlertButton::Cancel);
    EXPECT_EQ(runAlert(AlertRequest{"Note.", "text", "OK", ""}), AlertButton::Default);
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), 4u);
    EXPECT_EQ(log[0], "alert: New Stagebeacon Version Available | Get 3.0 | Download");
    EXPECT_EQ(log[1], "alert: New Stagebeacon Version Available | Get 3.0 | Cancel");
}

TEST_F(Headless, FileDialogsAnswerFromTheScript) {
    std::string chosen = "unchanged";
    FileOpenRequest request{"Locate it", "please"};
    EXPECT_FALSE(chooseFileToOpen(request, &chosen));
    scriptFileChoice("/music/lib.xml");
    scriptFileCancel();
    EXPECT_TRUE(chooseFileToOpen(request, &chosen));
    EXPECT_EQ(chosen, "/music/lib.xml");
    EXPECT_FALSE(chooseFileToOpen(request, &chosen));
    EXPECT_EQ(chosen, "/music/lib.xml");
}

TEST_F(Headless, BackEndsCanBeReplacedAndRestored) {
    setAlertBackend([](const AlertRequest&) { return AlertButton::Cancel; });
    EXPECT_EQ(runAlert(versionAlert()), AlertButton::Cancel);
    setAlertBackend(nullptr);
    EXPECT_EQ(runAlert(versionAlert()), AlertButton::Default);
    static std::string opened;
    setPageOpenerBackend([](const char* url) { opened = url; });
    openPage("http://127.0.0.1:1/x");
    setPageOpenerBackend(nullptr);
    EXPECT_EQ(opened, "http://127.0.0.1:1/x");
    openPage("http://127.0.0.1:1/y");
    EXPECT_EQ(headlessLogLines().back(), "open page: http://127.0.0.1:1/y");
}

TEST_F(Headless, LogIsBounded) {
    for (size_t i = 0; i < kHeadlessLogLimit + 5; ++i) headlessLog(std::to_string(i));
    auto log = headlessLogLines();
    ASSERT_EQ(log.size(), kHeadlessLogLimit);
    EXPECT_EQ(log.front(), "5");
}

TEST(PageOpener, AddressReachesTheProgramAsOneArgument) {
    TempHome home;
    std::string program = home.path() + "/fake-opener";
    std::string output = home.path() + "/opened";
    writeText(program, "#!/bin/sh\nprintf '%s|%s' \"$#\" \"$1\" > '" + output + ".tmp'\nmv '" +
                           output + ".tmp' '" + output + "'\n");
    chmod(program.c_str(), 0755);
    const char* url = "http://127.0.0.1:9/a b;touch x'\"$(id)";
    ASSERT_TRUE(openPageWith(program.c_str(), url));
    for (int i = 0; i < 200 && !exists(output); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(readText(output), std::string("1|") + url);
    EXPECT_FALSE(openPageWith((home.path() + "/missing").c_str(), url));
}

TEST(SystemLookups, VersionStandInVariable) {
    long value = 0;
    unsetenv("STAGEBEACON_SYSTEM_VERSION");
    EXPECT_FALSE(querySystemVersion(&value));
    setenv("STAGEBEACON_SYSTEM_VERSION", "0x1058", 1);
    ASSERT_TRUE(querySystemVersion(&value));
    EXPECT_EQ(value, 0x1058);
    for (const char* bad : {"", "ten", "0x10zz", "-4"}) {
        setenv("STAGEBEACON_SYSTEM_VERSION", bad, 1);
        EXPECT_FALSE(querySystemVersion(&value)) << bad;
    }
    unsetenv("STAGEBEACON_SYSTEM_VERSION");
}

TEST(SystemLookups, HomeFolderAndUuids) {
    {
        TempHome home;
        EXPECT_EQ(homeFolder(), home.path());
        setenv("HOME", "", 1);
        EXPECT_FALSE(homeFolder().empty()) << "falls back to the password database";
    }
    std::string a = newUuidText();
    std::string b = newUuidText();
    EXPECT_EQ(a.size(), 36u);
    EXPECT_NE(a, b);
    EXPECT_EQ(a.find_first_of("abcdef"), std::string::npos);
    EXPECT_EQ(a[8], '-');
}

} // namespace
