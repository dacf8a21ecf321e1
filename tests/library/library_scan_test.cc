// The library scan: key texts, track rules, the plug-in's playlist, the band
// lists, and libraries as the player writes them (generated).
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "library/file_io.h"
#include "library_generator.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "temp_home.h"

namespace {

std::string track(int id, const std::string& artist, const std::string& album = "",
                  const std::string& genre = "") {
    std::string n = std::to_string(id);
    std::string t = "\t\t<key>" + n + "</key>\n\t\t<dict>\n\t\t\t<key>Track ID</key><integer>" + n +
                    "</integer>\n\t\t\t<key>Name</key><string>Song " + n + "</string>\n";
    if (!artist.empty()) t += "\t\t\t<key>Artist</key><string>" + artist + "</string>\n";
    if (!album.empty()) t += "\t\t\t<key>Album</key><string>" + album + "</string>\n";
    if (!genre.empty()) t += "\t\t\t<key>Genre</key><string>" + genre + "</string>\n";
    return t + "\t\t</dict>\n";
}

std::string playlist(const std::string& name, const std::vector<int>& members, bool withArray) {
    std::string p = "\t\t<dict>\n\t\t\t<key>Name</key><string>" + name +
                    "</string>\n\t\t\t<key>Playlist ID</key><integer>9000</integer>\n";
    if (withArray) {
        p += "\t\t\t<key>Playlist Items</key>\n\t\t\t<array>\n";
        for (int m : members)
            p += "\t\t\t\t<dict>\n\t\t\t\t\t<key>Track ID</key><integer>" + std::to_string(m) +
                 "</integer>\n\t\t\t\t</dict>\n";
        p += "\t\t\t</array>\n";
    }
    return p + "\t\t</dict>\n";
}

std::string library(const std::string& tracks, const std::string& playlists = "",
                    const std::string& version = "7.6.2") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
           "\t<key>Application Version</key><string>" +
           version + "</string>\n\t<key>Tracks</key>\n\t<dict>\n" + tracks +
           "\t</dict>\n\t<key>Playlists</key>\n\t<array>\n" + playlists +
           "\t</array>\n</dict>\n</plist>\n";
}

template <typename List> std::vector<std::string> namesOf(List& list) {
    std::vector<std::string> names;
    for (auto* n = list.head; n; n = n->next) names.emplace_back(n->name);
    return names;
}

using Names = std::vector<std::string>;

class LibraryScanTest : public ::testing::Test {
  protected:
    TempHome home;
    std::string libraryPath = home.path() + "/iTunes Music Library.xml";
    std::string includePath = home.path() + "/include.txt";
    std::string excludePath = home.path() + "/exclude.txt";
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();

    void SetUp() override {
        app->protectedData.setiTunes_xml_path(libraryPath.c_str());
        app->protectedData.setStagebeaconIncludeBandsList(includePath.c_str());
        app->protectedData.setStagebeaconExcludeBandsList(excludePath.c_str());
    }
    int scan(const std::string& text) {
        writeText(libraryPath, text);
        return app->calGetData.parseXML();
    }
    Names artists() { return namesOf(app->calGetData.xmlArtists); }
    Names albums() { return namesOf(app->calGetData.xmlAlbums); }
};

TEST_F(LibraryScanTest, ApplicationVersionKeepsOnlyTheFirstPoint) {
    ASSERT_EQ(scan(library("", "", "7.6.2")), 0);
    EXPECT_FLOAT_EQ(app->protectedData.getiTunesVersion(), 7.62f);
    ASSERT_EQ(scan(library("", "", "9.0.2")), 0);
    EXPECT_FLOAT_EQ(app->protectedData.getiTunesVersion(), 9.02f);
}

TEST_F(LibraryScanTest, TracksEnterCleanedSortedDistinctNames) {
    ASSERT_EQ(scan(library(track(1, "Wilco", "Yankee Hotel Foxtrot") +
                           track(2, "Wilco", "Yankee Hotel Foxtrot") +
                           track(3, "The National", "Boxer", "Rock") + track(4, "ABBA") +
                           track(5, "AC&#38;DC", "Back In Black"))),
              0);
    EXPECT_EQ(artists(), (Names{"abba", "acdc", "national", "wilco"}));
    EXPECT_EQ(albums(), (Names{"backinblack", "boxer", "yankeehotelfoxtrot"}));
}

