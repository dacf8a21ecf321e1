#include "update/release_page.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "model/linked.h"

namespace {

const char* kAbbeyRoad = "<D>2009-06-16</D><A>The Beatles</A><T>Abbey Road</T>"
                         "<F>Import@@CD-single@@</F><L>B000002UB3</L>\n";

struct ReleasePageTest : ::testing::Test {
    XML_Artist_List library;
    SHOWLIST releases;
    SHOWLIST previous;

    ReleasePageTest() {
        library.add(new XMLARTIST("beatles"));
        library.add(new XMLARTIST("wilco"));
    }
    ~ReleasePageTest() override {
        deleteShows(&releases);
        deleteShows(&previous);
        deleteNodes(library);
    }
    int parse(const std::string& page) {
        LibraryArtistIndex index(library);
        ReleaseFiling filing{&library, &index, &releases, &previous, "http://127.0.0.1:8470",
                             "New+York", "NY"};
        return parseReleasePage(page, filing);
    }
    std::vector<std::string> formats(SHOWENTRY* e) {
        std::vector<std::string> out;
        for (FRIENDNAME* n = e->tags->head; n; n = n->next) out.push_back(n->name);
        return out;
    }
};

TEST_F(ReleasePageTest, ReleaseOfALibraryArtist) {
    EXPECT_EQ(parse(kAbbeyRoad), 1);
    ASSERT_EQ(releases.size(), 1u);
    SHOWENTRY* e = releases.head;
    EXPECT_STREQ(e->artist, "The Beatles");
    EXPECT_STREQ(e->venue, "Abbey Road");
    EXPECT_EQ(e->year, 2009);
    EXPECT_EQ(e->month, 6);
    EXPECT_EQ(e->day, 16);
    EXPECT_EQ(formats(e), (std::vector<std::string>{"Import", "CD-single"}));
    EXPECT_STREQ(e->url, "http://127.0.0.1:8470/CDReleases/cdreleaseclickthrough.php"
                         "?ASIN=B000002UB3&CITY=New+York&STATE=NY");
}

TEST_F(ReleasePageTest, FormatsNeedTheirSeparator) {
    parse("<D>2009-06-16</D><A>Wilco</A><T>A</T><F>Import</F><L>X</L>\n"
          "<D>2009-06-17</D><A>Wilco</A><T>B</T><F>Live@@Import</F><L>X</L>\n"
          "<D>2009-06-18</D><A>Wilco</A><T>C</T><F>@@live@@LIVE@@</F><L>X</L>\n");
    ASSERT_EQ(releases.size(), 3u);
    EXPECT_TRUE(formats(releases.head).empty());
    EXPECT_EQ(formats(releases.head->next), (std::vector<std::string>{"Live"}));
    EXPECT_EQ(formats(releases.tail), (std::vector<std::string>{"", "live"}));
}

TEST_F(ReleasePageTest, LinesMissingAnElementAreSkipped) {
    const char* lines[] = {
        "<A>Wilco</A><T>t</T><F>x@@</F><L>l</L>\n",
        "<D>2009-1-1</D><T>t</T><F>x@@</F><L>l</L>\n",
        "<D>2009-1-1</D><A>Wilco</A><F>x@@</F><L>l</L>\n",
        "<D>2009-1-1</D><A>Wilco</A><T>t</T><L>l</L>\n",
        "<D>2009-1-1</D><A>Wilco</A><T>t</T><F>x@@</F>\n",
        "<D>2009-1-1</D><A>Wilco</A><T>t</T><F>x@@</F><L>l\n",
        "<D>2009-1-1</D><A>Nobody</A><T>t</T><F>x@@</F><L>l</L>\n",
    };
    for (const char* l : lines) EXPECT_EQ(parse(l), 0) << l;
    EXPECT_EQ(releases.size(), 0u);
}

TEST_F(ReleasePageTest, UnreadableDateLeavesZeros) {
    parse("<D>soon</D><A>Wilco</A><T>t</T><F>x@@</F><L>l</L>\n");
    ASSERT_EQ(releases.size(), 1u);
    EXPECT_EQ(releases.head->year + releases.head->month + releases.head->day, 0);
}

TEST_F(ReleasePageTest, LongLineEndsThePageAndLastLineNeedsAFeed) {
    std::string fits = std::string(2046 - strlen(kAbbeyRoad) + 1, ' ') + kAbbeyRoad;
    ASSERT_EQ(fits.size(), 2047u); // 2046 characters and the line feed
    EXPECT_EQ(parse(fits), 1);
    std::string tooLong = " " + fits;
    EXPECT_EQ(parse(tooLong + kAbbeyRoad), 0);
    std::string last(kAbbeyRoad);
    last.pop_back();
    EXPECT_EQ(parse(last), 0);
}

TEST_F(ReleasePageTest, SameReleaseTwiceMergesFormats) {
    parse(std::string(kAbbeyRoad) +
          "<D>2009-06-16</D><A>Beatles</A><T>Abbey Road</T><F>Live@@import@@</F><L>Z</L>\n");
    ASSERT_EQ(releases.size(), 1u);
    EXPECT_EQ(formats(releases.head), (std::vector<std::string>{"Import", "CD-single", "Live"}));
}

} // namespace
