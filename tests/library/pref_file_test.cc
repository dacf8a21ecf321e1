// The preference file: its exact layout, round trips through genPref and
// loadPrefs, the reading rules, and damaged files.
#include <dirent.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <ctime>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "library/file_io.h"
#include "library/pref_upgrade.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "temp_home.h"

namespace {

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::string names(FRIENDLIST* list) {
    std::string joined;
    for (FRIENDNAME* n = list->head; n; n = n->next) joined += std::string(n->name) + "|";
    return joined;
}

std::string describe(const ShowListRef& list) {
    std::string text;
    for (SHOWENTRY* e = list->head; e; e = e->next) {
        std::ostringstream one;
        one << e->year << "-" << e->month << "-" << e->day << " " << e->artist << " @ " << e->venue
            << " (" << e->location << ") " << e->url << " [" << e->otherArtists << "] "
            << e->attending << e->ticketsAvailable << " " << names(e->tags) << "\n";
        text += one.str();
    }
    return text;
}

SHOWENTRY* show(const char* artist, int year, int month, int day) {
    SHOWENTRY* e = new SHOWENTRY;
    snprintf(e->artist, sizeof e->artist, "%s", artist);
    snprintf(e->venue, sizeof e->venue, "The Venue");
    snprintf(e->location, sizeof e->location, "Chicago, IL");
    snprintf(e->url, sizeof e->url, "http://127.0.0.1/event?id=%d", day);
    e->year = year;
    e->month = month;
    e->day = day;
    return e;
}

void addTag(SHOWENTRY* e, const char* name) {
    FRIENDNAME* n = new FRIENDNAME(name);
    if (!e->tags->add(n)) delete n;
}

void file(const ShowListRef& list, SHOWENTRY* e) { ASSERT_TRUE(list->addShow(e, nullptr)); }

class PrefFile : public ::testing::Test {
  protected:
    TempHome home;
    std::string prefPath = home.support() + "StagebeaconPref";
    std::unique_ptr<StagebeaconClass> app = freshApp();

