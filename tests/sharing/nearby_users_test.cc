// Reading the GETLOCALUSERS reply: one record per "</entry>", values cut
// to 63 characters, and damaged replies that must neither crash nor invent
// users.
#include <gtest/gtest.h>

#include <string>

#include "sharing/nearby_users.h"

namespace {

std::string entry(const std::string& user, const std::string& city = "Boston") {
    return "<entry><USERNAME>" + user + "</USERNAME><FIRSTNAME>F" + user +
           "</FIRSTNAME><LASTNAME>L" + user + "</LASTNAME><CITY>" + city +
           "</CITY><STATE>MA</STATE></entry>\n";
}

TEST(NearbyUsers, OneRecordPerEntryInOrder) {
    std::vector<SHARER> users =
        parseNearbyUsers("<users>\n" + entry("amy") + entry("bob") + "</users>");
    ASSERT_EQ(users.size(), 2u);
    EXPECT_STREQ(users[0].username, "amy");
    EXPECT_STREQ(users[0].firstname, "Famy");
    EXPECT_STREQ(users[0].lastname, "Lamy");
    EXPECT_STREQ(users[0].city, "Boston");
    EXPECT_STREQ(users[0].state, "MA");
    EXPECT_STREQ(users[1].username, "bob");
}

TEST(NearbyUsers, NoClosingEntryMeansNoUsers) {
    EXPECT_TRUE(parseNearbyUsers("").empty());
    EXPECT_TRUE(parseNearbyUsers("<entry><USERNAME>amy</USERNAME>").empty());
}

TEST(NearbyUsers, LongValuesAreCutTo63) {
    std::string longName(100, 'x');
    std::vector<SHARER> users = parseNearbyUsers(entry(longName, std::string(64, 'c')));
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(std::string(users[0].username), std::string(63, 'x'));
    EXPECT_EQ(std::string(users[0].city), std::string(63, 'c'));
}

TEST(NearbyUsers, TagsNeverReachIntoTheNextEntry) {
    // The first entry lacks its closing tag: its value stays empty rather
    // than running on into the second entry.
    std::string page = "<USERNAME>amy</entry>" + entry("bob") + "<CITY>nowhere</entry>";
    std::vector<SHARER> users = parseNearbyUsers(page);
    ASSERT_EQ(users.size(), 3u);
    EXPECT_STREQ(users[0].username, "");
    EXPECT_STREQ(users[1].username, "bob");
    EXPECT_STREQ(users[2].username, "");
    EXPECT_STREQ(users[2].city, "");
}

TEST(NearbyUsers, HugeReplyIsBounded) {
    std::string page;
    for (size_t i = 0; i < kMaxSharers + 50; ++i)
        page += "</entry>";
    EXPECT_EQ(parseNearbyUsers(page).size(), kMaxSharers);
}

} // namespace
