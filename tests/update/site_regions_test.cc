#include "update/site_regions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

struct Outcome {
    int result;
    std::string text;
};

Outcome abbreviate(const char* input) {
    char buffer[256] = {};
    strncpy(buffer, input, 255);
    int result = stateAbbrev_generic(buffer);
    return {result, buffer};
}

TEST(StateAbbrevGeneric, NamesAndCodesInAnyCase) {
    for (const char* in : {"New York", "new york", "NEW YORK", "ny", "NY", " n.y. "})
        EXPECT_EQ(abbreviate(in).text, "NY") << in;
    EXPECT_EQ(abbreviate("Massachusetts").text, "MA");
    EXPECT_EQ(abbreviate("District of Columbia").text, "DC");
}

TEST(StateAbbrevGeneric, SiteCodesThatDifferFromTheCoordinateLookup) {
    EXPECT_EQ(abbreviate("New Brunswick").text, "NB");
    EXPECT_EQ(abbreviate("Nova Scotia").text, "NS");
    EXPECT_EQ(abbreviate("Austria").text, "AUS");
    EXPECT_EQ(abbreviate("Australia").text, "AU");
    EXPECT_EQ(abbreviate("Israel").text, "IRL");
    EXPECT_EQ(abbreviate("Ireland").text, "IR");
    EXPECT_EQ(abbreviate("India").text, "INA");
    EXPECT_EQ(abbreviate("Indonesia").text, "IND");
    EXPECT_EQ(abbreviate("Singapore").text, "SN");
    EXPECT_EQ(abbreviate("Slovak Republic").text, "SKR");
    EXPECT_EQ(abbreviate("Virgin Islands").text, "VI");
    EXPECT_EQ(abbreviate("Yukon").text, "YT");
}

TEST(StateAbbrevGeneric, UnknownRegionsStayCleaned) {
    Outcome o = abbreviate("Bavaria");
    EXPECT_EQ(o.result, -1);
    EXPECT_EQ(o.text, "bavaria");
    o = abbreviate("  Île-de-France ");
    EXPECT_EQ(o.result, -1);
    EXPECT_EQ(o.text, "ledefrance");
    o = abbreviate("");
    EXPECT_EQ(o.result, -1);
    EXPECT_EQ(o.text, "");
}

TEST(StateAbbrevGeneric, AbbreviationsAreRecognisedOnlyWhole) {
    EXPECT_EQ(abbreviate("aus").result, 0);
    EXPECT_EQ(abbreviate("aus").text, "AUS");
    EXPECT_EQ(abbreviate("au s").text, "AUS");
    EXPECT_EQ(abbreviate("usa").result, -1);
}

TEST(StateAbbrevGeneric, LongInputIsCutNotOverrun) {
    std::string longName(400, 'z');
    Outcome o = abbreviate(longName.c_str());
    EXPECT_EQ(o.result, -1);
    EXPECT_EQ(o.text, std::string(255, 'z'));
}

} // namespace