    std::unique_ptr<StagebeaconClass> freshApp() {
        makeFolders(home.support());
        auto made = std::make_unique<StagebeaconClass>();
        made->protectedData.setStagebeaconPref(prefPath.c_str());
        made->protectedData.setOSXVersion(10.4f);
        return made;
    }
    // A second application that reads what the first one saved.
    std::unique_ptr<StagebeaconClass> reload(int* result = nullptr) {
        auto loaded = freshApp();
        int r = loaded->calGetData.loadPrefs();
        if (result) *result = r;
        return loaded;
    }
    std::vector<std::string> savedLines() { return splitLines(readText(prefPath)); }
    std::string filters(StagebeaconClass& a) {
        char text[ProtectedData::FilterStringSize];
        a.protectedData.getFilterString(text);
        return text;
    }
    std::string text(StagebeaconClass& a, void (ProtectedData::*get)(char*)) {
        char buffer[1024];
        (a.protectedData.*get)(buffer);
        return buffer;
    }
};

TEST_F(PrefFile, FirstStartInstallsTheDefaultFiltersInOrder) {
    EXPECT_EQ(app->calGetData.loadPrefs(), 0);
    EXPECT_TRUE(app->calGetData.locateByIP);
    const char* expected = "Import@@Extra tracks@@Original recording remastered@@Limited "
                           "Edition@@Soundtrack@@Non-Active Artist@@";
    EXPECT_EQ(filters(*app), expected);
    app->calGetData.genPref();
    std::vector<std::string> lines = savedLines();
    ASSERT_GE(lines.size(), 9u);
    EXPECT_EQ(lines[8], expected);
}

TEST_F(PrefFile, ExactLayoutOfEveryLine) {
    ProtectedData& store = app->protectedData;
    store.setiTunes_xml_path("/music/Library.xml");
    store.setCurCity("");
    store.setCurState("");
    store.setCurSearchRadius(40);
    store.setCurLat(40.71);
    store.setCurLon(-74.006);
    store.setiCalLoc("/cal/x.ics");
    store.setExportAllShows(true);
    store.setiPhoneSync(true);
    store.addFormatFilter("Import");
    app->calGetData.nextRefresh = 1700000000;
    SHOWENTRY* concert = show("Wilco", 2026, 5, 3);
    concert->attending = true;
    concert->ticketsAvailable = true;
    addTag(concert, "Ann");
    addTag(concert, "Bob");
    file(app->concerts.current(), concert);
    SHOWENTRY* release = show("Low", 2026, 6, 1);
    snprintf(release->otherArtists, sizeof release->otherArtists, "Deluxe");
    file(app->albums.current(), release);
    SHOWENTRY* friendShow = show("Spoon", 2026, 7, 9);
    friendShow->attending = true;
    snprintf(friendShow->otherArtists, sizeof friendShow->otherArtists, "ignored");
    addTag(friendShow, "carol");
    file(app->friendsShows.current(), friendShow);

    app->calGetData.genPref();
    time_t now = time(nullptr);
    tm today{};
    localtime_r(&now, &today);
    char date[64];
    snprintf(date, sizeof date, "%d@@%d@@%d", today.tm_year + 1900, today.tm_mon + 1,
             today.tm_mday);

    std::vector<std::string> expected = {
        "/music/Library.xml",
        "1700000000",
        date,
        "-@@-@@40@@4.071000e+01@@-7.400600e+01",
        "0@@1@@0@@0@@0@@0@@0@@0@@0@@0@@1",
        "/cal/x.ics",
        "-@@-@@-@@",
        "",
        "Import@@",
        "0@@1@@1@@2026@@5@@3@@Wilco@@The Venue@@Chicago, IL@@http://127.0.0.1/event?id=3@@-@@"
        "Ann@@Bob@@",
        "1@@0@@0@@2026@@6@@1@@Low@@The Venue@@Chicago, IL@@http://127.0.0.1/event?id=1@@"
        "Deluxe@@",
        "2@@0@@0@@2026@@7@@9@@Spoon@@The Venue@@-@@http://127.0.0.1/event?id=9@@-@@carol@@",
    };
    EXPECT_EQ(savedLines(), expected);
    EXPECT_EQ(readText(prefPath).back(), '\n');
    // Saving stamps the date and turns the empty location texts into "-".
    EXPECT_EQ(text(*app, &ProtectedData::getCurCity), "-");
    EXPECT_EQ(store.getLastSearch_y(), today.tm_year + 1900);
}

TEST_F(PrefFile, RoundTripKeepsSettingsFriendsFiltersAndShows) {
    ProtectedData& store = app->protectedData;
    store.setiTunes_xml_path("/home/u/Music/iTunes/iTunes Music Library.xml");
    store.setCurCity("Chicago");
    store.setCurState("IL");
    store.setCurSearchRadius(120);
    store.setCurLat(41.878113);
    store.setCurLon(-87.629799);
    store.setiCalLoc("/home/u/cal.ics");
    store.setUsername("wanda");
    store.setFirstname("Wanda");
    store.setLastname("Maximoff");
    // A pattern no shift or swap of the flags keeps.
    bool flags[] = {true, true, false, true, false, false, true, false, true, true, false};
    store.setExportTo_iCal(flags[0]);
    store.setExportAllShows(flags[1]);
    store.setExportTo_Outlook(flags[2]);
    store.setExportTo_Google(flags[3]);
    store.setStagebeacon_version_update(flags[4]);
    store.setSharing(flags[5]);
    store.setShareAllShows(flags[6]);
    store.setNotifyConcerts(flags[7]);
    store.setNotifyAlbums(flags[8]);
    store.setNotificationWindowStyle(flags[9]);
    store.setiPhoneSync(flags[10]);
    for (const char* f : {"alice", "Bob", "charlie"}) app->friendsList->add(new FRIENDNAME(f));
    store.addFormatFilter("Import");
    store.addFormatFilter("Vinyl");
    app->calGetData.nextRefresh = 1800000000;

    SHOWENTRY* a = show("Wilco", 2026, 5, 3);
    a->attending = true;
    addTag(a, "alice");
    SHOWENTRY* b = show("Beirut", 2025, 12, 31);
    b->ticketsAvailable = true;
    snprintf(b->otherArtists, sizeof b->otherArtists, "Zach, and friends");
    file(app->concerts.current(), a);
    file(app->concerts.current(), b);
    SHOWENTRY* c = show("Low", 2026, 1, 20);
    addTag(c, "CD");
    addTag(c, "Import");
    file(app->albums.current(), c);
    SHOWENTRY* d = show("Spoon", 2026, 2, 2);
    addTag(d, "alice");
    file(app->friendsShows.current(), d);

    app->calGetData.genPref();
    int result = 0;
    auto loaded = reload(&result);
    ProtectedData& back = loaded->protectedData;
    EXPECT_EQ(result, -1);
    EXPECT_FALSE(loaded->calGetData.locateByIP);
    EXPECT_EQ(loaded->calGetData.nextRefresh, 1800000000);
    EXPECT_EQ(text(*loaded, &ProtectedData::getiTunes_xml_path),
              "/home/u/Music/iTunes/iTunes Music Library.xml");
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurCity), "Chicago");
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurCityDisplay), "Chicago");
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurStateDisplay), "IL");
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurSearchRadiusDisplay), "120");
    EXPECT_EQ(back.getCurSearchRadius(), 120);
    // Read back in single precision.
    EXPECT_EQ(back.getCurLat(), static_cast<double>(4.187811e+01f));
    EXPECT_EQ(back.getCurLon(), static_cast<double>(-8.762980e+01f));
    bool got[] = {back.getExportTo_iCal(),
                  back.getExportAllShows(),
                  back.getExportTo_Outlook(),
                  back.getExportTo_Google(),
                  back.getStagebeacon_version_update(),
                  back.getSharing(),
                  back.getShareAllShows(),
                  back.getNotifyConcerts(),
                  back.getNotifyAlbums(),
                  back.getNotificationWindowStyle(),
                  back.getiPhoneSync()};
    for (int i = 0; i < 11; ++i) EXPECT_EQ(got[i], flags[i]) << "flag " << i;
    EXPECT_EQ(text(*loaded, &ProtectedData::getiCalLoc), "/home/u/cal.ics");
    EXPECT_EQ(text(*loaded, &ProtectedData::getUsername), "wanda");
    EXPECT_EQ(text(*loaded, &ProtectedData::getLastname), "Maximoff");
    EXPECT_EQ(names(loaded->friendsList), "alice|Bob|charlie|");
    EXPECT_EQ(filters(*loaded), "Import@@Vinyl@@");
    EXPECT_EQ(describe(loaded->concerts.current()), describe(app->concerts.current()));
    EXPECT_EQ(describe(loaded->albums.current()), describe(app->albums.current()));
    // A friend's show keeps everything but its location, which reads "-".
    EXPECT_EQ(describe(loaded->friendsShows.current()),
              "2026-2-2 Spoon @ The Venue (-) http://127.0.0.1/event?id=2 [] 00 alice|\n");
}

