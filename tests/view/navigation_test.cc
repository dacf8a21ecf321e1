// Month navigation bounded by the current tab's list, the list offset that
// follows the month, and the scroll clamping of the next drawing.
#include "view/navigation.h"

#include "view_fixture.h"

namespace {

struct NavigationTest : ViewFixture {
    void expectMonth(int year, int month) {
        EXPECT_EQ(year, view.curVisYear);
        EXPECT_EQ(month, view.curVisMonth);
    }
    // Neither direction leaves (year, month).
    void expectStuckAt(int year, int month) {
        showMonth(year, month);
        view.incrementCurVisMonth();
        expectMonth(year, month);
        view.decrementCurVisMonth();
        expectMonth(year, month);
    }
};

TEST_F(NavigationTest, EmptyListKeepsTheMonth) {
    expectStuckAt(2026, 5);
}

TEST_F(NavigationTest, OneMonthListCannotLeaveItsMonth) {
    addDemoShow(concerts(), "Spoon", 2026, 5, 3);
    addDemoShow(concerts(), "Wilco", 2026, 5, 20);
    expectStuckAt(2026, 5);
}

TEST_F(NavigationTest, MovesAcrossYearsWithinTheListsRange) {
    addDemoShow(concerts(), "Spoon", 2025, 11, 3);
    addDemoShow(concerts(), "Wilco", 2027, 2, 20);
    showMonth(2025, 12);
    view.incrementCurVisMonth();
    expectMonth(2026, 1);
    for (int i = 0; i < 30; ++i)
        view.incrementCurVisMonth();
    expectMonth(2027, 2); // the last show's month, no further
    showMonth(2026, 1);
    view.decrementCurVisMonth();
    expectMonth(2025, 12);
    for (int i = 0; i < 30; ++i)
        view.decrementCurVisMonth();
    expectMonth(2025, 11);
}

TEST_F(NavigationTest, AMonthOutsideTheListStillMovesTowardsIt) {
    addDemoShow(concerts(), "Spoon", 2026, 6, 3);
    showMonth(2026, 1); // before the only show: forwards only
    view.decrementCurVisMonth();
    expectMonth(2026, 1);
    view.incrementCurVisMonth();
    expectMonth(2026, 2);
}

TEST_F(NavigationTest, FollowsTheCurrentTabsList) {
    addDemoShow(concerts(), "Spoon", 2026, 5, 3);
    addDemoShow(friendsShows(), "Wilco", 2026, 9, 3);
    showMonth(2026, 5);
    store.setCurCalTab(kFriendShowsTab);
    view.incrementCurVisMonth();
    expectMonth(2026, 6);
    store.setCurCalTab(kMyShowsTab);
    view.incrementCurVisMonth();
    expectMonth(2026, 6);
}

TEST_F(NavigationTest, HiddenReleasesNeitherExtendTheRangeNorCount) {
    addDemoShow(releases(), "Early Vinyl", 2026, 1, 5, {"Vinyl"});
    addDemoShow(releases(), "Spring CD", 2026, 3, 5, {"CD"});
    addDemoShow(releases(), "Late Vinyl", 2026, 9, 5, {"Vinyl"});
    store.addFormatFilter("Vinyl");
    store.setCurCalTab(kCdReleasesTab);
    expectStuckAt(2026, 3);

    store.removeFormatFilter("Vinyl");
    view.incrementCurVisMonth();
    expectMonth(2026, 4);
    EXPECT_EQ(-2 * 54, view.curVisShowListOffset); // both earlier releases count now
}

TEST_F(NavigationTest, OffsetPutsTheMonthsFirstEntryAtTheTop) {
    addDemoShow(concerts(), "A", 2026, 1, 5);
    addDemoShow(concerts(), "B", 2026, 2, 5);
    addDemoShow(concerts(), "C", 2026, 2, 9);
    addDemoShow(concerts(), "D", 2026, 3, 1);
    addDemoShow(concerts(), "E", 2026, 3, 2);
    showMonth(2026, 3);
    view.setOffsetToMatchCurVisMonth();
    EXPECT_EQ(-162, view.curVisShowListOffset);
    showMonth(2025, 3);
    view.setOffsetToMatchCurVisMonth();
    EXPECT_EQ(0, view.curVisShowListOffset);
    showMonth(2027, 3);
    view.setOffsetToMatchCurVisMonth();
    EXPECT_EQ(-5 * 54, view.curVisShowListOffset);
}

TEST_F(NavigationTest, AMonthChangeResetsCellScrollsAndHighlights) {
    SHOWENTRY* a = addDemoShow(concerts(), "A", 2026, 1, 5);
    SHOWENTRY* b = addDemoShow(concerts(), "B", 2026, 2, 5);
    a->highlighted = b->highlighted = true;
    view.cellScroll[3] = 2;
    view.cellScroll[34] = 1;
    showMonth(2026, 1);
    view.incrementCurVisMonth();
    expectMonth(2026, 2);
    EXPECT_EQ(-54, view.curVisShowListOffset);
    EXPECT_FALSE(a->highlighted || b->highlighted);
    for (int n : view.cellScroll)
        EXPECT_EQ(0, n);
}

TEST_F(NavigationTest, ABlockedMoveChangesNothing) {
    SHOWENTRY* a = addDemoShow(concerts(), "A", 2026, 1, 5);
    a->highlighted = true;
    view.cellScroll[3] = 2;
    view.curVisShowListOffset = -7;
    showMonth(2026, 1);
    view.incrementCurVisMonth();
    EXPECT_TRUE(a->highlighted);
    EXPECT_EQ(2, view.cellScroll[3]);
    EXPECT_EQ(-7, view.curVisShowListOffset);
}

TEST_F(NavigationTest, BoundsPredicatesSeeOnlyVisibleEntries) {
    addDemoShow(releases(), "Hidden", 2026, 8, 1, {"Vinyl"});
    store.addFormatFilter("Vinyl");
    VisibleWalk walk(store, kCdReleasesTab);
    EXPECT_FALSE(canShowNextMonth(releases(), walk, 2026, 1));
    EXPECT_FALSE(canShowPreviousMonth(releases(), walk, 2026, 12));
    VisibleWalk all(store, kMyShowsTab);
    EXPECT_TRUE(canShowNextMonth(releases(), all, 2026, 1));
    EXPECT_TRUE(canShowPreviousMonth(releases(), all, 2026, 12));
}

// Scrolling does not clamp; the next drawing does.
TEST_F(NavigationTest, DrawingClampsScrolledOffsets) {
    attach(800, 600);
    fillDemoShows(concerts(), 40, 2026, 1);
    showMonth(2026, 1);
    for (int i = 0; i < 500; ++i)
        view.scrollDown();
    render();
    const int visible = view.calBottom - view.calTop;
    EXPECT_TRUE(view.listOverflows);
    EXPECT_EQ(visible - 40 * 54, view.curVisShowListOffset); // last entry at the bottom
    for (int i = 0; i < 500; ++i)
        view.scrollUp();
    render();
    EXPECT_EQ(0, view.curVisShowListOffset);
}

TEST_F(NavigationTest, AShortListIsNeverScrolled) {
    attach(800, 600);
    addDemoShow(concerts(), "A", 2026, 1, 5);
    view.scroll(-300);
    render();
    EXPECT_FALSE(view.listOverflows);
    EXPECT_EQ(0, view.curVisShowListOffset);
    EXPECT_EQ(54, view.listContentHeight);
}

} // namespace
