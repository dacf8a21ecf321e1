// The calendar file route: the exact text (quirks included), which shows go
// in, fresh UIDs, and the file as a calendar program reads it.
#include <dirent.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "export/ical_export.h"
#include "export_support.h"
#include "library/file_io.h"
#include "plugin/stagebeacon_class.h"
#include "support/demo_shows.h"
#include "temp_home.h"

namespace {

constexpr const char* kClickThrough = "http://svc/clickthrough.php?target=";

SHOWENTRY* addShow(SHOWLIST* list, const char* artist, int year, int month, int day,
                   bool marked, const char* venue, const char* location,
                   const char* otherActs = "", const char* url = "") {
    SHOWENTRY* e = makeDemoShow(artist, year, month, day);
    snprintf(e->venue, sizeof e->venue, "%s", venue);
    snprintf(e->location, sizeof e->location, "%s", location);
    snprintf(e->otherArtists, sizeof e->otherArtists, "%s", otherActs);
    snprintf(e->url, sizeof e->url, "%s", url);
    e->attending = marked;
    return fileDemoShow(list, e);
}

// The text with every UID value replaced by "<UID>"; the values go to `uids`.
std::string maskUids(std::string text, std::vector<std::string>* uids) {
    for (size_t at = text.find("\nUID:"); at != std::string::npos;
         at = text.find("\nUID:", at + 1)) {
        size_t begin = at + 5, end = text.find('\n', begin);
        uids->push_back(text.substr(begin, end - begin));
        text.replace(begin, end - begin, "<UID>");
    }
    return text;
}

bool isUpperCaseUuid(const std::string& text) {
    if (text.size() != 36) return false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphen ? c != '-' : !((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'))) return false;
    }
    return true;
}

TEST(ICalendarText, MarkedShowsWithTheirExactLines) {
    ShowListRef list = makeShowList();
    addShow(list.get(), "Wilco", 2009, 3, 5, true, "Paradise", "Boston, MA",
            "Spoon, Beirut; A\\B", "http://e/1?a=1&b=2");
    addShow(list.get(), "Spoon", 2009, 11, 25, true, "Club", "-");
    addShow(list.get(), "Beirut", 2010, 1, 1, false, "Hall", "Cambridge, MA");

    std::vector<std::string> uids;
    EXPECT_EQ(maskUids(iCalendarText(*list, false, kClickThrough), &uids),
              "BEGIN:VCALENDAR\n"
              "BEGIN:VEVENT\n"
              "DTSTART;VALUE=DATE:20090305\n"
              "LOCATION:Paradise\n(Boston, MA)\n" // a real line feed, kept
              "LOCATION:Paradise\n"
              "SUMMARY:Wilco\n"
              "UID:<UID>\n"
              "SEQUENCE:2\n"
              "URL;VALUE=URI:http://svc/clickthrough.php?target=http://e/1?a=1&b=2\n"
              "DESCRIPTION:With:\\nSpoon, Beirut; A\\B\\n\\nURL:http://svc/clickthrough.php?"
              "target=\\nhttp://e/1?a=1&b=2\n"
              "END:VEVENT\n"
              "BEGIN:VEVENT\n"
              "DTSTART;VALUE=DATE:20091125\n"
              "LOCATION:Club\n"
              "LOCATION:Club\n"
              "SUMMARY:Spoon\n"
              "UID:<UID>\n"
              "SEQUENCE:2\n"
              "URL;VALUE=URI:http://svc/clickthrough.php?target=\n"
              "END:VEVENT\n"
              "END:VCALENDAR");
    EXPECT_EQ(uids.size(), 2u);
}

TEST(ICalendarText, NoMarkedShowGivesOnlyTheCalendarLines) {
    ShowListRef list = makeShowList();
    EXPECT_EQ(iCalendarText(*list, false, kClickThrough), "BEGIN:VCALENDAR\nEND:VCALENDAR");
    addShow(list.get(), "Beirut", 2010, 1, 1, false, "Hall", "-");
    EXPECT_EQ(iCalendarText(*list, false, kClickThrough), "BEGIN:VCALENDAR\nEND:VCALENDAR");
}

TEST(ICalendarText, AllShowsInDateOrderEachWithANewUid) {
    ShowListRef list = makeShowList();
    addShow(list.get(), "Late", 2027, 12, 31, false, "V", "-");
    addShow(list.get(), "Early", 2027, 1, 9, true, "V", "-");
    addShow(list.get(), "Middle", 2027, 6, 10, false, "V", "-");

    const std::string first = iCalendarText(*list, true, kClickThrough);
    std::vector<std::string> uids;
    maskUids(first, &uids);
    maskUids(iCalendarText(*list, true, kClickThrough), &uids); // a second export
    ASSERT_EQ(uids.size(), 6u);
    for (const std::string& uid : uids) EXPECT_TRUE(isUpperCaseUuid(uid)) << uid;
    EXPECT_EQ(std::set<std::string>(uids.begin(), uids.end()).size(), 6u);

    size_t early = first.find("20270109\n"), middle = first.find("20270610\n"),
           late = first.find("20271231\n");
    EXPECT_LT(early, middle);
    EXPECT_LT(middle, late);
    EXPECT_NE(late, std::string::npos);
}

std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> names;
    if (DIR* dir = opendir(folder.c_str())) {
        while (dirent* entry = readdir(dir))
            if (entry->d_name[0] != '.') names.push_back(entry->d_name);
        closedir(dir);
    }
    return names;
}

struct ICalFile : ::testing::Test {
    TempHome home;
    ScopedVariable service{"STAGEBEACON_SERVICE", "http://127.0.0.1:9/"};
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
    std::string folder = home.path() + "/Stagebeacon.calendar/";
    std::string file = folder + "corestorage.ics";

