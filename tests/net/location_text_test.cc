// The region lookup, the city cleaner and the distance formula.
#include "update/location.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::string abbreviate(const std::string& in, int* result) {
    char buffer[kLocationTextSize];
    snprintf(buffer, sizeof buffer, "%s", in.c_str());
    *result = latLongStateAbbrev(buffer);
    return buffer;
}

std::string city(const std::string& in) {
    char buffer[kLocationTextSize];
    snprintf(buffer, sizeof buffer, "%s", in.c_str());
    cleanCity(buffer);
    return buffer;
}

TEST(LatLongStateAbbrev, NamesAndAbbreviationsInAnySpelling) {
    int result = 1;
    for (const char* in : {"ny", "NY", "New York", "new york", " NEW-YORK "}) {
        EXPECT_EQ(abbreviate(in, &result), "NY") << in;
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(abbreviate("uk", &result), "UK");
    EXPECT_EQ(abbreviate(" CALIFORNIA", &result), "CA");
    EXPECT_EQ(abbreviate("District of Columbia", &result), "DC");
    EXPECT_EQ(abbreviate("Puerto Rico", &result), "PR");
    EXPECT_EQ(abbreviate("Yukon Territory", &result), "YT");
    EXPECT_EQ(result, 0);
}

TEST(LatLongStateAbbrev, LaterInsertionsWinAndReplacedAbbreviationsAreUnknown) {
    int result = 1;
    EXPECT_EQ(abbreviate("Iceland", &result), "ICE");
    EXPECT_EQ(abbreviate("Korea", &result), "KOR");
    EXPECT_EQ(abbreviate("ice", &result), "ICE");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(abbreviate("isl", &result), "isl");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(abbreviate("SKO", &result), "sko");
    EXPECT_EQ(result, -1);
}

TEST(LatLongStateAbbrev, AbsentRegionsFailKeepingTheCleanedText) {
    const char* absent[][2] = {
        {"Nova Scotia", "novascotia"},
        {"New Brunswick", "newbrunswick"},
        {"Prince Edward Island", "princeedwardisland"},
        {"Northwest Territories", "northwestterritories"},
        {"Nunavut", "nunavut"},
        {"Deutschland", "deutschland"},
        {"", ""},
    };
    for (const auto& pair : absent) {
        int result = 0;
        EXPECT_EQ(abbreviate(pair[0], &result), pair[1]);
        EXPECT_EQ(result, -1) << pair[0];
    }
}

TEST(LatLongStateAbbrev, FullBufferStaysWithinBounds) {
    char buffer[kLocationTextSize];
    memset(buffer, 'Q', sizeof buffer - 1);
    buffer[sizeof buffer - 1] = '\0';
    EXPECT_EQ(latLongStateAbbrev(buffer), -1);
    EXPECT_EQ(strlen(buffer), 255u);
}

TEST(CleanCity, TitleCasesAndShrinksBlanks) {
    EXPECT_EQ(city("  san   FRANCISCO "), "San Francisco");
    EXPECT_EQ(city("new  york"), "New York");
    EXPECT_EQ(city("o'brien"), "O'brien");
    EXPECT_EQ(city("winston-salem"), "Winston-salem");
    EXPECT_EQ(city("st. louis"), "St. Louis");
    EXPECT_EQ(city("austin  "), "Austin");
    EXPECT_EQ(city("12th street"), "12th Street");
    EXPECT_EQ(city(""), "");
    EXPECT_EQ(city("    "), "");
}

TEST(LatLonDistance, HaversineInMiles) {
    EXPECT_EQ(lat_lon_distance(37.39, -122.08, 37.39, -122.08), 0.0);
    EXPECT_NEAR(lat_lon_distance(40.0, -100.0, 41.0, -100.0), 69.2, 0.1);
    double there = lat_lon_distance(40.71, -74.0, 34.05, -118.24);
    EXPECT_NEAR(there, 2450.0, 20.0); // New York to Los Angeles
    EXPECT_DOUBLE_EQ(there, lat_lon_distance(34.05, -118.24, 40.71, -74.0));
}

} // namespace
