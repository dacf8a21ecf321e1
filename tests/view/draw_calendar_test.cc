// What one frame records and paints at 1280x800: hit rectangles of list
// entries, cells, arrows, tabs, fields and links, and colours probed at
// known points.
#include "view/draw_calendar.h"

#include "model/dates.h"
#include "view/layout.h"
#include "view_fixture.h"

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kGrid = rgbHex(158, 202, 228);
constexpr uint32_t kEntry = rgbHex(220, 240, 255);
constexpr uint32_t kAccent = rgbHex(128, 172, 198);
constexpr uint32_t kOutline = rgbHex(192, 192, 192);
constexpr uint32_t kOutOfMonth = rgbHex(222, 222, 222);
constexpr uint32_t kInactiveTab = rgbHex(238, 238, 238);
constexpr uint32_t kFrame = rgbHex(64, 64, 64);

Rect R(int top, int left, int bottom, int right) {
    return makeRect(top, left, bottom, right);
}

::testing::AssertionResult sameRect(const Rect& expected, const Rect& actual) {
    if (expected.top == actual.top && expected.left == actual.left &&
        expected.bottom == actual.bottom && expected.right == actual.right)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "expected (" << expected.top << ", " << expected.left << ", " << expected.bottom
           << ", " << expected.right << ") got (" << actual.top << ", " << actual.left << ", "
           << actual.bottom << ", " << actual.right << ")";
}

struct DrawCalendarTest : ViewFixture {
    void SetUp() override {
        attach(1280, 800);
        showMonth(2026, 11); // starts on a Sunday: cell n is the (n+1)th
    }
    // The darkest channel sum inside `r`, to tell black ink from grey.
    int darkest(const Rect& r) {
        int best = 3 * 255;
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x) {
                uint32_t p = at(x, y);
                best = std::min(best, int((p >> 16 & 255) + (p >> 8 & 255) + (p & 255)));
            }
        return best;
    }
};

TEST_F(DrawCalendarTest, ListEntriesRecordTheirBoxes) {
    SHOWENTRY* a = addDemoShow(concerts(), "Spoon", 2026, 11, 3);
    SHOWENTRY* b = addDemoShow(concerts(), "Wilco", 2026, 11, 3);
    SHOWENTRY* c = addDemoShow(concerts(), "Beirut", 2026, 11, 10);
    render();
    for (SHOWENTRY* e : {a, b, c})
        EXPECT_TRUE(e->rect2Drawn);
    EXPECT_TRUE(sameRect(R(105, 18, 160, 222), a->rect2));
    EXPECT_TRUE(sameRect(R(159, 18, 214, 222), b->rect2));
    EXPECT_TRUE(sameRect(R(213, 18, 268, 222), c->rect2));
    EXPECT_EQ(kOutline, at(18, 105));
    EXPECT_EQ(kEntry, at(19, 106));
}

TEST_F(DrawCalendarTest, EntriesAboveTheListTopAreCutOrDropped) {
    SHOWENTRY* early = addDemoShow(concerts(), "Early", 2026, 9, 1);
    SHOWENTRY* edge = addDemoShow(concerts(), "Edge", 2026, 10, 1);
    SHOWENTRY* now = addDemoShow(concerts(), "Now", 2026, 11, 1);
    for (int i = 0; i < 20; ++i)
        addDemoShow(concerts(), "Later", 2026, 11, 2 + i);
    view.curVisShowListOffset = -2 * 54; // `edge` ends one pixel below the top
    render();
    EXPECT_FALSE(early->rect2Drawn);
    EXPECT_TRUE(edge->rect2Drawn);
    EXPECT_TRUE(sameRect(R(105, 18, 106, 222), edge->rect2));
    EXPECT_TRUE(sameRect(R(105, 18, 160, 222), now->rect2));
    EXPECT_EQ(kWhite, at(25, 95)); // nothing of `edge` shows above the list's top
    EXPECT_EQ(kOutline, at(25, 105));
}

TEST_F(DrawCalendarTest, BoxesNearThePortBottomAreNotPainted) {
    fillDemoShows(concerts(), 30, 2026, 11);
    render();
    // Entry 10 ends at 700, above 800 - 85; entry 11 (699..754) does not.
    EXPECT_EQ(kOutline, at(18, 660));
    EXPECT_EQ(kWhite, at(18, 740));
}

