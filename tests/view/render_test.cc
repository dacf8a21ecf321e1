// Render: the one-piece copy into the port, its preconditions, odd sizes,
// two threads, and a frame saved for people to look at.
#include <thread>

#include "view/dates.h"
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

} // namespace
