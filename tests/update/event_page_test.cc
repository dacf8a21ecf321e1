#include "update/event_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/artist_key.h"
#include "model/linked.h"

namespace {

std::string line(const char* artist, const char* date = "7/4/2026", const char* venue = "Hall",
                 const char* city = "Boston", const char* state = "MA") {
    return std::string("<artist>") + artist + "</artist><event_date>" + date +
           "</event_date><venue_name>" + venue + "</venue_name><event_url>http://e/" + artist +
           "</event_url><venue_city>" + city + "</venue_city><venue_state>" + state +
           "</venue_state></event>\n";
}

struct EventPageTest : ::testing::Test {
    XML_Artist_List library;
    SHOWLIST shows;
    SHOWLIST previous;
    bool tickets = false;
    int stopAfter = -1; // stop requests answered true from this record on
    int asked = 0;

    EventPageTest() {
        for (const char* name : {"Simon & Garfunkel", "Preini", "The Beatles", "U2", "Wilco"}) {
            char key[kArtistKeySize];
            snprintf(key, sizeof key, "%s", name);
            cleanArtist(key);
            library.add(new XMLARTIST(key));
        }
    }
    ~EventPageTest() override {
        deleteShows(&shows);
        deleteShows(&previous);
        deleteNodes(library);
    }
    int parse(const std::string& page) {
        LibraryArtistIndex index(library);
        EventFiling filing{&library, &index, &shows, &previous, tickets,
                           [this] { return stopAfter >= 0 && asked++ >= stopAfter; }, ""};
        return parseEventPage(page, filing);
    }
    std::vector<std::string> artists() {
        std::vector<std::string> out;
        for (SHOWENTRY* e = shows.head; e; e = e->next) out.push_back(e->artist);
        return out;
    }
};

TEST(SiteTemplates, CountAndSplit) {
    std::string reply = "<list><site id=1 ticket=1>http://a/?x=1</site>\n"
                        "<site>http://b/?y=2&ticket=1</site><site name=c>http://c/?z</site></list>";
    EXPECT_EQ(countSiteTemplates(reply), 3);
    std::vector<SiteTemplate> sites = splitSiteTemplates(reply);
    ASSERT_EQ(sites.size(), 3u);
    EXPECT_EQ(sites[0].address, "http://a/?x=1");
    EXPECT_TRUE(sites[0].ticketsAvailable);
    EXPECT_EQ(sites[1].address, "http://b/?y=2&ticket=1");
    EXPECT_TRUE(sites[1].ticketsAvailable); // anywhere in the template counts
    EXPECT_EQ(sites[2].address, "http://c/?z");
    EXPECT_FALSE(sites[2].ticketsAvailable);
}

TEST(SiteTemplates, NoSitesAndUnclosedSites) {
    EXPECT_EQ(countSiteTemplates("<NOSITES>"), 0);
    EXPECT_TRUE(splitSiteTemplates("").empty());
    std::vector<SiteTemplate> sites = splitSiteTemplates("<site>http://a/?</site><site>http://b/?");
    ASSERT_EQ(sites.size(), 1u);
    EXPECT_EQ(countSiteTemplates("<site>http://a/?</site><site>http://b/?"), 2);
    EXPECT_EQ(countSiteTemplates("<site<site"), 1); // the next search starts 6 on
    // A wrapper element whose name starts with "site" counts as one: replies must not have one.
    EXPECT_EQ(countSiteTemplates("<sites><site>a</site></sites>"), 2);
}

TEST_F(EventPageTest, OneRecordPerLineFilesLibraryArtistsOnly) {
    std::string page = line("Wilco") + line("Nobody Known") + line("Beatles", "12/31/2026");
    EXPECT_EQ(parse(page), 0);
    EXPECT_EQ(artists(), (std::vector<std::string>{"Wilco", "Beatles"}));
    SHOWENTRY* w = shows.head;
    EXPECT_EQ(w->month, 7);
    EXPECT_EQ(w->day, 4);
    EXPECT_EQ(w->year, 2026);
    EXPECT_STREQ(w->location, "Boston, MA");
    EXPECT_STREQ(w->venue, "Hall");
    EXPECT_STREQ(w->url, "http://e/Wilco");
    EXPECT_STREQ(w->otherArtists, "");
    EXPECT_FALSE(w->ticketsAvailable);
}

TEST_F(EventPageTest, TicketsFlagComesFromTheTemplate) {
    tickets = true;
    parse(line("Wilco") + line("U2"));
    for (SHOWENTRY* e = shows.head; e; e = e->next) EXPECT_TRUE(e->ticketsAvailable);
}

TEST_F(EventPageTest, RecordOverSixLines) {
    std::string page = "<event>\n<artist>Wilco</artist>\n<event_date>1/2/2027</event_date>\n"
                       "<venue_name>Club</venue_name>\n<event_url>u</event_url>\n"
                       "<venue_city>Austin</venue_city>\n<venue_state>TX</venue_state>\n</event>\n";
    parse(page);
    ASSERT_EQ(artists(), (std::vector<std::string>{"Wilco"}));
    EXPECT_STREQ(shows.head->location, "Austin, TX");
}

TEST_F(EventPageTest, AfterAnIncompleteRecordOnlyOneLineRecordsCount) {
    std::string incomplete = "<artist>U2</artist>\n<event_date>1/1/2027</event_date>\n"
                             "<event_url>u</event_url>\n<venue_city>X</venue_city>\n"
                             "<venue_state>Y</venue_state>\n</event>\n"; // no venue
    std::string multiLine = "<artist>Wilco</artist>\n<event_date>1/2/2027</event_date>\n"
                            "<venue_name>Club</venue_name>\n<event_url>u</event_url>\n"
                            "<venue_city>Austin</venue_city>\n<venue_state>TX</venue_state>\n"
                            "</event>\n";
    parse(incomplete + multiLine);
    EXPECT_TRUE(artists().empty());
    // A whole record on one line ends strict mode and takes the stranded artists along.
    parse(incomplete + multiLine + line("Preini", "3/3/2027"));
    EXPECT_EQ(artists(), (std::vector<std::string>{"U2", "Wilco", "Preini"}));
    SHOWENTRY* u2 = shows.head;
    EXPECT_EQ(u2->month, 3); // the filed record's own date
    EXPECT_STREQ(u2->otherArtists, "Wilco, Preini");
}

TEST_F(EventPageTest, StrictModeEndsWithTheFirstFiledRecord) {
    std::string page = "<artist>Nobody</artist>\n</event>\n" + line("Wilco") +
                       "<artist>U2</artist>\n<event_date>1/2/2027</event_date>\n"
                       "<venue_name>Club</venue_name>\n<event_url>u</event_url>\n"
                       "<venue_city>Austin</venue_city>\n<venue_state>TX</venue_state>\n</event>\n";
    parse(page);
    EXPECT_EQ(artists(), (std::vector<std::string>{"Wilco", "U2"}));
}

TEST_F(EventPageTest, OtherActsNameEachOther) {
    std::string twoArtists = "<artist>Simon & Garfunkel</artist>\n<artist>Preini</artist>\n" +
                             line("Nobody Known");
    parse(twoArtists);
    ASSERT_EQ(artists(), (std::vector<std::string>{"Simon & Garfunkel", "Preini"}));
    EXPECT_STREQ(shows.head->otherArtists, "Preini, Nobody Known");
    EXPECT_STREQ(shows.tail->otherArtists, "Simon & Garfunkel, Nobody Known");
}

TEST(OtherActs, ShortNamesAndSameKeys) {
    std::vector<std::string> names = {"Wilco", "U2", "WILCO!"};
    std::vector<std::string> keys = {"wilco", "u2", "wilco"};
    EXPECT_EQ(otherActs(names, keys, "wilco"), "U2");
    EXPECT_EQ(otherActs(names, keys, "u2"), "Wilco, WILCO!");
    EXPECT_EQ(otherActs({"Wilco", ""}, {"wilco", ""}, "wilco"), "");
    std::vector<std::string> many(100, std::string(20, 'x'));
    std::vector<std::string> manyKeys(100, "x");
    EXPECT_EQ(otherActs(many, manyKeys, "y").size(), 1023u);
}

TEST_F(EventPageTest, SameShowTwiceMergesAndMarksCarryOver) {
    SHOWENTRY* old = new SHOWENTRY;
    snprintf(old->artist, sizeof old->artist, "Wilco");
    old->month = 7, old->day = 4, old->year = 2026, old->attending = true;
    ASSERT_TRUE(previous.addShow(old, nullptr));
    parse(line("Wilco") + line("wilco"));
    ASSERT_EQ(shows.size(), 1u);
    EXPECT_TRUE(shows.head->attending);
}

TEST_F(EventPageTest, OddDates) {
    parse(line("Wilco", "12-25-2026") + line("U2", "5/6") + line("Preini", "a/b/c"));
    ASSERT_EQ(shows.size(), 3u);
    auto date = [this](const char* artist) {
        SHOWENTRY* e = shows.findShow(artist);
        return e ? std::vector<int>{e->month, e->day, e->year} : std::vector<int>{};
    };
    EXPECT_EQ(date("Wilco"), (std::vector<int>{12, 0, 0}));
    EXPECT_EQ(date("U2"), (std::vector<int>{5, 6, 0}));
    EXPECT_EQ(date("Preini"), (std::vector<int>{0, 0, 0}));
}

TEST_F(EventPageTest, MalformedPages) {
    std::string noFinalFeed = line("Wilco");
    noFinalFeed.pop_back();
    EXPECT_EQ(parse(noFinalFeed), 0);
    EXPECT_EQ(shows.size(), 0u);

    std::string split = "<artist>Wil\nco</artist><event_date>1/1/2027</event_date>"
                        "<venue_name>V</venue_name><event_url>u</event_url>"
                        "<venue_city>C</venue_city><venue_state>S</venue_state></event>\n";
    parse(split);
    EXPECT_EQ(shows.size(), 0u);

    std::string withNul = line("Wilco");
    withNul.insert(10, 1, '\0');
    parse(withNul + line("U2"));
    EXPECT_EQ(artists(), (std::vector<std::string>{"U2"}));

    std::string huge(1 << 20, 'x');
    parse(huge + "\n" + huge + line("Preini") + line("Wilco", "1/1/2030"));
    EXPECT_EQ(shows.size(), 3u); // "Preini" sits after a megabyte of junk on its line

    std::string longArtist = std::string(600, 'w');
    parse(line(longArtist.c_str()));
    EXPECT_EQ(shows.size(), 3u);
}

TEST_F(EventPageTest, EveryTagMissingInTurnDropsTheRecord) {
    const char* tags[] = {"artist", "event_date", "venue_name", "event_url", "venue_city",
                          "venue_state"};
    for (const char* tag : tags) {
        std::string record = line("Wilco");
        std::string open = std::string("<") + tag + ">";
        record.erase(record.find(open), 1); // "<artist>" becomes "artist>": no opening tag
        deleteShows(&shows);
        parse(record + line("U2"));
        // The broken record is dropped; the next one-line record is filed and
        // carries the dropped record's artist along (unless that was the tag missing).
        ASSERT_EQ(shows.size(), std::string(tag) == "artist" ? 1u : 2u) << tag;
        EXPECT_STREQ(shows.tail->artist, "U2") << tag;
    }
}

TEST_F(EventPageTest, StopIsAskedBeforeEveryRecord) {
    stopAfter = 1;
    EXPECT_EQ(parse(line("Wilco") + line("U2") + line("Preini")), -1);
    EXPECT_EQ(artists(), (std::vector<std::string>{"Wilco"}));
}

TEST_F(EventPageTest, EmptyArtistNeverMatches) {
    library.add(new XMLARTIST(""));
    parse(line("") + line("!!!"));
    EXPECT_EQ(shows.size(), 0u);
}

} // namespace