TEST_F(DrawCalendarTest, CellLinesRecordRect1) {
    SHOWENTRY* a = addDemoShow(concerts(), "Spoon", 2026, 11, 3);
    SHOWENTRY* b = addDemoShow(concerts(), "Wilco", 2026, 11, 3);
    b->ticketsAvailable = true; // the ticket space stays inside the line
    render();
    EXPECT_TRUE(sameRect(R(121, 531, 252, 674), view.cellRect[2]));
    EXPECT_TRUE(a->rect1Drawn && b->rect1Drawn);
    EXPECT_TRUE(sameRect(R(136, 531, 151, 674), a->rect1));
    EXPECT_TRUE(sameRect(R(151, 531, 166, 674), b->rect1));
    EXPECT_FALSE(view.cellHasMore[2] || view.cellHasBack[2]);
}

TEST_F(DrawCalendarTest, BusyCellGetsArrowsAndScrolls) {
    SHOWENTRY* shows[10];
    for (int i = 0; i < 10; ++i) {
        char name[16];
        snprintf(name, sizeof name, "Band %d", i);
        shows[i] = addDemoShow(concerts(), name, 2026, 11, 10);
    }
    render();
    const int cell = 9; // room for 7 lines of 15 in a 131-pixel cell
    EXPECT_TRUE(view.cellHasMore[cell]);
    EXPECT_FALSE(view.cellHasBack[cell]);
    EXPECT_TRUE(sameRect(R(373, 666, 381, 674), view.cellMoreRect[cell]));
    EXPECT_TRUE(sameRect(R(268, 666, 276, 674), view.cellBackRect[cell]));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(i < 7, shows[i]->rect1Drawn) << i;
    EXPECT_EQ(666, shows[0]->rect1.right); // the arrows take 8 pixels

    view.cellScroll[cell] = 3;
    render();
    EXPECT_TRUE(view.cellHasBack[cell]);
    EXPECT_FALSE(view.cellHasMore[cell]); // the last show is in view: no further
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(i >= 3, shows[i]->rect1Drawn) << i;
    EXPECT_TRUE(sameRect(R(267, 531, 282, 666), shows[3]->rect1));
}

TEST_F(DrawCalendarTest, TicketIconsBesideShowsWithTickets) {
    auto amber = [&](const Rect& r) {
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x) {
                uint32_t p = at(x, y);
                if ((p >> 16) > 200 && (p >> 8 & 255) > 140 && (p & 255) < 110) return true;
            }
        return false;
    };
    SHOWENTRY* e = addDemoShow(concerts(), "Spoon", 2026, 11, 3);
    render();
    const Rect listIcon = R(108, 188, 131, 222), cellIcon = R(136, 660, 151, 674);
    EXPECT_FALSE(amber(listIcon));
    EXPECT_FALSE(amber(cellIcon));
    e->ticketsAvailable = true;
    render();
    EXPECT_TRUE(amber(listIcon));
    EXPECT_TRUE(amber(cellIcon));
}

TEST_F(DrawCalendarTest, CellsTooLowForALineShowArrowsOnlyOnDaysWithShows) {
    attach(800, 200); // cells 11 pixels high: no room for a line
    SHOWENTRY* e = addDemoShow(concerts(), "Spoon", 2026, 11, 3);
    render();
    EXPECT_TRUE(view.cellHasMore[2]);
    EXPECT_FALSE(e->rect1Drawn);
    for (int cell = 0; cell < CalVis::kCells; ++cell) {
        if (cell == 2) continue;
        EXPECT_FALSE(view.cellHasMore[cell] || view.cellHasBack[cell]) << cell;
    }
}

TEST_F(DrawCalendarTest, HiddenReleasesAreNeitherListedNorInCells) {
    SHOWENTRY* cd = addDemoShow(releases(), "Spoon", 2026, 11, 3, {"CD"});
    SHOWENTRY* vinyl = addDemoShow(releases(), "Wilco", 2026, 11, 3, {"Vinyl"});
    SHOWENTRY* later = addDemoShow(releases(), "Beirut", 2026, 11, 4, {"CD", "Vinyl"});
    store.addFormatFilter("Vinyl");
    store.setCurCalTab(kCdReleasesTab);
    render();
    EXPECT_TRUE(cd->rect2Drawn && cd->rect1Drawn);
    EXPECT_FALSE(vinyl->rect2Drawn || vinyl->rect1Drawn);
    EXPECT_FALSE(later->rect2Drawn || later->rect1Drawn);
    EXPECT_EQ(54, view.listContentHeight); // one visible entry

    store.removeFormatFilter("Vinyl");
    render();
    EXPECT_TRUE(sameRect(R(159, 18, 214, 222), vinyl->rect2)); // right under `cd`
    EXPECT_TRUE(sameRect(R(151, 531, 166, 674), vinyl->rect1));
}

TEST_F(DrawCalendarTest, LastUpdatedOnlyOnceThereWasASearch) {
    const Rect line = R(0, 240, 16, 860); // left of the links
    render();
    EXPECT_EQ(3 * 255, darkest(line));
    store.setLastSearch_y(1971);
    render();
    EXPECT_LT(darkest(line), 3 * 200);
}

