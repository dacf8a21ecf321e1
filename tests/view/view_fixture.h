// A view under test: an application object, a host port with the view's
// rectangle in it, and helpers to render and to probe pixels.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <memory>

#include "model/stagebeacon_class.h"
#include "view/visual_plugin_data.h"
#include "support/demo_shows.h"
#include "view/cal_vis.h"

// 0xRRGGBB of an opaque pixel.
inline uint32_t rgbOf(uint32_t argb) {
    return argb & 0xFFFFFF;
}
constexpr uint32_t rgbHex(int r, int g, int b) {
    return uint32_t(r << 16 | g << 8 | b);
}

struct ViewFixture : ::testing::Test {
    static void SetUpTestSuite() { setenv("STAGEBEACON_RESOURCES", STAGEBEACON_TEST_RESOURCES, 0); }

    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
    CalVis& view = app->calVis;
    ProtectedData& store = app->protectedData;
    VisualPluginData data;
    std::unique_ptr<Port> port;

    // A port of portWidth x portHeight holding the view's rectangle `dest`.
    void attach(int portWidth, int portHeight, Rect dest) {
        port = std::make_unique<Port>(portWidth, portHeight);
        port->fill(0xFF123456);
        data.destPort = port.get();
        data.destRect = dest;
        data.offscreen =
            std::make_unique<OffscreenImage>(dest.right - dest.left, dest.bottom - dest.top);
        CalVis::visualPluginData = &data;
    }
    // The usual case: the view fills a width x height port.
    void attach(int width, int height) {
        Rect r;
        r.right = int16_t(width);
        r.bottom = int16_t(height);
        attach(width, height, r);
    }
    void TearDown() override { CalVis::visualPluginData = nullptr; }

    void render() { ASSERT_EQ(0, view.Render()); }
    uint32_t at(int x, int y) const { return rgbOf(port->pixel(x, y)); }

    SHOWLIST* concerts() { return app->concerts.current().get(); }
    SHOWLIST* releases() { return app->albums.current().get(); }
    SHOWLIST* friendsShows() { return app->friendsShows.current().get(); }

    void showMonth(int year, int month) {
        view.curVisYear = year;
        view.curVisMonth = month;
    }
    static struct tm today() {
        time_t now = time(nullptr);
        struct tm t {};
        localtime_r(&now, &t);
        return t;
    }
};
