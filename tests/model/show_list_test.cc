#include "model/show_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/protected_data.h"

namespace {

SHOWENTRY* show(const char* artist, int y, int m, int d, std::initializer_list<const char*> tags = {}) {
    SHOWENTRY* e = new SHOWENTRY;
    snprintf(e->artist, sizeof e->artist, "%s", artist);
    e->year = y;
    e->month = m;
    e->day = d;
    for (const char* t : tags) e->tags->add(new FRIENDNAME(t));
    return e;
}

std::vector<std::string> artists(SHOWLIST& list) {
    std::vector<std::string> out;
    for (SHOWENTRY* e = list.head; e; e = e->next) out.push_back(e->artist);
    return out;
}

std::vector<std::string> artistsBackwards(SHOWLIST& list) {
    std::vector<std::string> out;
    for (SHOWENTRY* e = list.tail; e; e = e->prev) out.insert(out.begin(), e->artist);
    return out;
}

std::vector<std::string> tagNames(SHOWENTRY* e) {
    std::vector<std::string> out;
    for (FRIENDNAME* n = e->tags->head; n; n = n->next) out.push_back(n->name);
    return out;
}

struct ShowListTest : ::testing::Test {
    SHOWLIST list;
    SHOWLIST previous;
    ~ShowListTest() override {
        deleteShows(&list);
        deleteShows(&previous);
    }
    // Adds and, like every real caller, releases an entry that was merged.
    bool add(SHOWENTRY* e, SHOWLIST* prev = nullptr) {
        bool linked = list.addShow(e, prev ? prev : &previous);
        if (!linked) delete e;
        return linked;
    }
};

TEST(ShowEntry, Defaults) {
    SHOWENTRY e;
    EXPECT_STREQ(e.location, "-");
    EXPECT_EQ(e.year, 2000);
    EXPECT_EQ(e.day, 0);
    EXPECT_NE(e.tags, nullptr);
    EXPECT_EQ(e.tags->size(), 0u);
    EXPECT_FALSE(e.attending || e.recentlyAdded || e.ticketsAvailable || e.highlighted);
}

TEST_F(ShowListTest, FilesInDateOrderWhateverTheArrival) {
    add(show("C", 2027, 1, 1));
    add(show("A", 2026, 12, 31));
    add(show("B", 2026, 12, 31));
    add(show("D", 2025, 6, 15));
    add(show("E", 2027, 1, 2));
    add(show("F", 2026, 11, 30));
    EXPECT_EQ(artists(list), (std::vector<std::string>{"D", "F", "A", "B", "C", "E"}));
    EXPECT_EQ(artistsBackwards(list), artists(list));
    EXPECT_EQ(list.size(), 6u);
}

TEST_F(ShowListTest, SameDayShowOfAnotherArtistGoesAfter) {
    add(show("Zed", 2026, 5, 5));
    add(show("Abe", 2026, 5, 5));
    EXPECT_EQ(artists(list), (std::vector<std::string>{"Zed", "Abe"}));
}

TEST_F(ShowListTest, DateComparesYearThenMonthThenDay) {
    add(show("late-year", 2027, 1, 1));
    add(show("late-month", 2026, 12, 1));
    add(show("late-day", 2026, 11, 30));
    EXPECT_EQ(artists(list), (std::vector<std::string>{"late-day", "late-month", "late-year"}));
}

TEST_F(ShowListTest, SameShowMergesTagsOnceIgnoringCase) {
    EXPECT_TRUE(add(show("The Beatles", 2026, 3, 3, {"alice"})));
    EXPECT_FALSE(add(show("Beatles", 2026, 3, 3, {"ALICE", "bob"})));
    ASSERT_EQ(list.size(), 1u);
    EXPECT_STREQ(list.head->artist, "The Beatles");
    EXPECT_EQ(tagNames(list.head), (std::vector<std::string>{"alice", "bob"}));
    // Same artist, other day: a separate show.
    EXPECT_TRUE(add(show("Beatles", 2026, 3, 4)));
    EXPECT_EQ(list.size(), 2u);
}

TEST_F(ShowListTest, MergeFindsTheShowPastLaterDatesOfOthers) {
    add(show("A", 2026, 1, 1));
    add(show("B", 2026, 1, 1));
    EXPECT_FALSE(add(show("b", 2026, 1, 1, {"x"})));
    EXPECT_EQ(artists(list), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(tagNames(list.tail), (std::vector<std::string>{"x"}));
}

TEST_F(ShowListTest, MarkCarriesOverFromPreviousGeneration) {
    SHOWENTRY* old = show("Wilco", 2026, 8, 9);
    old->attending = true;
    ASSERT_TRUE(previous.addShow(old, &list));
    SHOWENTRY* fresh = show("wilco!", 2026, 8, 9);
    add(fresh);
    EXPECT_TRUE(fresh->attending);
    SHOWENTRY* otherDay = show("Wilco", 2026, 8, 10);
    add(otherDay);
    EXPECT_FALSE(otherDay->attending);
}

TEST_F(ShowListTest, CarryOverTakesTheFirstMatchOnlyAndCanUnmark) {
    SHOWENTRY* e = show("Wilco", 2026, 8, 9);
    e->attending = true; // a stale mark on the new entry is overwritten
    SHOWENTRY* old = show("Wilco", 2026, 8, 9);
    ASSERT_TRUE(previous.addShow(old, &list));
    add(e);
    EXPECT_FALSE(e->attending);
}

TEST_F(ShowListTest, FindShowUsesTheArtistKey) {
    add(show("The National", 2026, 2, 2));
    add(show("Beirut", 2026, 2, 3));
    ASSERT_NE(list.findShow("national"), nullptr);
    EXPECT_STREQ(list.findShow("national")->artist, "The National");
    EXPECT_EQ(list.findShow("Nationals"), nullptr);
    EXPECT_EQ(list.findShow(""), nullptr);
}

TEST_F(ShowListTest, FiltersHideReleasesFromFindAlbumAndFilteredSize) {
    ProtectedData store;
    store.addFormatFilter("Live");
    add(show("Band", 2026, 1, 1, {"Live"}));
    add(show("Band", 2026, 2, 1, {"Import"}));
    add(show("Other", 2026, 3, 1));
    EXPECT_EQ(list.filteredSize(&store), 2u);
    EXPECT_EQ(list.filteredSize(nullptr), 3u);
    SHOWENTRY* found = list.findAlbum("band", &store);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->month, 2);
    EXPECT_EQ(list.findShow("band")->month, 1); // findShow ignores filters
    store.addFormatFilter("Import");
    EXPECT_EQ(list.findAlbum("band", &store), nullptr);
}

TEST_F(ShowListTest, OneArgumentFormsUseTheSharedStore) {
    ProtectedData store;
    store.addFormatFilter("Live");
    add(show("Band", 2026, 1, 1, {"Live"}));
    EXPECT_EQ(list.filteredSize(), 1u);
    setSharedStore(&store);
    EXPECT_EQ(list.filteredSize(), 0u);
    EXPECT_EQ(list.findAlbum("Band"), nullptr);
    setSharedStore(nullptr);
    EXPECT_NE(list.findAlbum("Band"), nullptr);
}

TEST_F(ShowListTest, ClearForgetsAndDeleteShowsReleases) {
    SHOWENTRY* e = show("A", 2026, 1, 1, {"t"});
    add(e);
    list.clear();
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_STREQ(e->artist, "A"); // still alive
    delete e;
    add(show("B", 2026, 1, 1, {"t"}));
    deleteShows(&list); // LeakSanitizer checks that entries and tags go
    EXPECT_EQ(list.size(), 0u);
}

} // namespace