TEST_F(DrawCalendarTest, QuietCellsForgetTheirScroll) {
    addDemoShow(concerts(), "Spoon", 2026, 11, 6);
    view.cellScroll[5] = 2;
    view.cellScroll[20] = 4;
    render();
    EXPECT_EQ(0, view.cellScroll[5]);
    EXPECT_EQ(0, view.cellScroll[20]);
}

TEST_F(DrawCalendarTest, OnlyWhatIsDrawnStaysClickable) {
    SHOWENTRY* nov = addDemoShow(concerts(), "Spoon", 2026, 11, 6);
    SHOWENTRY* dec = addDemoShow(concerts(), "Wilco", 2026, 12, 20);
    render();
    EXPECT_TRUE(nov->rect1Drawn);
    EXPECT_FALSE(dec->rect1Drawn); // 20 December is past the grid's last cell
    view.incrementCurVisMonth();
    render();
    EXPECT_FALSE(nov->rect1Drawn);
    EXPECT_TRUE(dec->rect1Drawn);
}

TEST_F(DrawCalendarTest, RegionsOfTheHeaderAndFields) {
    render();
    const struct {
        Rect expected;
        const Rect& recorded;
    } kRegions[] = {
        {R(75, 1230, 95, 1258), view.nextMonthButton.rect},
        {R(75, 1070, 95, 1098), view.prevMonthButton.rect},
        {R(18, 79, 38, 240), view.cityField.rect},
        {R(39, 79, 59, 240), view.stateField.rect},
        {R(60, 79, 80, 240), view.radiusField.rect},
        {R(85, 33, 104, 128), view.myShowsTab.rect},
        {R(85, 245, 104, 345), view.friendShowsTab.rect},
        {R(85, 138, 104, 235), view.cdReleasesTab.rect},
        {R(1, 1158, 20, 1238), view.preferencesLink.rect},
        {R(1, 1038, 20, 1138), view.iPhoneLink.rect},
        {R(1, 873, 20, 1033), view.androidLink.rect},
        {R(780, 1178, 799, 1258), view.versionText.rect},
    };
    for (const auto& region : kRegions)
        EXPECT_TRUE(sameRect(region.expected, region.recorded));
}

TEST_F(DrawCalendarTest, ConnectionDecidesBetweenRetryAndPromotion) {
    render();
    EXPECT_TRUE(sameRect(R(782, 556, 799, 856), view.promoLine.rect));
    EXPECT_TRUE(sameRect(Rect(), view.retryLine.rect));
    store.setValid_internet_connection(false);
    render();
    EXPECT_TRUE(sameRect(R(780, 609, 800, 889), view.retryLine.rect));
    EXPECT_TRUE(sameRect(Rect(), view.promoLine.rect));
}

TEST_F(DrawCalendarTest, BannerOnlyWhileNothingIsHighlighted) {
    SHOWENTRY* e = addDemoShow(concerts(), "Spoon", 2026, 11, 6);
    store.setStagebeacon_version_update(true);
    render();
    EXPECT_TRUE(sameRect(R(50, 365, 90, 933), view.versionUpdateBanner.rect));
    e->highlighted = true;
    render();
    EXPECT_TRUE(sameRect(Rect(), view.versionUpdateBanner.rect));
    EXPECT_EQ(kEntry, at(243, 22)); // the detail panel is up instead
}

TEST_F(DrawCalendarTest, MonthButtonsGreyWhereNavigationEnds) {
    const Rect prev = R(75, 1070, 95, 1098), next = R(75, 1230, 95, 1258);
    render();
    EXPECT_GE(darkest(prev), 3 * 200); // empty list: both grey
    EXPECT_GE(darkest(next), 3 * 200);
    addDemoShow(concerts(), "Spoon", 2026, 11, 6);
    addDemoShow(concerts(), "Wilco", 2027, 1, 6);
    render();
    EXPECT_GE(darkest(prev), 3 * 200);
    EXPECT_LT(darkest(next), 3 * 100);
}

TEST_F(DrawCalendarTest, GridColoursOfStripsLinesAndFrame) {
    showMonth(2026, 12); // starts on a Tuesday
    render();
    auto strip = [&](int cell) {
        return at(view.cellRect[cell].left + 2, view.cellRect[cell].top + 2);
    };
    EXPECT_EQ(kOutOfMonth, strip(0)); // 29 November
    EXPECT_EQ(kOutOfMonth, strip(1));
    EXPECT_EQ(kGrid, strip(2));        // 1 December
    EXPECT_EQ(kGrid, strip(32));       // 31 December
    EXPECT_EQ(kOutOfMonth, strip(33)); // 1 January
    EXPECT_EQ(kOutline, at(600, 110)); // weekday strip

    const int line = view.calLeft + 145 - 1;
    EXPECT_EQ(kGrid, at(line, 200));
    EXPECT_EQ(kWhite, at(line + 1, 200));
    EXPECT_EQ(kWhite, at(line - 1, 200));
    EXPECT_EQ(kGrid, at(300, 120 + 131));
    EXPECT_EQ(kFrame, at(240, 400));
    EXPECT_EQ(kFrame, at(1257, 400));
    EXPECT_EQ(kFrame, at(600, 778));
}