    void SetUp() override {
        ASSERT_TRUE(makeFolders(folder));
        app->protectedData.setiCalLoc(file.c_str());
        app->protectedData.setExportAllShows(false);
        SHOWLIST* shows = app->concerts.current().get();
        addShow(shows, "Wilco", 2009, 3, 5, true, "Paradise", "Boston, MA", "Spoon", "http://e/1");
        addShow(shows, "Spoon", 2009, 3, 6, false, "Club", "-");
        addShow(shows, "Beirut", 2010, 10, 10, true, "Hall", "-");
    }
};

TEST_F(ICalFile, WrittenFileReadsBackAsTheMarkedShows) {
    writeText(file, std::string(100000, 'x')); // an older, longer export
    EXPECT_EQ(performExportTo_iCal(app.get()), 0);

    const std::string text = readText(file);
    EXPECT_EQ(text.back(), 'R'); // "END:VCALENDAR", no line feed
    CalendarContents calendar = readCalendar(text);
    ASSERT_TRUE(calendar.parsed);
    ASSERT_EQ(calendar.events.size(), 2u);
    EXPECT_EQ(calendar.events[0].summary, "Wilco");
    EXPECT_EQ(dayText(calendar.events[0].start), "2009-03-05 (date)");
    EXPECT_EQ(calendar.events[0].url, "http://127.0.0.1:9/clickthrough.php?target=http://e/1");
    EXPECT_EQ(calendar.events[1].summary, "Beirut");
    EXPECT_EQ(dayText(calendar.events[1].start), "2010-10-10 (date)");
    // Replaced in one step: no temporary file stays beside it.
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{"corestorage.ics"});
}

TEST_F(ICalFile, LocationThatCannotBeWrittenIsLeftAlone) {
    const std::string missing = home.path() + "/missing/corestorage.ics";
    app->protectedData.setiCalLoc(missing.c_str());
    EXPECT_EQ(performExportTo_iCal(app.get()), 0);
    EXPECT_FALSE(exists(home.path() + "/missing"));
    EXPECT_TRUE(filesIn(folder).empty());
}

} // namespace
