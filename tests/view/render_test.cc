// Render: the one-piece copy into the port, its preconditions, odd sizes,
// two threads, and a frame saved for people to look at.
#include <thread>

#include "view/layout.h"
#include "platform/main_thread.h"
#include "view_fixture.h"

namespace {

using RenderTest = ViewFixture;

TEST_F(RenderTest, SavesAFrameToLookAt) {
    attach(1280, 800);
    struct tm t = today();
    showMonth(t.tm_year + 1900, t.tm_mon + 1);
    fillDemoShows(concerts(), 300, t.tm_year + 1900, t.tm_mon + 1);
    concerts()->head->next->next->highlighted = true;
    store.setLastSearch_y(2026);
    store.setCurCityDisplay("Springfield");
    render();
    ASSERT_TRUE(port->savePng("view_frame.png"));
}

constexpr uint32_t kPortColour = 0x123456;

TEST_F(RenderTest, NothingHappensWithoutPortOrImage) {
    EXPECT_EQ(0, view.Render()); // no instance block yet
    attach(300, 200);
    data.destPort = nullptr;
    EXPECT_EQ(0, view.Render());
    EXPECT_EQ(0u, data.offscreen->pixel(10, 10)); // not drawn into
    data.destPort = port.get();
    data.offscreen.reset();
    EXPECT_EQ(0, view.Render());
    EXPECT_EQ(kPortColour, at(10, 10));
}

// The port keeps whatever lies outside the view's rectangle.
void expectOnlyInside(RenderTest& t, const Rect& dest) {
    const int w = t.port->width(), h = t.port->height();
    for (int x = 0; x < w; x += 7) {
        EXPECT_EQ(kPortColour, t.at(x, dest.top - 1)) << x;
        EXPECT_EQ(kPortColour, t.at(x, dest.bottom)) << x;
    }
    for (int y = 0; y < h; y += 7) {
        EXPECT_EQ(kPortColour, t.at(dest.left - 1, y)) << y;
        EXPECT_EQ(kPortColour, t.at(dest.right, y)) << y;
    }
    EXPECT_EQ(0xFFFFFFu, t.at(dest.left, dest.top)); // the view's white corner
    EXPECT_NE(kPortColour, t.at(dest.right - 1, dest.bottom - 1));
}

TEST_F(RenderTest, CopiesIntoTheViewsRectangleOnly) {
    const Rect dest = makeRect(20, 30, 420, 630);
    attach(700, 500, dest);
    fillDemoShows(concerts(), 50, 2026, 11);
    showMonth(2026, 11);
    render();
    expectOnlyInside(*this, dest);
    // The frame is the view's own: the grid starts 240 pixels into it.
    EXPECT_EQ(0x404040u, at(dest.left + 240, dest.top + 300));
}

TEST_F(RenderTest, TinyAndHugePortsDrawNothingOutside) {
    fillDemoShows(concerts(), 300, 2026, 11);
    showMonth(2026, 11);
    concerts()->head->highlighted = true;
    store.setUpdatingConcerts(true);
    store.setValid_internet_connection(false);
    for (const Rect& dest : {makeRect(18, 18, 82, 82), makeRect(5, 5, 3005, 4005)}) {
        attach(dest.right + 10, dest.bottom + 10, dest);
        render();
        expectOnlyInside(*this, dest);
    }
}

// The update thread's Render only asks this thread for a frame; the
// requests coalesce into one frame, drawn when the queue runs.
TEST_F(RenderTest, OtherThreadsFramesAreDrawnOnTheViewsThread) {
    attach(640, 480);
    showMonth(2026, 11);
    std::thread update([&] {
        for (int i = 0; i < 20; ++i) {
            ShowListRef fresh = app->concerts.replace();
            fillDemoShows(fresh.get(), 20, 2026, 11);
            EXPECT_EQ(0, view.Render());
        }
    });
    update.join();
    EXPECT_EQ(1, view.listContentHeight) << "nothing drawn off the view's thread";
    EXPECT_EQ(1u, drainMainThreadQueue());
    EXPECT_EQ(20 * 54, view.listContentHeight);
}

} // namespace