TEST_F(DrawCalendarTest, TodayHasItsOwnStripAndBody) {
    struct tm t = today();
    int year = t.tm_year + 1900, month = t.tm_mon + 1;
    int cell = getDayOfTheWeek(1, month, year) + t.tm_mday - 1;
    if (cell >= CalVis::kCells) GTEST_SKIP() << "today falls in a sixth week";
    showMonth(year, month);
    render();
    const Rect& r = view.cellRect[cell];
    EXPECT_EQ(kAccent, at(r.left + 2, r.top + 2));
    EXPECT_EQ(rgbHex(255, 225, 225), at(r.left + 2, r.top + 40));
    // The body leaves the cell's last row to the grid line (none under the last week).
    EXPECT_EQ(cell < 28 ? kGrid : kWhite, at(r.left + 2, r.bottom - 1));
}

TEST_F(DrawCalendarTest, TabsFillAndColoursFollowTheSelection) {
    render();
    EXPECT_EQ(kWhite, at(53, 88));
    EXPECT_EQ(kInactiveTab, at(158, 88));
    EXPECT_EQ(kInactiveTab, at(265, 88));
    store.setCurCalTab(kCdReleasesTab);
    render();
    EXPECT_EQ(kInactiveTab, at(53, 88));
    EXPECT_EQ(kWhite, at(158, 88));
    EXPECT_EQ(rgbHex(209, 194, 240), at(view.cellRect[3].left + 2, view.cellRect[3].top + 2));
}

TEST_F(DrawCalendarTest, FieldOutlinesFollowHoverAndEditing) {
    render();
    EXPECT_EQ(kWhite, at(79, 18));
    view.cityField.hovered = true;
    render();
    EXPECT_EQ(kOutline, at(79, 18));
    store.setUpdatingState(true); // while a field is edited, hover outlines nothing
    render();
    EXPECT_EQ(kWhite, at(79, 18));
    EXPECT_EQ(kOutline, at(79, 39));
}

TEST_F(DrawCalendarTest, ProgressBarShowsTheStoredProgress) {
    store.setUpdatingConcerts(true);
    store.setUpdatingProgress(50);
    render();
    EXPECT_EQ(kOutline, at(540, 20));
    EXPECT_EQ(kAccent, at(541, 27));
    EXPECT_EQ(kAccent, at(639, 27)); // 2 x 50 - 1 = 99 pixels
    EXPECT_EQ(kWhite, at(640, 27));
}

TEST_F(DrawCalendarTest, ScrollThumbIsPaintedWhileTheListOverflows) {
    fillDemoShows(concerts(), 60, 2026, 11);
    render();
    ASSERT_TRUE(view.listOverflows);
    const Rect& thumb = view.scrollThumb;
    EXPECT_EQ(rgbHex(169, 183, 200), at(thumb.left + 5, (thumb.top + thumb.bottom) / 2));
    EXPECT_EQ(kWhite, at(thumb.left + 5, view.scrollDownButton.top - 3));
}

TEST_F(DrawCalendarTest, FriendsHintWhenThereAreNoFriends) {
    store.setCurCalTab(kFriendShowsTab);
    render();
    EXPECT_LT(darkest(R(125, 18, 145, 222)), 3 * 100);
    app->friendsList->add(new FRIENDNAME("alice"));
    render();
    EXPECT_EQ(3 * 255, darkest(R(125, 18, 145, 222)));
}

TEST_F(DrawCalendarTest, NarrowPortCutsTextsInsideTheirBoxes) {
    attach(400, 400);
    SHOWENTRY* e = addDemoShow(concerts(), "", 2026, 11, 6);
    snprintf(e->artist, sizeof e->artist, "An Artist Whose Name Will Never Fit In This Box");
    snprintf(e->venue, sizeof e->venue, "A Venue With A Very Long Name Indeed");
    render();
    // Texts stop before the box's right edge (222), whose inside stays entry colour.
    for (int y = 106; y < 159; ++y)
        EXPECT_EQ(kEntry, at(220, y)) << y;
    EXPECT_LT(darkest(R(120, 150, 140, 219)), 3 * 100); // while the name reaches close to it
}

} // namespace
