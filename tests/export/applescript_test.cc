// The notification script, to the character, and the runner that turns it
// into a desktop notification (and runs nothing else).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "export/applescript.h"
#include "export/growl_notify.h"
#include "export/growl_script.h"
#include "platform/desktop_notifier.h"
#include "platform/headless.h"
#include "platform/resources_folder.h"

namespace {

std::vector<DesktopNotification> delivered;
bool deliveryWorks = true;

bool recordNotification(const DesktopNotification& notification) {
    delivered.push_back(notification);
    return deliveryWorks;
}

std::string concertScript(const char* artist = "Neko Case") {
    char script[kGrowlScriptSize];
    buildGrowlNotifyScript(script, "Upcoming Concert", "Artist:", artist,
                           "Venue:", "The Vic (Chicago, IL)", "Date:", "Mar 7, 2009",
                           "Stagebeacon_icon_blue.png");
    return script;
}

TEST(GrowlNotifyScript, ConcertTextToTheCharacter) {
    EXPECT_EQ(concertScript(),
              "tell application \"System Events\"\n"
              "\tset bGrowlIsRunning to (count of (every process whose name is "
              "\"GrowlHelperApp\")) > 0\n"
              "\tif bGrowlIsRunning is true then\n"
              "tell application \"GrowlHelperApp\"\n"
              "notify with name \"Upcoming Concert\" title \"Upcoming Concert\" description \""
              "Artist: Neko Case\rVenue: The Vic (Chicago, IL)\rDate: Mar 7, 2009\r\" "
              "application name \"Stagebeacon\" image from location \"~/Library/iTunes/iTunes "
              "Plug-ins/Stagebeacon.bundle/Contents/Resources/Stagebeacon_icon_blue.png\"\n"
              "end tell\n"
              " end if\n"
              "end tell");
}

TEST(GrowlNotifyScript, ReleaseDiffersOnlyInTheNotifyLine) {
    char script[kGrowlScriptSize];
    buildGrowlNotifyScript(script, "Upcoming Album Release", "Artist:", "Wilco",
                           "Album:", "Ode \"to\" Joy", "Date:", "Oct 4, 2011",
                           "Stagebeacon_icon_purple.png");
    std::string text = script, concert = concertScript();
    size_t line = concert.find("notify with");
    ASSERT_EQ(text.substr(0, line), concert.substr(0, line));
    EXPECT_EQ(text.substr(line),
              "notify with name \"Upcoming Album Release\" title \"Upcoming Album Release\" "
              "description \"Artist: Wilco\rAlbum: Ode \"to\" Joy\rDate: Oct 4, 2011\r\" "
              "application name \"Stagebeacon\" image from location \"~/Library/iTunes/iTunes "
              "Plug-ins/Stagebeacon.bundle/Contents/Resources/Stagebeacon_icon_purple.png\"\n"
              "end tell\n end if\nend tell");
}

TEST(GrowlNotifyScript, LongTextsAreCutAtTheBuffer) {
    std::string artist(5000, 'x');
    std::string script = concertScript(artist.c_str());
    EXPECT_EQ(script.size(), kGrowlScriptSize - 1);
    GrowlNotifyFields fields;
    EXPECT_FALSE(parseGrowlNotifyScript(script, &fields)) << "a cut script has no tail";
}

TEST(GrowlNotifyScript, ReadsBackWhatItWrote) {
    GrowlNotifyFields fields;
    ASSERT_TRUE(parseGrowlNotifyScript(concertScript("Say \"Hi\""), &fields));
    EXPECT_EQ(fields.name, "Upcoming Concert");
    EXPECT_EQ(fields.title, "Upcoming Concert");
    EXPECT_EQ(fields.description,
              "Artist: Say \"Hi\"\rVenue: The Vic (Chicago, IL)\rDate: Mar 7, 2009\r");
    EXPECT_EQ(fields.appName, "Stagebeacon");
    EXPECT_EQ(fields.imageLocation, std::string(kGrowlIconFolder) + "Stagebeacon_icon_blue.png");

    std::string script = concertScript();
    EXPECT_FALSE(parseGrowlNotifyScript(script + "\n", &fields));
    EXPECT_FALSE(parseGrowlNotifyScript("x" + script, &fields));
    EXPECT_FALSE(parseGrowlNotifyScript(growlRegistrationScript(true, true), &fields));
    EXPECT_FALSE(parseGrowlNotifyScript("", &fields));
}

class ScriptRunner : public ::testing::Test {
  protected:
    void SetUp() override {
        delivered.clear();
        deliveryWorks = true;
        resetHeadless();
        setDesktopNotifierBackend(recordNotification);
    }
    void TearDown() override {
        setDesktopNotifierBackend(nullptr);
        resetHeadless();
    }
};

TEST_F(ScriptRunner, NotificationScriptReachesTheNotifier) {
    std::string script = concertScript();
    std::string result = "stale";
    EXPECT_EQ(LowRunAppleScript(script.data(), static_cast<long>(script.size()), &result), 0);
    EXPECT_EQ(result, "");
    ASSERT_EQ(delivered.size(), 1u);
    EXPECT_EQ(delivered[0].appName, "Stagebeacon");
    EXPECT_EQ(delivered[0].title, "Upcoming Concert");
    EXPECT_EQ(delivered[0].body,
              "Artist: Neko Case\nVenue: The Vic (Chicago, IL)\nDate: Mar 7, 2009");
    EXPECT_EQ(delivered[0].iconPath, resourcePath("Stagebeacon_icon_blue.png"));

    deliveryWorks = false;
    EXPECT_EQ(LowRunAppleScript(script.data(), static_cast<long>(script.size()), &result),
              kScriptNotDelivered);
    EXPECT_FALSE(result.empty());
}

TEST_F(ScriptRunner, EveryOtherScriptIsNotRun) {
    std::string registration = growlRegistrationScript(true, false);
    std::string result;
    EXPECT_EQ(
        LowRunAppleScript(registration.data(), static_cast<long>(registration.size()), &result),
        kScriptNotRun);
    EXPECT_FALSE(result.empty());
    EXPECT_EQ(SimpleRunAppleScript("display dialog \"hello\""), kScriptNotRun);
    EXPECT_EQ(SimpleRunAppleScript(""), kScriptNotRun);
    EXPECT_EQ(SimpleRunAppleScript(nullptr), kScriptNotRun);
    // Only the given length counts: a notification script cut short is not one.
    std::string script = concertScript();
    EXPECT_EQ(LowRunAppleScript(script.data(), static_cast<long>(script.size()) - 1, nullptr),
              kScriptNotRun);
    EXPECT_TRUE(delivered.empty());
}

TEST_F(ScriptRunner, HeadlessNotifierWritesOneLogLine) {
    setDesktopNotifierBackend(nullptr);
    EXPECT_EQ(SimpleRunAppleScript(concertScript().c_str()), 0);
    std::vector<std::string> log = headlessLogLines();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0], "notify: Upcoming Concert | Artist: Neko Case | Venue: The Vic (Chicago, IL) "
                      "| Date: Mar 7, 2009");
}

} // namespace
