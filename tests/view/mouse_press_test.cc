// Presses, moves and the wheel: the location fields opening and closing with
// and without a search, the scroll controls and the thumb drag, the per-day
// arrows, the hover flags, and what the wheel turns where.
#include <atomic>
#include <chrono>
#include <thread>

#include "mouse_fixture.h"
#include "platform/main_thread.h"

namespace {

struct MousePress : MouseFixture {
    void SetUp() override {
        MouseFixture::SetUp();
        view.cityField.rect = box(10, 10, 60, 30);
        view.stateField.rect = box(70, 10, 100, 30);
        view.radiusField.rect = box(110, 10, 140, 30);
        typeNewLocation();
    }
    bool editing(bool city, bool state, bool radius) {
        return store.getUpdatingCity() == city && store.getUpdatingState() == state &&
               store.getUpdatingSearchRadius() == radius;
    }
};

TEST_F(MousePress, PressOnAnEdgeOrCornerDoesNothing) {
    view.scrollUpButton = box(300, 100, 314, 115);
    for (auto [x, y] : {std::pair{10, 20}, {60, 20}, {30, 10}, {30, 30}, {300, 100}, {314, 115}})
        press(x, y);
    EXPECT_TRUE(editing(false, false, false));
    EXPECT_EQ(0, view.curVisShowListOffset);
    EXPECT_FALSE(searchStarted());
}

TEST_F(MousePress, CityFieldOpensAndClosesWithoutSearch) {
    press(30, 20);
    EXPECT_TRUE(editing(true, false, false));
    press(31, 21); // in the open field: closes it, no search
    EXPECT_TRUE(editing(false, false, false));
    EXPECT_FALSE(searchStarted());
}

TEST_F(MousePress, OpenCityFieldClosedByStatePressOpensStateWithoutSearch) {
    press(30, 20);
    press(80, 20);
    EXPECT_TRUE(editing(false, true, false));
    EXPECT_FALSE(searchStarted());
    press(85, 25); // the open state field stays open
    EXPECT_TRUE(editing(false, true, false));
    press(120, 20); // on to the radius: still no search
    EXPECT_TRUE(editing(false, false, true));
    EXPECT_FALSE(searchStarted());
}

TEST_F(MousePress, PressOutsideOpenRadiusFieldClosesItAndSearches) {
    store.setUpdatingSearchRadius(true);
    press(400, 400);
    EXPECT_TRUE(editing(false, false, false));
    EXPECT_TRUE(searchStarted());
}

TEST_F(MousePress, CityPressWhileStateOpenClosesStateAndSearches) {
    store.setUpdatingState(true);
    press(30, 20);
    EXPECT_TRUE(editing(true, false, false));
    EXPECT_TRUE(searchStarted());
}

TEST_F(MousePress, PressOutsideOpenCityFieldSearches) {
    store.setUpdatingCity(true);
    press(200, 200);
    EXPECT_TRUE(editing(false, false, false));
    EXPECT_TRUE(searchStarted());
}

TEST_F(MousePress, ScrollButtonsAndThumbAct) {
    view.scrollUpButton = box(300, 100, 314, 115);
    view.scrollDownButton = box(300, 400, 314, 415);
    view.scrollThumb = box(300, 200, 314, 260);
    view.curVisShowListOffset = -100;
    press(307, 107);
    EXPECT_EQ(-80, view.curVisShowListOffset);
    press(307, 407);
    press(307, 407);
    EXPECT_EQ(-120, view.curVisShowListOffset);
    press(307, 230);
    EXPECT_TRUE(view.draggingThumb);
    EXPECT_EQ(230, view.dragStartY);
    EXPECT_EQ(-120, view.dragStartOffset);
}

TEST_F(MousePress, MonthButtonsFollowTheList) {
    addDemoShow(concerts(), "Spoon", 2026, 5, 3);
    addDemoShow(concerts(), "Wilco", 2026, 6, 3);
    showMonth(2026, 5);
    view.nextMonthButton.rect = box(500, 10, 520, 30);
    view.prevMonthButton.rect = box(240, 10, 260, 30);
    press(510, 20);
    EXPECT_EQ(6, view.curVisMonth);
    press(510, 20); // the last show's month: no further
    EXPECT_EQ(6, view.curVisMonth);
    press(250, 20);
    EXPECT_EQ(5, view.curVisMonth);
}

TEST_F(MousePress, DayArrowsScrollOnlyWhenShown) {
    view.cellMoreRect[3] = box(100, 200, 110, 210);
    view.cellBackRect[3] = box(120, 200, 130, 210);
    press(105, 205); // arrow not shown
    EXPECT_EQ(0, view.cellScroll[3]);
    view.cellHasMore[3] = true;
    press(105, 205);
    press(105, 205);
    EXPECT_EQ(2, view.cellScroll[3]);
    view.cellHasBack[3] = true;
    press(125, 205);
    EXPECT_EQ(1, view.cellScroll[3]);
}

TEST_F(MousePress, OnlyTheFirstCellUnderThePressScrolls) {
    for (int cell : {4, 9}) {
        view.cellHasMore[cell] = true;
        view.cellMoreRect[cell] = box(100, 200, 110, 210);
    }
    press(105, 205);
    EXPECT_EQ(1, view.cellScroll[4]);
    EXPECT_EQ(0, view.cellScroll[9]);
}

using MouseMove = MouseFixture;

TEST_F(MouseMove, HoverFlagsFollowThePointer) {
    view.promoLine.rect = box(10, 400, 200, 420);
    view.myShowsTab.rect = box(10, 60, 80, 80);
    move(50, 410);
    EXPECT_TRUE(view.promoLine.hovered);
    EXPECT_FALSE(view.myShowsTab.hovered);
    move(50, 70);
    EXPECT_FALSE(view.promoLine.hovered);
    EXPECT_TRUE(view.myShowsTab.hovered);
    move(80, 70); // the edge is outside
    EXPECT_FALSE(view.myShowsTab.hovered);
}

TEST_F(MouseMove, ConditionalRegionsKeepTheirFlagWhileOff) {
    view.versionUpdateBanner.rect = box(10, 10, 100, 30);
    view.retryLine.rect = box(10, 40, 100, 60);
    view.versionUpdateBanner.hovered = true; // no update announced
    move(50, 50);                            // connection good
    EXPECT_TRUE(view.versionUpdateBanner.hovered);
    EXPECT_FALSE(view.retryLine.hovered);
    store.setStagebeacon_version_update(true);
    store.setValid_internet_connection(false);
    move(50, 50);
    EXPECT_FALSE(view.versionUpdateBanner.hovered);
    EXPECT_TRUE(view.retryLine.hovered);
}

TEST_F(MouseMove, HighlightsNeedADrawnRectangleToRiseButAnyToStay) {
    SHOWENTRY* a = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
    SHOWENTRY* b = drawnShow(concerts(), "Wilco", 4, box(100, 10, 150, 50), box(300, 10, 350, 50));
    b->rect2Drawn = false;
    move(20, 20);
    EXPECT_TRUE(a->highlighted);
    EXPECT_FALSE(b->highlighted);
    move(320, 20); // in b's undrawn rect2: it does not rise, a drops
    EXPECT_FALSE(a->highlighted);
    EXPECT_FALSE(b->highlighted);
    b->highlighted = true;
    move(321, 21); // and a raised one stays
    EXPECT_TRUE(b->highlighted);
    move(500, 500);
    EXPECT_FALSE(b->highlighted);
}

TEST_F(MouseMove, ThumbDragSetsTheOffsetAndLeavesHoverAlone) {
    view.calTop = 105;
    view.calBottom = 415; // track of 280 between the buttons
    view.barSize = 15;
    view.listContentHeight = 1000;
    view.scrollThumb = box(300, 200, 314, 260);
    view.promoLine.rect = box(10, 400, 400, 420);
    SHOWENTRY* e = drawnShow(concerts(), "Spoon", 3, box(290, 190, 320, 230));
    e->highlighted = true;
    view.curVisShowListOffset = -40;
    press(307, 210);
    move(307, 213); // -3 * 1000 / 280 = -10.7, truncated
    EXPECT_EQ(-50, view.curVisShowListOffset);
    move(307, 410);
    EXPECT_EQ(-40 - 200 * 1000 / 280, view.curVisShowListOffset);
    EXPECT_FALSE(view.promoLine.hovered);
    EXPECT_TRUE(e->highlighted);
}

struct MouseWheel : MouseFixture {
    void SetUp() override {
        MouseFixture::SetUp();
        view.listArea = box(10, 100, 230, 400);
        view.gridArea = box(240, 100, 700, 400);
        view.cellRect[0] = box(240, 115, 305, 172);
        view.cellRect[1] = box(305, 115, 370, 172);
        addDemoShow(concerts(), "Spoon", 2026, 5, 3);
        addDemoShow(concerts(), "Wilco", 2026, 6, 3);
        showMonth(2026, 5);
    }
};

TEST_F(MouseWheel, OverTheListScrollsAndRefreshesHover) {
    SHOWENTRY* e = drawnShow(concerts(), "Beirut", 7, box(20, 150, 200, 200));
    wheel(50, 160, -3);
    EXPECT_EQ(-20, view.curVisShowListOffset);
    EXPECT_TRUE(e->highlighted);
    wheel(50, 160, 0); // no turn counts as down
    wheel(50, 160, 2);
    EXPECT_EQ(-20, view.curVisShowListOffset);
}

TEST_F(MouseWheel, DownOverACellWithMoreAdvancesIt) {
    view.cellHasMore[1] = true;
    wheel(330, 140, -1);
    EXPECT_EQ(1, view.cellScroll[1]);
    EXPECT_EQ(5, view.curVisMonth);
}

TEST_F(MouseWheel, ScrollableCellIgnoresDirectionsItDoesNotOffer) {
    view.cellHasMore[1] = true;
    wheel(330, 140, 1); // up, but only "more" is shown
    view.cellHasMore[0] = false;
    view.cellHasBack[0] = true;
    wheel(270, 140, -1); // down, but only "back" is shown
    EXPECT_EQ(0, view.cellScroll[0]);
    EXPECT_EQ(0, view.cellScroll[1]);
    EXPECT_EQ(5, view.curVisMonth);
    wheel(270, 140, 1);
    EXPECT_EQ(-1, view.cellScroll[0]);
}

TEST_F(MouseWheel, OverAPlainDayOrTheStripTurnsTheMonthWithinTheList) {
    wheel(270, 140, -1);
    EXPECT_EQ(6, view.curVisMonth);
    wheel(500, 105, -1); // weekday strip, past the last show's month
    EXPECT_EQ(6, view.curVisMonth);
    wheel(500, 105, 1);
    EXPECT_EQ(5, view.curVisMonth);
}

TEST_F(MouseWheel, ElsewhereNothingHappens) {
    SHOWENTRY* e = drawnShow(concerts(), "Beirut", 7, box(710, 10, 790, 90));
    wheel(750, 50, -1);
    wheel(240, 200, -1); // on the grid's edge
    EXPECT_EQ(0, view.curVisShowListOffset);
    EXPECT_EQ(5, view.curVisMonth);
    EXPECT_FALSE(e->highlighted); // the move handler did not run
}

// Updates land every few milliseconds while the pointer moves, hovers,
// clicks and scrolls nearly two thousand times: the update thread's frames are
// drawn on this thread, so no hit rectangle is ever read while it is being
// redrawn (make check-tsan reports any such race).
TEST_F(MouseFixture, UpdatesLandingWhileThePointerWorksNeverRace) {
    // A small port keeps each frame cheap; every rectangle is still drawn.
    attach(400, 300);
    showMonth(2026, 11);
    fillDemoShows(concerts(), 30, 2026, 11);
    std::atomic<bool> done{false};
    std::thread update([&] {
        for (int i = 0; !done; ++i) {
            ShowListRef fresh = app->concerts.replace();
            fillDemoShows(fresh.get(), 20 + i % 20, 2026, 11);
            store.setUpdatingProgress(i % 100);
            store.setUpdatingConcerts(i % 2 == 0);
            (void)view.Render();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    unsigned seed = 7;
    auto next = [&seed](int range) {
        seed = seed * 1103515245u + 12345u;
        return static_cast<int>((seed >> 8) % static_cast<unsigned>(range));
    };
    for (int i = 0; i < 1000; ++i) { // 1900 pointer events
        int x = next(400), y = 100 + next(200); // the grid and the list, not the links
        move(x, y);
        if (i % 3 == 0) {
            press(x, y);
            release(x, y);
        }
        if (i % 5 == 0) wheel(x, y, next(2) ? 1 : -1);
        if (i % 10 == 0) (void)drainMainThreadQueue(); // the idle tick's frames
    }
    done = true;
    update.join();
    (void)drainMainThreadQueue();
    EXPECT_EQ(app->concerts.current()->size() * 54, static_cast<size_t>(view.listContentHeight));
}

} // namespace