TEST_F(PrefFile, EmptyTextsTravelAsDashes) {
    ProtectedData& store = app->protectedData;
    store.setiTunes_xml_path("/lib.xml"); // an empty first line would mean "no file"
    store.setCurCity("");
    store.setCurState("");
    app->calGetData.genPref();
    std::vector<std::string> lines = savedLines();
    ASSERT_GE(lines.size(), 7u);
    EXPECT_EQ(lines[3].substr(0, 6), "-@@-@@");
    EXPECT_EQ(lines[6], "-@@-@@-@@");
    auto loaded = reload();
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurCity), "");
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurState), "");
    EXPECT_EQ(text(*loaded, &ProtectedData::getUsername), "");
    EXPECT_EQ(text(*loaded, &ProtectedData::getFirstname), "");
}

TEST_F(PrefFile, NextCheckTimeIsDrawnOnlyWhenUnset) {
    time_t before = time(nullptr);
    app->calGetData.genPref();
    int32_t drawn = app->calGetData.nextRefresh;
    EXPECT_GE(drawn, before + 86400);
    EXPECT_LE(drawn, time(nullptr) + 7 * 86400 + 24 * 3600 + 59 * 60 + 59);
    EXPECT_EQ(savedLines()[1], std::to_string(drawn));
    app->calGetData.genPref();
    EXPECT_EQ(app->calGetData.nextRefresh, drawn);
}

