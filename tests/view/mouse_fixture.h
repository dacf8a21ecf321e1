// The mouse handlers under test: the application behind the global pointer,
// the service (and so every link and search) on a loopback server, settings
// saved into a temporary home, and helpers to place rectangles by hand and
// to drive the pointer. Without a port, Render draws nothing and leaves the
// hand-placed rectangles alone.
#pragma once

#include <string>
#include <vector>

#include "client_state.h"
#include "loopback_server.h"
#include "platform/headless.h"
#include "temp_home.h"
#include "update/cal_get_data.h"
#include "view/layout.h"
#include "view/mouse_handlers.h"
#include "view_fixture.h"

// A rectangle given as the pointer's coordinates read: x first.
inline Rect box(int left, int top, int right, int bottom) {
    return makeRect(top, left, bottom, right);
}

struct MouseFixture : ViewFixture {
    LoopbackServer server;
    TempHome home;

    void SetUp() override {
        resetHttpClient();
        resetHeadless();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        app->calGetData.fetchTimeout = 2;
        app->calGetData.locateByIP = false;
        store.setStagebeaconPref((home.path() + "/StagebeaconPref").c_str());
        Stagebeacon = app.get();
    }
    void TearDown() override {
        app->calGetData.shutDown();
        Stagebeacon = nullptr;
        unsetenv("STAGEBEACON_SERVICE");
        resetHttpClient();
        resetHeadless();
        ViewFixture::TearDown();
    }

    void pointAt(int x, int y) {
        view.mouseX = x;
        view.mouseY = y;
    }
    void press(int x, int y) {
        pointAt(x, y);
        handleLeftMouseClicks();
    }
    void move(int x, int y) {
        pointAt(x, y);
        handleMouseMoveEvents();
    }
    void release(int x, int y) {
        pointAt(x, y);
        handleMouseUp();
    }
    void wheel(int x, int y, int delta) {
        pointAt(x, y);
        handleMouseWheelMoved(delta);
    }

    // The addresses handed to the page opener, in order.
    std::vector<std::string> openedPages() const {
        const std::string prefix = "open page: ";
        std::vector<std::string> out;
        for (const std::string& line : headlessLogLines())
            if (line.compare(0, prefix.size(), prefix) == 0)
                out.push_back(line.substr(prefix.size()));
        return out;
    }
    std::string page(const std::string& path) const { return server.url(path); }

    bool searchStarted() const { return app->calGetData.updateStarted(); }
    // The location on screen differs from the one last searched, so a search
    // that is asked for (not forced) really starts.
    void typeNewLocation() {
        store.setCurCityDisplay("boston");
        store.setCurStateDisplay("MA");
        store.setCurSearchRadiusDisplay("50");
    }

    // An entry of `list` drawn at `r1` (and, in the list, at `r2`).
    SHOWENTRY* drawnShow(SHOWLIST* list, const char* artist, int day, Rect r1, Rect r2 = Rect{}) {
        SHOWENTRY* e = addDemoShow(list, artist, 2026, 5, day);
        e->rect1 = r1;
        e->rect1Drawn = true;
        e->rect2 = r2;
        e->rect2Drawn = r2.right != 0;
        return e;
    }
};
