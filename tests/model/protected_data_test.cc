#include "model/protected_data.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

TEST(ProtectedDataDefaults, MatchTheTable) {
    ProtectedData d;
    char text[1024];
    d.getCurCity(text);
    EXPECT_STREQ(text, "-");
    d.getCurState(text);
    EXPECT_STREQ(text, "-");
    d.getCurSearchRadiusDisplay(text);
    EXPECT_STREQ(text, "75");
    d.getiCalLoc(text);
    EXPECT_STREQ(text, "-");
    d.getCurCityDisplay(text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(d.getCurSearchRadius(), 75);
    EXPECT_EQ(d.getUpdatingScheduledTasks(), 0xFFFFFFFFul);
    EXPECT_EQ(d.getLastSearch_d(), 1);
    EXPECT_EQ(d.getLastSearch_m(), 1);
    EXPECT_EQ(d.getLastSearch_y(), 1970);
    EXPECT_TRUE(d.getValid_internet_connection());
    EXPECT_TRUE(d.getValid_preference_file());
    EXPECT_FALSE(d.getForceUpdate());
    EXPECT_FALSE(d.getNotificationWindowStyle());
    EXPECT_EQ(d.getUpdatingProgress(), 0.0);
    EXPECT_EQ(d.getOSXVersion(), 0.0f);
    EXPECT_EQ(d.getCurCalTab(), 0);
}

// Every string field cuts at its own size minus one and always terminates.
TEST(ProtectedDataStrings, TruncateAtEveryArraySize) {
    ProtectedData d;
    struct Field {
        int size;
        void (ProtectedData::*set)(const char*);
        void (ProtectedData::*get)(char*);
    };
    const std::vector<Field> fields = {
#define SB_FIELD(Name, member, size, initial)                                                      \
    {ProtectedData::Name##Size, &ProtectedData::set##Name, &ProtectedData::get##Name},
        SB_STRING_FIELDS(SB_FIELD)
#undef SB_FIELD
    };
    ASSERT_EQ(fields.size(), 21u);
    for (const Field& f : fields) {
        for (int length : {0, f.size - 2, f.size - 1, f.size, f.size + 1, 5000}) {
            std::string in(length, 'x');
            (d.*f.set)(in.c_str());
            std::vector<char> out(f.size + 16, '#');
            (d.*f.get)(out.data());
            size_t expected = length < f.size - 1 ? length : f.size - 1;
            EXPECT_EQ(strlen(out.data()), expected) << "size " << f.size << " length " << length;
            EXPECT_EQ(out[f.size], '#') << "getter wrote past the field size " << f.size;
        }
    }
}

TEST(ProtectedDataStrings, NullSetsEmpty) {
    ProtectedData d;
    d.setUsername(nullptr);
    char out[64];
    d.getUsername(out);
    EXPECT_STREQ(out, "");
}

TEST(ProtectedDataProgress, Clamping) {
    ProtectedData d;
    d.setUpdatingProgress(-5);
    EXPECT_EQ(d.getUpdatingProgress(), 0.0);
    d.setUpdatingProgress(250);
    EXPECT_EQ(d.getUpdatingProgress(), 100.0);
    d.setUpdatingProgress(90);
    d.incUpdatingProgress(30);
    EXPECT_EQ(d.getUpdatingProgress(), 100.0);
    // No lower clamp when incrementing.
    d.setUpdatingProgress(10);
    d.incUpdatingProgress(-25);
    EXPECT_EQ(d.getUpdatingProgress(), -15.0);
}

TEST(ProtectedDataLocationEditor, CityAndStateStopAt254) {
    ProtectedData d;
    for (int i = 0; i < 300; ++i) d.addLetterCurCityDisplay('c');
    char out[256];
    d.getCurCityDisplay(out);
    EXPECT_EQ(strlen(out), 254u);
    d.setCurStateDisplay(std::string(253, 's').c_str());
    d.addLetterCurStateDisplay('t');
    d.addLetterCurStateDisplay('u');
    d.getCurStateDisplay(out);
    EXPECT_EQ(strlen(out), 254u);
    EXPECT_EQ(out[253], 't');
}

TEST(ProtectedDataLocationEditor, RadiusTakesFourCharacters) {
    ProtectedData d;
    d.setCurSearchRadiusDisplay("");
    for (char c : std::string("12345")) d.addLetterCurSearchRadiusDisplay(c);
    char out[256];
    d.getCurSearchRadiusDisplay(out);
    EXPECT_STREQ(out, "1234");
}

TEST(ProtectedDataLocationEditor, RemoveLetter) {
    ProtectedData d;
    d.setCurCityDisplay("");
    d.removeLetterCurCityDisplay();
    char out[256];
    d.getCurCityDisplay(out);
    EXPECT_STREQ(out, "");
    d.setCurStateDisplay("NY");
    d.removeLetterCurStateDisplay();
    d.getCurStateDisplay(out);
    EXPECT_STREQ(out, "N");
    d.removeLetterCurSearchRadiusDisplay();
    d.getCurSearchRadiusDisplay(out);
    EXPECT_STREQ(out, "7");
}

TEST(ProtectedDataLocationEditor, RadiusLimit) {
    ProtectedData d;
    char out[256];
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"999", "300"}, {"301", "300"}, {"300", "300"}, {"0", "0"},
        {"-50", "-50"}, {"", ""},       {"abc", "abc"}, {"50x", "50x"},
        {"400x", "300"}, {" 9999", "300"},
    };
    for (const auto& c : cases) {
        d.setCurSearchRadiusDisplay(c.first);
        d.limitCurSearchRadiusDisplay();
        d.getCurSearchRadiusDisplay(out);
        EXPECT_STREQ(out, c.second) << "from '" << c.first << "'";
    }
}

