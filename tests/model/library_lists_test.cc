#include "model/library_lists.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/linked.h"

namespace {

template <typename List> std::vector<std::string> names(List& list) {
    std::vector<std::string> out;
    for (auto* n = list.head; n; n = n->next) out.push_back(n->name);
    std::vector<std::string> back;
    for (auto* n = list.tail; n; n = n->prev) back.insert(back.begin(), n->name);
    EXPECT_EQ(out, back) << "prev links disagree with next links";
    EXPECT_EQ(out.size(), list.count);
    return out;
}

struct ArtistListTest : ::testing::Test {
    XML_Artist_List list;
    ~ArtistListTest() override { deleteNodes(list); }
    bool add(const char* name) {
        XMLARTIST* a = new XMLARTIST(name);
        if (list.add(a)) return true;
        delete a;
        return false;
    }
    bool addUncleaned(const char* name) {
        XMLARTIST* a = new XMLARTIST(name);
        if (list.addUncleaned(a)) return true;
        delete a;
        return false;
    }
};

TEST_F(ArtistListTest, KeepsByteOrderAndRefusesExactDuplicates) {
    for (const char* n : {"beta", "Alpha", "alpha", "gamma", "Beta"}) EXPECT_TRUE(add(n));
    EXPECT_FALSE(add("alpha"));
    EXPECT_EQ(names(list), (std::vector<std::string>{"Alpha", "Beta", "alpha", "beta", "gamma"}));
}

TEST_F(ArtistListTest, AddUncleanedComparesKeysButKeepsSpelling) {
    EXPECT_TRUE(addUncleaned("The Beatles"));
    EXPECT_FALSE(addUncleaned("Beatles!"));
    EXPECT_FALSE(addUncleaned("beatles"));
    EXPECT_TRUE(addUncleaned("ABBA"));
    EXPECT_EQ(names(list), (std::vector<std::string>{"ABBA", "The Beatles"}));
}

TEST_F(ArtistListTest, RemoveEveryPosition) {
    for (const char* n : {"a", "b", "c", "d"}) add(n);
    delete list.remove("b");
    EXPECT_EQ(names(list), (std::vector<std::string>{"a", "c", "d"}));
    delete list.remove("a");
    delete list.remove("d");
    EXPECT_EQ(names(list), (std::vector<std::string>{"c"}));
    EXPECT_EQ(list.remove("C"), nullptr);
    delete list.remove("c");
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
    EXPECT_EQ(list.count, 0u);
}

TEST(XMLArtist, NameIsCutAt255) {
    std::string longName(400, 'q');
    XMLARTIST a(longName.c_str());
    EXPECT_EQ(std::string(a.name).size(), 255u);
}

TEST(AlbumList, SortedExactContains) {
    XML_Album_List list;
    for (const char* n : {"OK Computer", "Kid A", "Amnesiac"}) list.add(new XMLALBUM(n));
    XMLALBUM* dup = new XMLALBUM("Kid A");
    EXPECT_FALSE(list.add(dup));
    delete dup;
    EXPECT_EQ(names(list), (std::vector<std::string>{"Amnesiac", "Kid A", "OK Computer"}));
    EXPECT_TRUE(list.contains("Kid A"));
    EXPECT_FALSE(list.contains("kid a"));
    deleteNodes(list);
}

TEST(ArtistInfoList, AppendsWithDefaults) {
    Artist_Info_List list;
    ARTISTINFO* first = new ARTISTINFO;
    EXPECT_STREQ(first->location, "-");
    EXPECT_EQ(first->year, 1970);
    EXPECT_EQ(first->month, 1);
    EXPECT_EQ(first->day, 1);
    list.add(first);
    list.add(new ARTISTINFO);
    EXPECT_EQ(list.count, 2u);
    EXPECT_EQ(list.head, first);
    list.clear();
    EXPECT_EQ(list.count, 0u);
    delete first->next;
    delete first;
}

} // namespace
