#include "model/friend_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> names(FRIENDLIST& list) {
    std::vector<std::string> out;
    for (FRIENDNAME* n = list.head; n; n = n->next) out.push_back(n->name);
    return out;
}

// Walks backwards too, so broken prev links show up.
std::vector<std::string> namesBackwards(FRIENDLIST& list) {
    std::vector<std::string> out;
    for (FRIENDNAME* n = list.tail; n; n = n->prev) out.insert(out.begin(), n->name);
    return out;
}

struct FriendListTest : ::testing::Test {
    FRIENDLIST list;
    ~FriendListTest() override { deleteNames(&list); }
    void fill(std::initializer_list<const char*> items) {
        for (const char* s : items) ASSERT_TRUE(list.add(new FRIENDNAME(s)));
    }
};

TEST(FriendName, CopyIsCutAt63) {
    std::string longName(100, 'n');
    FRIENDNAME n(longName.c_str());
    EXPECT_EQ(std::string(n.name), std::string(63, 'n'));
    FRIENDNAME empty(nullptr);
    EXPECT_STREQ(empty.name, "");
}

TEST_F(FriendListTest, AddRefusesCaseBlindDuplicates) {
    fill({"Alice", "bob"});
    FRIENDNAME* dup = new FRIENDNAME("ALICE");
    EXPECT_FALSE(list.add(dup));
    delete dup;
    EXPECT_EQ(list.size(), 2u);
    EXPECT_EQ(names(list), (std::vector<std::string>{"Alice", "bob"}));
}

TEST_F(FriendListTest, ContainsIsCaseSensitive) {
    fill({"LIVE"});
    EXPECT_TRUE(list.contains("LIVE"));
    EXPECT_FALSE(list.contains("live"));
    FRIENDNAME* lower = new FRIENDNAME("live");
    EXPECT_FALSE(list.add(lower)); // yet add refuses it
    delete lower;
}

TEST_F(FriendListTest, RemoveHeadTailInnerAndOnly) {
    fill({"a", "b", "c", "d"});
    delete list.remove("a");
    EXPECT_EQ(names(list), (std::vector<std::string>{"b", "c", "d"}));
    delete list.remove("d");
    EXPECT_EQ(namesBackwards(list), (std::vector<std::string>{"b", "c"}));
    delete list.remove("b");
    EXPECT_EQ(names(list), (std::vector<std::string>{"c"}));
    delete list.remove("c");
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
    EXPECT_EQ(list.count, 0u);
    fill({"x", "y", "z"});
    delete list.remove("y");
    EXPECT_EQ(names(list), namesBackwards(list));
    EXPECT_EQ(list.size(), 2u);
}

TEST_F(FriendListTest, RemoveIsExactAndFirstOnly) {
    fill({"a", "b"});
    EXPECT_EQ(list.remove("A"), nullptr);
    EXPECT_EQ(list.remove("missing"), nullptr);
    EXPECT_EQ(list.size(), 2u);
}

TEST_F(FriendListTest, CombineCopiesAndSkipsDuplicates) {
    fill({"Ann"});
    FRIENDLIST other;
    other.add(new FRIENDNAME("ann"));
    other.add(new FRIENDNAME("Ben"));
    list.combine(&other);
    EXPECT_EQ(names(list), (std::vector<std::string>{"Ann", "Ben"}));
    EXPECT_EQ(other.size(), 2u);
    EXPECT_NE(list.tail, other.tail); // copies, not the other list's records
    deleteNames(&other);
}

TEST_F(FriendListTest, ClearForgetsWithoutReleasing) {
    FRIENDNAME* kept = new FRIENDNAME("kept");
    ASSERT_TRUE(list.add(kept));
    list.clear();
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_STREQ(kept->name, "kept"); // still valid: the list did not free it
    delete kept;
}

} // namespace
