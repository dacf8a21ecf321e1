#include "model/artist_key.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::string key(const std::string& name) {
    char buffer[kArtistKeySize] = {};
    strncpy(buffer, name.c_str(), kArtistKeySize - 1);
    cleanArtist(buffer);
    return buffer;
}

std::string replaced(const std::string& text, const char* pattern, const char* with) {
    char buffer[kArtistKeySize] = {};
    strncpy(buffer, text.c_str(), kArtistKeySize - 1);
    substringReplace(buffer, pattern, with);
    return buffer;
}

TEST(CleanArtist, ArticlesAndConjunctionsMeet) {
    EXPECT_EQ(key("The Beatles"), "beatles");
    EXPECT_EQ(key("Beatles"), "beatles");
    EXPECT_EQ(key("Beatles, The"), "beatlesthe");
    EXPECT_EQ(key("Simon & Garfunkel"), "simongarfunkel");
    EXPECT_EQ(key("Simon and Garfunkel"), "simongarfunkel");
    EXPECT_EQ(key("Simon &amp; Garfunkel"), "simonampgarfunkel");
    EXPECT_EQ(key("A Tribe Called Quest"), "tribecalledquest");
    EXPECT_EQ(key("And You Will Know Us"), "youwillknowus");
}

TEST(CleanArtist, OnlyWholeWordsAreRemoved) {
    EXPECT_EQ(key("Theatre of Tragedy"), "theatreoftragedy");
    EXPECT_EQ(key("Andrew Bird"), "andrewbird");
    EXPECT_EQ(key("Abba"), "abba");
    // A word at the very end has no trailing blank and stays.
    EXPECT_EQ(key("Rock and"), "rockand");
}

TEST(CleanArtist, ReferenceForAmpersandIsRemoved) {
    EXPECT_EQ(key("Hall &#38; Oates"), "halloates");
    EXPECT_EQ(key("Hall &#39; Oates"), "hall39oates");
}

TEST(CleanArtist, LeadingWordsAreTakenInOrder) {
    // "and " then "the " then "a ", each only at the very start.
    EXPECT_EQ(key("the a team"), "team");
    EXPECT_EQ(key("a the band"), "band");
    EXPECT_EQ(key("and the gang"), "gang");
}

TEST(CleanArtist, RepeatedWordsAllGo) {
    // The search resumes at the replacement, so back-to-back words are caught.
    EXPECT_EQ(key("x and and y"), "xy");
    EXPECT_EQ(key("x the the the y"), "xy");
}

TEST(CleanArtist, OddInput) {
    EXPECT_EQ(key(""), "");
    EXPECT_EQ(key("!!! ??? ..."), "");
    EXPECT_EQ(key("___"), "");
    EXPECT_EQ(key("Bj\xc3\xb6rk"), "bjrk");
    EXPECT_EQ(key("\xff\x80\x01 Sigur R\xc3\xb3s"), "sigurrs");
    EXPECT_EQ(key("MGMT 2008"), "mgmt2008");
}

TEST(CleanArtist, LongNamesAreCutAt255) {
    std::string name(300, 'x');
    EXPECT_EQ(key(name), std::string(255, 'x'));
    // The cut comes before symbols are dropped: 255 characters of "x!" keep 128 letters.
    std::string mixed;
    for (int i = 0; i < 150; ++i) mixed += "x!";
    EXPECT_EQ(key(mixed), std::string(128, 'x'));
    // A run of single-letter words collapses instead of overrunning.
    std::string spaced;
    for (int i = 0; i < 150; ++i) spaced += "a ";
    EXPECT_EQ(key(spaced), "a");
}

TEST(CleanArtist, IsIdempotent) {
    for (const char* name : {"The Beatles", "Simon &amp; Garfunkel", "a the band", ""})
        EXPECT_EQ(key(key(name)), key(name)) << name;
}

TEST(SubstringReplace, ResumesAtTheReplacement) {
    EXPECT_EQ(replaced("aaaa", "aa", "a"), "a");
    EXPECT_EQ(replaced("abc", "", "x"), "abc");
    EXPECT_EQ(replaced("abc", "z", "x"), "abc");
}

TEST(SubstringReplace, ReplacementHoldingThePatternEnds) {
    EXPECT_EQ(replaced("aba", "a", "aa"), "aabaa");
}

TEST(SubstringReplace, GrowthIsCutAt255) {
    std::string text(200, '.');
    std::string out = replaced(text, ".", "xy.");
    EXPECT_EQ(out.size(), 255u);
    EXPECT_EQ(out.substr(0, 6), "xy.xy.");
}

TEST(SubstringErase, KeepsTheDescribedSets) {
    char a[kArtistKeySize] = "AbC d&e#f;g_h-1\t2";
    substringInitialErase(a);
    EXPECT_STREQ(a, "b d&e#f;gh12");
    char b[kArtistKeySize] = "AbC d&e#f;g_h-1\t2";
    substringErase(b);
    EXPECT_STREQ(b, "bdefgh12");
}

} // namespace