TEST_F(PrefFile, SavesAreDroppedWhileStoppingOrUnloading) {
    writeText(prefPath, "keep me\n");
    app->protectedData.setForceUpdate(true);
    app->calGetData.genPref();
    EXPECT_EQ(readText(prefPath), "keep me\n");
    app->protectedData.setForceUpdate(false);
    app->protectedData.setShutingDown(true);
    app->calGetData.genPref();
    EXPECT_EQ(readText(prefPath), "keep me\n");
    app->protectedData.setShutingDown(false);
    app->calGetData.genPref();
    EXPECT_NE(readText(prefPath), "keep me\n");
}

TEST_F(PrefFile, SaveReplacesTheFileWholeAndLeavesNothingElse) {
    app->calGetData.genPref();
    app->calGetData.genPref();
    struct stat info {};
    ASSERT_EQ(stat(prefPath.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
    int entries = 0;
    DIR* dir = opendir(home.support().c_str());
    while (dirent* e = readdir(dir)) entries += e->d_name[0] != '.';
    closedir(dir);
    EXPECT_EQ(entries, 1);
    // An unwritable destination is silent.
    app->protectedData.setStagebeaconPref((home.path() + "/absent/StagebeaconPref").c_str());
    app->calGetData.genPref();
    EXPECT_FALSE(exists(home.path() + "/absent"));
}

const char* kHeader = "/lib.xml\n123\n2025@@4@@7\nParis@@TX@@25@@3.366000e+01@@-9.555000e+01\n";

TEST_F(PrefFile, ReadingRulesForNumbersAndFlags) {
    writeText(prefPath, "/lib.xml\nsoon\n2025@@4\nParis@@TX@@25@@3.366000e+01@@-9.555000e+01\n"
                        "0@@2@@0@@0@@0@@0@@0@@0@@0@@0@@5\n/ignored\n");
    auto loaded = reload();
    EXPECT_EQ(loaded->calGetData.nextRefresh, 1);
    EXPECT_EQ(loaded->protectedData.getLastSearch_y(), 1);
    EXPECT_EQ(loaded->protectedData.getLastSearch_m(), 4);
    EXPECT_TRUE(loaded->protectedData.getExportAllShows()); // any non-zero number is true
    EXPECT_TRUE(loaded->protectedData.getiPhoneSync());
    EXPECT_FALSE(loaded->protectedData.getExportTo_iCal());

    // Ten numbers (a converted 2.0 file) turn every flag off.
    writeText(prefPath, std::string(kHeader) + "1@@1@@1@@1@@1@@1@@1@@1@@1@@1\n");
    loaded = reload();
    EXPECT_FALSE(loaded->protectedData.getExportAllShows());
    EXPECT_FALSE(loaded->protectedData.getNotifyAlbums());
    EXPECT_FALSE(loaded->protectedData.getShareAllShows());
}

TEST_F(PrefFile, ExportLocationIsReadOnlyBeforeTheCalendarStore) {
    writeText(prefPath, std::string(kHeader) + "0@@0@@0@@0@@0@@0@@0@@0@@0@@0@@0\n/from/file.ics\n");
    auto older = reload();
    EXPECT_EQ(text(*older, &ProtectedData::getiCalLoc), "/from/file.ics");
    auto newer = freshApp();
    newer->protectedData.setOSXVersion(10.5f);
    newer->protectedData.setiCalLoc("chosen at start");
    ASSERT_EQ(newer->calGetData.loadPrefs(), -1);
    EXPECT_EQ(text(*newer, &ProtectedData::getiCalLoc), "chosen at start");
}

TEST_F(PrefFile, OverlongNamesEndTheirLine) {
    std::string long64(64, 'n');
    std::string long63(63, 'm');
    writeText(prefPath, std::string(kHeader) +
                            "0@@0@@0@@0@@0@@0@@0@@0@@0@@0@@0\n-\na@@b@@c@@\n" + "ann@@" + long63 +
                            "@@" + long64 + "@@zed@@\nVinyl@@" + long64 + "@@Late@@\n");
    auto loaded = reload();
    EXPECT_EQ(names(loaded->friendsList), "ann|" + long63 + "|");
    EXPECT_EQ(filters(*loaded), "Vinyl@@");
}

TEST_F(PrefFile, BadRecordsAreSkippedAndLaterOnesRead) {
    writeText(prefPath, std::string(kHeader) +
                            "0@@0@@0@@0@@0@@0@@0@@0@@0@@0@@0\n-\n-@@-@@-@@\n\n\n"
                            "7@@0@@0@@2026@@1@@1@@Seven@@V@@L@@U@@-@@\n"
                            "0@@0@@0@@soon@@1@@1@@NoYear@@V@@L@@U@@-@@\n"
                            "x@@0@@0@@2026@@1@@1@@NoKind@@V@@L@@U@@-@@\n"
                            "0@@0@@0@@2026@@1@@1@@Short@@V@@\n"
                            "1@@1@@1@@2026@@3@@4@@Kept@@V@@L@@U@@-@@ann@@\n");
    int result = 0;
    auto loaded = reload(&result);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(loaded->concerts.current()->size(), 0u);
    EXPECT_EQ(describe(loaded->albums.current()), "2026-3-4 Kept @ V (L) U [] 11 ann|\n");
}

TEST_F(PrefFile, DamagedFilesKeepWhatCanBeRead) {
    // Cut short: the lines present apply, the rest keep their values.
    writeText(prefPath, "/lib.xml\n123\n2025@@4@@7\nPar");
    auto loaded = reload();
    EXPECT_EQ(text(*loaded, &ProtectedData::getCurCity), "-"); // no separator: unchanged
    EXPECT_EQ(loaded->protectedData.getLastSearch_d(), 7);

    // Empty, or an empty first line: no usable file.
    for (const char* content : {"", "\nsecond\n", "\r\n"}) {
        writeText(prefPath, content);
        int result = 1;
        loaded = reload(&result);
        EXPECT_EQ(result, 0) << "content " << content;
        EXPECT_TRUE(loaded->calGetData.locateByIP);
    }

    // Binary garbage and enormous lines: read without harm.
    std::string garbage;
    for (int i = 0; i < 5000; ++i) garbage += static_cast<char>((i * 7919) % 256);
    writeText(prefPath, garbage);
    loaded = reload();
    std::string huge(10000, 'q');
    std::string lines;
    for (int i = 0; i < 14; ++i) lines += huge + "@@" + huge + "@@" + huge + "\n";
    writeText(prefPath, lines);
    int result = 0;
    loaded = reload(&result);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(text(*loaded, &ProtectedData::getiTunes_xml_path), huge.substr(0, 1023));
    EXPECT_EQ(loaded->friendsList->size(), 0u); // 10,000-character names stop line 8

    // Missing separators on line 7: the fields present are taken.
    writeText(prefPath, std::string(kHeader) + "0@@0@@0@@0@@0@@0@@0@@0@@0@@0@@0\n-\nuser@@First\n");
    loaded = reload();
    EXPECT_EQ(text(*loaded, &ProtectedData::getUsername), "user");
    EXPECT_EQ(text(*loaded, &ProtectedData::getFirstname), "First");
}

TEST(PrefUpgrade, ConvertsTheSevenFlagLayout) {
    TempHome home;
    std::string path = home.path() + "/StagebeaconPref";
    writeText(path, "/lib.xml\n1\n2007@@1@@1\nA@@B@@75@@0@@0\n1@@0@@1@@1@@1@@0@@1\n/old/loc.ics\n"
                    "u@@f@@l@@\n");
    UpgradePrefFileFrom2_0to2_1(&path[0]);
    EXPECT_EQ(readText(path),
              "/lib.xml\n1\n2007@@1@@1\nA@@B@@75@@0@@0\n1@@0@@1@@1@@0@@0@@1@@1@@1@@0\n"
              "Custom export location not available in OS X 10.5\nu@@f@@l@@\n");
}

TEST(PrefUpgrade, DeletesAFileThatIsNotTheOldLayout) {
    TempHome home;
    std::string path = home.path() + "/StagebeaconPref";
    writeText(path, "/lib.xml\n1\n2007@@1@@1\nA@@B@@75@@0@@0\n1@@0@@1@@1@@1@@0@@1@@0@@0@@0@@0\n");
    UpgradePrefFileFrom2_0to2_1(&path[0]);
    EXPECT_FALSE(exists(path));
}

} // namespace
