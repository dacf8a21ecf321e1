// The update engine under test: an application whose service is a loopback
// server playing the coordinate lookup, the site list and two concert sites,
// with four library artists and a location typed on screen. Shared by the
// engine's own tests and by the suites of what a search triggers (export).
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "client_state.h"
#include "loopback_server.h"
#include "model/artist_key.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

inline std::string event(const char* artist, const char* date, const char* venue = "Paradise") {
    return std::string("<artist>") + artist + "</artist><event_date>" + date +
           "</event_date><venue_name>" + venue + "</venue_name><event_url>http://e/" + artist +
           "</event_url><venue_city>Boston</venue_city><venue_state>MA</venue_state></event>\n";
}

class UpdateEngine : public ::testing::Test {
  protected:
    LoopbackServer server;
    std::unique_ptr<StagebeaconClass> app;

    void SetUp() override {
        resetHttpClient();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        app = std::make_unique<StagebeaconClass>();
        app->calGetData.fetchTimeout = 2;
        app->calGetData.locateByIP = false;
        for (const char* name : {"Wilco", "The Beatles", "Spoon", "Beirut"}) library(name);
        ProtectedData& s = store();
        s.setCurCityDisplay("boston");
        s.setCurStateDisplay("Massachusetts");
        s.setCurSearchRadiusDisplay("50");

        server.onPath("/zipcodes/zipcodes.php", ScriptedReply::ok("<LAT>42.36</LAT><LON>-71.06</LON>"));
        server.onPath("/datasources/datasources.php",
                      ScriptedReply::ok("<site ticket=1>" + server.url("/one?site=1") + "</site>\n" +
                                        "<site>" + server.url("/two?site=2") + "</site>\n"));
        server.onPath("/one", ScriptedReply::ok(event("Wilco", "8/9/2027") +
                                                event("Nobody", "8/1/2027") +
                                                event("Spoon", "3/1/2027")));
        server.onPath("/two", ScriptedReply::ok(event("wilco", "8/9/2027", "Elsewhere") +
                                                event("Beatles", "3/1/2027")));
    }
    void TearDown() override {
        app->calGetData.shutDown();
        app.reset();
        unsetenv("STAGEBEACON_SERVICE");
        resetHttpClient();
    }

    ProtectedData& store() { return app->protectedData; }
    void library(const char* name) {
        char key[kArtistKeySize];
        snprintf(key, sizeof key, "%s", name);
        cleanArtist(key);
        app->calGetData.xmlArtists.add(new XMLARTIST(key));
    }
    std::vector<std::string> shows() {
        std::vector<std::string> out;
        ShowListRef list = app->concerts.current();
        for (SHOWENTRY* e = list->head; e; e = e->next)
            out.push_back(std::string(e->artist) + " " + std::to_string(e->month) + "/" +
                          std::to_string(e->day));
        return out;
    }
    // Site one answers with one show after `delayMs`, so a stop or a
    // time-out can land while its download is under way.
    void slowSiteOne(int delayMs) {
        ScriptedReply slow = ScriptedReply::ok(event("Beirut", "1/1/2028"));
        slow.delayBeforeHeadMs = delayMs;
        server.onPath("/one", slow);
    }
    // Waits (at most five seconds) for a started update to finish its tasks.
    void waitForUpdate() {
        for (int i = 0; i < 500 && app->calGetData.updateRunning(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ASSERT_FALSE(app->calGetData.updateRunning());
    }
    std::vector<std::string> targets() {
        std::vector<std::string> out;
        for (const RecordedRequest& r : server.requests()) out.push_back(r.target);
        return out;
    }
};
