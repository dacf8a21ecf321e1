// ServiceApp: an application object whose service host is a loopback
// server, for the suites that test what the plug-in asks of the service
// (sharing, friends' shows, phone sync). Each test gets a fresh object, a
// clean HTTP client, an empty headless log and an empty main-thread queue.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "client_state.h"
#include "loopback_server.h"
#include "platform/headless.h"
#include "platform/main_thread.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

class ServiceApp : public ::testing::Test {
  protected:
    LoopbackServer server;
    std::unique_ptr<StagebeaconClass> app;

    void SetUp() override {
        resetHttpClient();
        resetHeadless();
        (void)drainMainThreadQueue();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        app = std::make_unique<StagebeaconClass>();
        app->calGetData.fetchTimeout = 2;
    }
    void TearDown() override {
        app->calGetData.shutDown();
        app.reset();
        unsetenv("STAGEBEACON_SERVICE");
        (void)drainMainThreadQueue();
        resetHeadless();
        resetHttpClient();
    }

    ProtectedData& store() { return app->protectedData; }

    // Requests now go to a port where nothing listens: every download fails.
    void goOffline() {
        LoopbackServer closed;
        std::string url = closed.url("");
        closed.stop();
        setenv("STAGEBEACON_SERVICE", url.c_str(), 1);
    }

    std::vector<std::string> targets() const {
        std::vector<std::string> out;
        for (const RecordedRequest& r : server.requests())
            out.push_back(r.target);
        return out;
    }

    // The alerts logged by the headless back end.
    static std::vector<std::string> alerts() {
        std::vector<std::string> out;
        for (const std::string& line : headlessLogLines())
            if (line.rfind("alert: ", 0) == 0) out.push_back(line);
        return out;
    }
};