TEST(ProtectedDataFilters, FilterStringJoinsWithTrailingSeparators) {
    ProtectedData d;
    char out[ProtectedData::FilterStringSize];
    d.getFilterString(out);
    EXPECT_STREQ(out, "");
    d.addFormatFilter("A");
    d.addFormatFilter("B");
    d.getFilterString(out);
    EXPECT_STREQ(out, "A@@B@@");
}

TEST(ProtectedDataFilters, DuplicatesIgnoringCaseAreRefused) {
    ProtectedData d;
    d.addFormatFilter("Live");
    d.addFormatFilter("live");
    d.addFormatFilter("LIVE");
    char out[ProtectedData::FilterStringSize];
    d.getFilterString(out);
    EXPECT_STREQ(out, "Live@@");
}

TEST(ProtectedDataFilters, NamesAreCutAt63AndTheStringAt511) {
    ProtectedData d;
    d.addFormatFilter(std::string(100, 'a').c_str());
    EXPECT_TRUE(d.isFilterOn(std::string(63, 'a').c_str()));
    for (char c = 'b'; c <= 'k'; ++c) d.addFormatFilter(std::string(63, c).c_str());
    char out[ProtectedData::FilterStringSize + 8];
    memset(out, '#', sizeof out);
    d.getFilterString(out);
    EXPECT_EQ(strlen(out), 511u);
    EXPECT_EQ(out[512], '#');
}

TEST(ProtectedDataFilters, RemoveIsExact) {
    ProtectedData d;
    d.addFormatFilter("Live");
    d.addFormatFilter("Import");
    d.removeFormatFilter("live");
    EXPECT_TRUE(d.isFilterOn("Live"));
    d.removeFormatFilter("Live");
    EXPECT_FALSE(d.isFilterOn("Live"));
    char out[ProtectedData::FilterStringSize];
    d.getFilterString(out);
    EXPECT_STREQ(out, "Import@@");
}

TEST(ProtectedDataFilters, ListTestIsExactAndAnyMatchCounts) {
    ProtectedData d;
    d.addFormatFilter("Live");
    FRIENDLIST tags;
    EXPECT_FALSE(d.isFilterOn(&tags));
    tags.add(new FRIENDNAME("Import"));
    tags.add(new FRIENDNAME("live"));
    EXPECT_FALSE(d.isFilterOn(&tags));
    tags.add(new FRIENDNAME("Live "));
    EXPECT_FALSE(d.isFilterOn(&tags)); // "live " differs from "live": added
    EXPECT_EQ(tags.size(), 3u);
    d.addFormatFilter("Import");
    EXPECT_TRUE(d.isFilterOn(&tags));
    deleteNames(&tags);
}

} // namespace
