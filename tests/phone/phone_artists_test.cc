// The phone's artist list: cleaning a name for the request, and building
// the list from a library file and the band lists.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "phone/phone_artists.h"
#include "service_app.h"
#include "temp_home.h"

namespace {

std::string cleaned(const std::string& name) {
    char buffer[256] = {};
    snprintf(buffer, sizeof buffer, "%s", name.c_str());
    iPhoneArtistClean(buffer);
    return buffer;
}

TEST(PhoneArtistClean, KeepsLettersDigitsAndInnerBlanks) {
    struct Case {
        const char* in;
        const char* out;
    } cases[] = {
        {"Wilco", "Wilco"},
        {"   Leading Blanks", "Leading Blanks"},
        {"Trailing  ", "Trailing"},
        {"Simon &#38; Garfunkel", "Simon and Garfunkel"},
        {"&#38;Friends", "andFriends"},
        {"Simon & Garfunkel", "Simon  Garfunkel"}, // the blanks around it stay
        {"Bj\xc3\xb6rk", "Bjrk"},
        {"Sigur R\xc3\xb3s", "Sigur Rs"},
        {"AC/DC", "ACDC"},
        {"Guns N' Roses!", "Guns N Roses"},
        {"Beatles, The", "Beatles The"},
        {"&amp; 7", "amp 7"},
        {"!!!", ""},
        {"", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(cleaned(c.in), c.out) << c.in;
}

TEST(PhoneArtistClean, CutsAt255) {
    EXPECT_EQ(cleaned(std::string(255, 'a')), std::string(255, 'a'));
    char buffer[256];
    memset(buffer, 'b', sizeof buffer); // no terminator within the buffer
    iPhoneArtistClean(buffer);
    EXPECT_EQ(std::string(buffer), std::string(255, 'b'));
}

std::string track(int id, const std::string& artist, const char* genre = "Rock") {
    return "<dict>\n<key>Track ID</key><integer>" + std::to_string(id) +
           "</integer>\n<key>Artist</key><string>" + artist +
           "</string>\n<key>Genre</key><string>" + genre + "</string>\n</dict>\n";
}

class PhoneArtists : public ServiceApp {
  protected:
    TempHome home;
    std::string libraryPath() const { return home.path() + "/library.xml"; }

    void writeLibrary(const std::string& tracks) {
        writeText(libraryPath(), "<plist>\n<dict>\n<key>Tracks</key>\n<dict>\n" + tracks +
                                     "</dict>\n</dict>\n</plist>\n");
        store().setiTunes_xml_path(libraryPath().c_str());
    }
    void bandLists(const std::string& include, const std::string& exclude) {
        writeText(home.path() + "/include.txt", include);
        writeText(home.path() + "/exclude.txt", exclude);
        store().setStagebeaconIncludeBandsList((home.path() + "/include.txt").c_str());
        store().setStagebeaconExcludeBandsList((home.path() + "/exclude.txt").c_str());
    }
    static std::vector<std::string> names() {
        std::vector<std::string> out;
        for (XMLARTIST* a = all_artists.head; a; a = a->next)
            out.push_back(a->name);
        return out;
    }
};

TEST_F(PhoneArtists, OneCleanedNamePerArtistInKeyOrder) {
    writeLibrary(track(1, "The Beatles") + track(2, "Wilco") + track(3, "Beatles") +
                 track(4, "Beatles, The") + track(5, "  Spoon") +
                 track(6, "Radio Show", "Podcast") + track(7, "Simon &#38; Garfunkel") +
                 track(8, "\xc3\xa9\xc3\xa9") + track(9, "Various Artists") +
                 track(10, "Low", "podcast"));
    bandLists("", "");
    EXPECT_EQ(GetFullArtistList(app.get()), 0);
    // "The Beatles" and "Beatles" meet under one key, spelled as first met;
    // the comma name is kept whole; the compilation name as cleaned here
    // ("Various Artists") is not one of the two removed spellings.
    EXPECT_EQ(names(),
              (std::vector<std::string>{"The Beatles", "Beatles The", "Low", "Simon and Garfunkel",
                                        "Spoon", "Various Artists", "Wilco"}));
}

TEST_F(PhoneArtists, BandListsAddAndRemoveExactSpellings) {
    writeLibrary(track(1, "Wilco") + track(2, "The Beatles") + track(3, "various"));
    bandLists("Arcade Fire\n\n  Feist!\n", "Beatles\nWilco\n");
    EXPECT_EQ(GetFullArtistList(app.get()), 0);
    // "Beatles" is not the stored spelling "The Beatles", so it stays.
    EXPECT_EQ(names(), (std::vector<std::string>{"Arcade Fire", "The Beatles", "Feist"}));
}

TEST_F(PhoneArtists, PlaylistNarrowsTheList) {
    writeLibrary(track(1, "Wilco") + track(2, "Spoon") + track(3, "Low") +
                 "<key>Playlists</key>\n<array>\n<dict>\n"
                 "<key>Name</key><string>StageBeacon</string>\n"
                 "<key>Playlist Items</key>\n<array>\n"
                 "<dict>\n<key>Track ID</key><integer>3</integer>\n</dict>\n"
                 "<dict>\n<key>Track ID</key><integer>1</integer>\n</dict>\n"
                 "</array>\n</dict>\n</array>\n");
    bandLists("", "");
    EXPECT_EQ(GetFullArtistList(app.get()), 0);
    EXPECT_EQ(names(), (std::vector<std::string>{"Low", "Wilco"}));
}

TEST_F(PhoneArtists, MissingLibraryLeavesTheListEmpty) {
    writeLibrary(track(1, "Wilco"));
    EXPECT_EQ(GetFullArtistList(app.get()), 0);
    EXPECT_EQ(all_artists.count, 1u);
    store().setiTunes_xml_path((home.path() + "/none.xml").c_str());
    EXPECT_EQ(GetFullArtistList(app.get()), 1);
    EXPECT_EQ(all_artists.count, 0u);
}

} // namespace
