// PrefsTest: an application object in a temporary home with its settings
// paths set, a loopback service, and the preferences window opened through
// the player's script verbs. The update the window asks for is recorded,
// not started, so each test sees the task set OK arrived at.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/file_io.h"
#include "prefs/preferences_window.h"
#include "service_app.h"
#include "temp_home.h"

class PrefsTest : public ServiceApp {
  protected:
    TempHome home;
    static std::vector<unsigned long>& updates() {
        static std::vector<unsigned long> asked;
        return asked;
    }

    void SetUp() override {
        ServiceApp::SetUp();
        updates().clear();
        lastTabIndex = 1;
        ASSERT_TRUE(makeFolders(home.support()));
        ProtectedData& s = store();
        s.setStagebeaconPref((home.support() + "StagebeaconPref").c_str());
        s.setStagebeaconIncludeBandsList(includeFile().c_str());
        s.setStagebeaconExcludeBandsList((home.support() + "StagebeaconExcludeBands.txt").c_str());
        s.setiTunes_xml_path("/music/library.xml");
        s.setOSXVersion(10.4f);
    }
    void TearDown() override {
        if (openPreferencesWindow()) PreferencesControlHandler(CID_MAIN_BTTN_cancel.id);
        ServiceApp::TearDown();
    }

    std::string includeFile() const { return home.support() + "StagebeaconIncludeBands.txt"; }

    PreferencesWindow& open() {
        OpenPreferencesGUI(app.get());
        PreferencesWindow* window = openPreferencesWindow();
        window->requestUpdate = [](StagebeaconClass*, unsigned long tasks) {
            updates().push_back(tasks);
        };
        return *window;
    }
    ControlState& control(const ControlID& cid) { return openPreferencesWindow()->model.at(cid); }

    // The player's script verbs; a refused command fails the test.
    void run(const std::string& verb, const std::string& arguments) {
        std::string error;
        EXPECT_TRUE(preferencesScriptCommand(verb, arguments, &error)) << verb << " " << error;
    }
    void set(const std::string& name, const std::string& value) { run("set", name + " " + value); }
    void press(const std::string& name) { run("press", name); }
};