TEST_F(LibraryScanTest, CommaNamesEnterBothWordOrders) {
    ASSERT_EQ(scan(library(track(1, "Beatles, The", "Abbey Road") + track(2, ",Leading") +
                           track(3, "Trailing,") + track(4, "Crosby, Stills, Nash"))),
              0);
    // B then A is " The"+"Beatles"; A then B is "Beatles"+" The". A comma
    // that is the first or the last character does not split.
    EXPECT_EQ(artists(), (Names{"beatlesthe", "crosbystillsnash", "leading", "stillsnashcrosby",
                                "thebeatles", "trailing"}));
}

TEST_F(LibraryScanTest, SkippedTracks) {
    ASSERT_EQ(scan(library(track(1, "Serial Show", "Season One", "Podcast") +
                           track(2, "Lower Show", "Season Two", "podcast") +
                           track(3, "", "Orphan Album") +
                           track(4, "Various Artists", "Now 42") + track(5, "!!!", "Odd"))),
              0);
    EXPECT_EQ(artists(), (Names{"lowershow"}));
    EXPECT_EQ(albums(), (Names{"now42", "seasontwo"}));
}

TEST_F(LibraryScanTest, ThePlaylistNamedAfterThePlugInNarrowsTheLists) {
    std::string tracks = track(1, "Wilco", "Summerteeth") + track(2, "Low", "Things We Lost") +
                         track(3, "Spoon", "Gimme Fiction");
    ASSERT_EQ(scan(library(tracks, playlist("Library", {1, 2, 3}, true) +
                                       playlist("STAGEBEACON", {3, 1, 99}, true) +
                                       playlist("Other", {2}, true))),
              0);
    EXPECT_EQ(artists(), (Names{"spoon", "wilco"}));
    EXPECT_EQ(albums(), (Names{"gimmefiction", "summerteeth"}));

    // Without members the lists stay as the tracks left them.
    ASSERT_EQ(scan(library(tracks, playlist("stagebeacon", {}, false))), 0);
    EXPECT_EQ(artists(), (Names{"low", "spoon", "wilco"}));
    // A playlist that merely contains the name is not it.
    ASSERT_EQ(scan(library(tracks, playlist("Stagebeacon Faves", {2}, true))), 0);
    EXPECT_EQ(artists().size(), 3u);
}

TEST_F(LibraryScanTest, BandListsAddAndRemove) {
    writeText(includePath, "Beatles, The\nSigur Ros\n\nWilco");
    writeText(excludePath, "wilco\n\n!!!\nNational, The");
    ASSERT_EQ(scan(library(track(1, "Wilco") + track(2, "The National") +
                           track(3, "Beirut") + track(4, "National, The"))),
              0);
    // The empty include line is offered as the empty name; the exclude list
    // wins over the library and the include list.
    EXPECT_EQ(artists(), (Names{"", "beatlesthe", "beirut", "national", "sigurros", "thebeatles"}));
}

TEST_F(LibraryScanTest, MissingLibraryLeavesEmptyListsAndIgnoresBandLists) {
    ASSERT_EQ(scan(library(track(1, "Wilco", "A"))), 0);
    writeText(includePath, "Beirut");
    app->protectedData.setiTunes_xml_path((home.path() + "/none.xml").c_str());
    EXPECT_EQ(app->calGetData.parseXML(), 1);
    EXPECT_TRUE(artists().empty());
    EXPECT_TRUE(albums().empty());
}

TEST_F(LibraryScanTest, OverlongLinesAndValues) {
    std::string hugeArtist(10000, 'z');
    std::string garbage(3 << 20, '<'); // one 3 MB line of nothing but "<"
    ASSERT_EQ(scan(library(track(1, hugeArtist) + garbage + "\n" + track(2, "Low"))), 0);
    EXPECT_EQ(artists(), (Names{"low", std::string(255, 'z')}));
}

LibraryShape generatedShape() {
    LibraryShape shape;
    shape.tracks = 600;
    shape.artists = 40;
    shape.tracksPerAlbum = 8;
    shape.commaEvery = 7;
    shape.podcastEvery = 9;
    shape.variousEvery = 11;
    shape.shuffled = true;
    return shape;
}

