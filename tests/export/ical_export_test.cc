// The calendar file route: the exact text with its kept quirks, which shows
// go in, fresh UIDs, and the written file as libical reads it.
#include <gtest/gtest.h>

#include <set>

#include "export/ical_export.h"
#include "export_support.h"
#include "library/file_io.h"
#include "model/stagebeacon_class.h"
#include "support/demo_shows.h"
#include "temp_home.h"

namespace {

void addShow(SHOWLIST* list, const char* artist, int month, int day, bool marked,
             const char* location = "-", const char* otherActs = "", const char* url = "") {
    SHOWENTRY* e = makeDemoShow(artist, 2009, month, day);
    snprintf(e->location, sizeof e->location, "%s", location);
    snprintf(e->otherArtists, sizeof e->otherArtists, "%s", otherActs);
    snprintf(e->url, sizeof e->url, "%s", url);
    e->attending = marked;
    fileDemoShow(list, e);
}

// The text with each UID value replaced by "*"; the values go to `uids`.
std::string maskUids(std::string text, std::vector<std::string>* uids) {
    for (size_t at = text.find("\nUID:"); at != std::string::npos;
         at = text.find("\nUID:", at + 1)) {
        const size_t begin = at + 5, length = text.find('\n', begin) - begin;
        uids->push_back(text.substr(begin, length));
        text.replace(begin, length, "*");
    }
    return text;
}

TEST(ICalendarText, MarkedShowsExactlyAndNothingElse) {
    ShowListRef list = makeShowList();
    std::vector<std::string> uids;
    EXPECT_EQ(iCalendarText(*list, false, "c="), "BEGIN:VCALENDAR\nEND:VCALENDAR");
    addShow(list.get(), "Wilco", 3, 5, true, "Boston, MA", "Spoon, Beirut; A\\B", "http://e/1?a&b");
    addShow(list.get(), "Spoon", 11, 25, true);
    addShow(list.get(), "Beirut", 12, 1, false);
    EXPECT_EQ(maskUids(iCalendarText(*list, false, "http://s/clickthrough.php?target="), &uids),
              "BEGIN:VCALENDAR\n"
              "BEGIN:VEVENT\nDTSTART;VALUE=DATE:20090305\n"
              "LOCATION:The Venue\n(Boston, MA)\n" // a real line feed, kept
              "LOCATION:The Venue\nSUMMARY:Wilco\nUID:*\nSEQUENCE:2\n"
              "URL;VALUE=URI:http://s/clickthrough.php?target=http://e/1?a&b\n"
              "DESCRIPTION:With:\\nSpoon, Beirut; A\\B\\n\\nURL:http://s/clickthrough.php?target="
              "\\nhttp://e/1?a&b\n"
              "END:VEVENT\n"
              "BEGIN:VEVENT\nDTSTART;VALUE=DATE:20091125\n"
              "LOCATION:The Venue\nLOCATION:The Venue\nSUMMARY:Spoon\nUID:*\nSEQUENCE:2\n"
              "URL;VALUE=URI:http://s/clickthrough.php?target=\n"
              "END:VEVENT\n"
              "END:VCALENDAR");
}

TEST(ICalendarText, AllShowsEachWithANewUpperCaseUuid) {
    ShowListRef list = makeShowList();
    addShow(list.get(), "Late", 12, 31, false);
    addShow(list.get(), "Early", 1, 9, true);
    std::vector<std::string> uids;
    const std::string text = maskUids(iCalendarText(*list, true, "c="), &uids);
    maskUids(iCalendarText(*list, true, "c="), &uids); // the next export
    EXPECT_LT(text.find("SUMMARY:Early"), text.find("SUMMARY:Late"));
    ASSERT_EQ(uids.size(), 4u);
    EXPECT_EQ(std::set<std::string>(uids.begin(), uids.end()).size(), 4u);
    for (const std::string& uid : uids)
        EXPECT_EQ(uid.find_first_not_of("0123456789ABCDEF-"), std::string::npos) << uid;
    for (const std::string& uid : uids)
        EXPECT_EQ(uid.size(), 36u);
}

TEST(ICalFile, WrittenWholeAndReadBackByLibical) {
    TempHome home;
    ScopedVariable service("STAGEBEACON_SERVICE", "http://127.0.0.1:9/");
    StagebeaconClass app;
    addShow(app.concerts.current().get(), "Wilco", 3, 5, true, "Boston, MA", "Spoon", "http://e/1");
    addShow(app.concerts.current().get(), "Beirut", 10, 10, false);
    const std::string file = home.path() + "/corestorage.ics";
    writeText(file, std::string(100000, 'x')); // an older, longer export
    app.protectedData.setiCalLoc(file.c_str());
    app.protectedData.setExportAllShows(false);
    EXPECT_EQ(performExportTo_iCal(&app), 0);

    bool parsed = false;
    std::vector<CalendarEvent> events = readEvents(readText(file), &parsed);
    EXPECT_TRUE(parsed);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].summary, "Wilco");
    EXPECT_EQ(events[0].start, "2009-03-05");
    EXPECT_EQ(events[0].url, "http://127.0.0.1:9/clickthrough.php?target=http://e/1");

    // A location that cannot be written is left alone, silently.
    app.protectedData.setiCalLoc((home.path() + "/missing/corestorage.ics").c_str());
    EXPECT_EQ(performExportTo_iCal(&app), 0);
    EXPECT_FALSE(exists(home.path() + "/missing"));
}

} // namespace
