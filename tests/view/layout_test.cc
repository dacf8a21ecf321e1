// Frame geometry for known port sizes: grid edges, cells, scroll bar and
// the fixed rectangles the mouse handlers will test.
#include "view/layout.h"

#include "view_fixture.h"

namespace {

Rect R(int top, int left, int bottom, int right) {
    return makeRect(top, left, bottom, right);
}

void expectRect(const Rect& expected, const Rect& actual) {
    EXPECT_EQ(expected.top, actual.top);
    EXPECT_EQ(expected.left, actual.left);
    EXPECT_EQ(expected.bottom, actual.bottom);
    EXPECT_EQ(expected.right, actual.right);
}

struct LayoutTest : ViewFixture {
    ViewLayout layout(int width, int height, int entries, CalTab tab = kMyShowsTab) {
        return computeLayout(view, R(0, 0, height, width), entries, tab);
    }
};

TEST_F(LayoutTest, GridAndCellsAt1280x800) {
    ViewLayout g = layout(1280, 800, 3);
    EXPECT_EQ(145, g.cellWidth);
    EXPECT_EQ(131, g.cellHeight);
    EXPECT_EQ(1258, view.calRight);
    EXPECT_EQ(779, view.calBottom);
    expectRect(R(105, 240, 779, 1258), view.gridArea);
    expectRect(R(105, 18, 779, 236), view.listArea);
    expectRect(R(121, 241, 252, 384), view.cellRect[0]);
    expectRect(R(252, 386, 383, 529), view.cellRect[8]);
    expectRect(R(645, 1111, 776, 1254), view.cellRect[34]);
    EXPECT_EQ(240 + 5 * 145 + 72 - 10, weekdayNameX(view, g, 5));
}

// Those not recorded in the view (the recorded ones: DrawCalendarTest).
TEST_F(LayoutTest, FixedRectanglesAt1280x800) {
    ViewLayout g = layout(1280, 800, 3);
    expectRect(R(60, 18, 80, 78), g.fieldLabels[2]);
    expectRect(R(75, 1102, 104, 1227), g.monthTitle);
    expectRect(R(20, 240, 100, 1058), g.detailPanel);
    expectRect(R(50, 365, 90, 933), g.banner);
    expectRect(R(780, 609, 800, 889), g.retry);
    expectRect(R(20, 540, 34, 741), g.progressFrame);
}

TEST_F(LayoutTest, PromotionalLineIsCentredAndCapped) {
    expectRect(R(782, 556, 799, 856), layout(1280, 800, 0, kMyShowsTab).promo);
    expectRect(R(782, 466, 799, 946), layout(1280, 800, 0, kCdReleasesTab).promo);
    // Narrower than the cap: the whole room between calLeft and calRight - 85.
    ViewLayout narrow = layout(600, 400, 0, kCdReleasesTab);
    EXPECT_EQ(view.calLeft, narrow.promo.left);
    EXPECT_EQ(view.calRight - 85, narrow.promo.right);
}

TEST_F(LayoutTest, ScrollBarOfALongList) {
    view.curVisShowListOffset = -5400;
    layout(1280, 800, 300);
    EXPECT_TRUE(view.listOverflows);
    EXPECT_EQ(16200, view.listContentHeight);
    EXPECT_EQ(27, view.scrollThumbLength);
    EXPECT_EQ(214, view.scrollThumbOffset);
    EXPECT_EQ(-5400, view.curVisShowListOffset);
    expectRect(R(105, 222, 119, 236), view.scrollUpButton);
    expectRect(R(765, 222, 779, 236), view.scrollDownButton);
    expectRect(R(334, 222, 361, 236), view.scrollThumb);
}

TEST_F(LayoutTest, ThumbReachesTheDownButtonAtTheEnd) {
    view.curVisShowListOffset = -100000;
    layout(1280, 800, 300);
    EXPECT_EQ(674 - 16200, view.curVisShowListOffset);
    EXPECT_NEAR(view.scrollDownButton.top, view.scrollThumb.bottom, 1); // truncations
    EXPECT_LE(view.scrollThumb.bottom, view.scrollDownButton.top);
}

TEST_F(LayoutTest, OffsetClampsAndShortListsHaveNoScrollBar) {
    view.curVisShowListOffset = 40;
    layout(1280, 800, 300);
    EXPECT_EQ(0, view.curVisShowListOffset);

    view.curVisShowListOffset = -100;
    layout(1280, 800, 12); // 648 pixels fit in 674
    EXPECT_FALSE(view.listOverflows);
    EXPECT_EQ(0, view.curVisShowListOffset);
    expectRect(Rect(), view.scrollThumb);
    expectRect(Rect(), view.scrollUpButton);

    layout(1280, 800, 0);
    EXPECT_EQ(1, view.listContentHeight);
}

TEST_F(LayoutTest, TinyAndHugePortsStayInRange) {
    ViewLayout tiny = layout(64, 64, 5);
    EXPECT_EQ(-28, tiny.cellWidth);
    EXPECT_EQ(47, view.calRight);
    EXPECT_EQ(view.calTop + 5 * tiny.cellHeight + 19, view.calBottom);
    EXPECT_EQ(0, view.curVisShowListOffset);

    ViewLayout huge = layout(32767, 32767, 5);
    EXPECT_EQ(INT16_MAX, huge.retry.bottom);
    EXPECT_GT(view.cellRect[34].bottom, view.cellRect[0].bottom);
}

} // namespace