TEST_F(LibraryScanTest, GeneratedExportGivesEveryArtistAndAlbum) {
    LibraryShape shape = generatedShape();
    LibraryFacts facts;
    ASSERT_TRUE(writeLibrary(libraryPath, shape, &facts));
    ASSERT_EQ(app->calGetData.parseXML(), 0);
    EXPECT_EQ(artists().size(), static_cast<size_t>(facts.artistNames + facts.commaArtists));
    EXPECT_EQ(albums().size(), static_cast<size_t>(facts.albums));
    EXPECT_FLOAT_EQ(app->protectedData.getiTunesVersion(), 9.02f);
    Names sorted = artists();
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));

    // The same library with CRLF line ends and no final line feed.
    for (bool crlf : {true, false}) {
        shape.crlf = crlf;
        shape.finalNewline = false;
        ASSERT_TRUE(writeLibrary(libraryPath, shape, &facts));
        ASSERT_EQ(app->calGetData.parseXML(), 0);
        EXPECT_EQ(artists(), sorted) << "crlf " << crlf;
    }
}

TEST_F(LibraryScanTest, GeneratedExportWithThePlaylist) {
    LibraryShape shape = generatedShape();
    shape.playlistName = "Stagebeacon";
    shape.playlistTracks = 100;
    LibraryFacts facts;
    ASSERT_TRUE(writeLibrary(libraryPath, shape, &facts));
    ASSERT_EQ(app->calGetData.parseXML(), 0);
    ASSERT_GT(facts.playlistArtistNames, 0);
    EXPECT_LT(facts.playlistArtistNames, facts.artistNames);
    EXPECT_EQ(artists().size(),
              static_cast<size_t>(facts.playlistArtistNames + facts.playlistCommaArtists));
    EXPECT_EQ(albums().size(), static_cast<size_t>(facts.playlistAlbums));
}

} // namespace

namespace {

// Key texts are found wherever they stand on a line: at every offset and
// line length around the blocks the scan compares at once.
TEST_F(LibraryScanTest, KeyTextsAtEveryOffset) {
    for (size_t before = 0; before <= 40; before += 1) {
        for (size_t after : {0, 1, 5, 15, 16, 17, 33}) {
            std::string pad(before, ' '), tail(after, 'x');
            auto line = [&](const std::string& text) { return pad + text + tail + "\n"; };
            std::string text = line("<key>Application Version</key><string>1.2.3</string>") +
                               line("<dict>") +
                               line("<key>Track ID</key><integer>7</integer>") +
                               line("<key>Artist</key><string>Low</string>") +
                               line("<key>Album</key><string>Trust</string>") +
                               line("</dict>") + line("<key>Name</key><string>STAGEBEACON</string>") +
                               line("<array>") + line("<key>Track ID</key><integer>7</integer>") +
                               line("</array>");
            ASSERT_EQ(scan(text), 0);
            ASSERT_EQ(artists(), Names{"low"}) << before << " " << after;
            ASSERT_EQ(albums(), Names{"trust"}) << before << " " << after;
            ASSERT_FLOAT_EQ(app->protectedData.getiTunesVersion(), 1.23f);
        }
    }
}

TEST_F(LibraryScanTest, NearMissesAreNotKeyTexts) {
    ASSERT_EQ(scan(library("\t\t<dict>\n\t\t\t<key>Track ID</key><integer>1</integer>\n"
                           "\t\t\t<key>Artist </key><string>Nope</string>\n"
                           "\t\t\t<key>artist</key><string>Nope</string>\n"
                           "\t\t\t<key>Album Artist</key><string>Nope</string>\n"
                           "\t\t\t<key>Artist</key><string>Unclosed\n"
                           "\t\t</dict>\n")),
              0);
    EXPECT_TRUE(artists().empty());
}

} // namespace

namespace {

// Random bytes rich in the characters the scan reacts to: no crash, and
// every name found is a clean key.
TEST_F(LibraryScanTest, RandomBytesAreScannedSafely) {
    const char alphabet[] = "<>/\n\r,dkKaArTtiIGgenNp \t&#;0123456789\xff";
    uint32_t seed = 12345;
    for (int round = 0; round < 4; ++round) {
        std::string text;
        for (int i = 0; i < 300000; ++i) {
            seed = seed * 1103515245u + 12345u;
            text += alphabet[(seed >> 16) % (sizeof alphabet - 1)];
            if (i % 997 == 0) text += "<key>Artist</key><string>Band " + std::to_string(i) + "</string>";
            if (i % 1499 == 0) text += "\n<dict>\n<key>Track ID</key><integer>1</integer>\n</dict>\n";
        }
        ASSERT_EQ(scan(text), 0);
        for (const std::string& name : artists())
            for (char c : name) ASSERT_TRUE((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) << name;
    }
}

} // namespace
