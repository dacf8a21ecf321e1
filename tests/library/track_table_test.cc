#include "library/track_table.h"

#include <gtest/gtest.h>

namespace {

TEST(TrackTable, FindsByNumberInAnyOrderAndMergesRepeats) {
    constexpr uint32_t a = 0, b = 1, x = 7, y = 8, none = TrackTable::kNoName;
    TrackTable table;
    table.record("30", a, x);
    table.record("10", b, none);
    table.record("30", b, none); // a repeat without album keeps the album
    table.record("007", a, y);   // not a plain number: kept as text
    TrackTable::Names names;
    ASSERT_TRUE(table.find("30", &names));
    EXPECT_EQ(names.artist, b);
    EXPECT_EQ(names.album, x);
    ASSERT_TRUE(table.find("10", &names));
    EXPECT_EQ(names.album, none);
    EXPECT_FALSE(table.find("7", &names));
    ASSERT_TRUE(table.find("007", &names));
    EXPECT_EQ(names.album, y);
    // Records made after a look-up are found too.
    table.record("5", a, y);
    ASSERT_TRUE(table.find("5", &names));
    EXPECT_EQ(names.artist, a);
    EXPECT_FALSE(table.find("", &names));
    EXPECT_FALSE(table.find("99999999999999999999", &names));
}

} // namespace
