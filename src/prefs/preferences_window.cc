// The one preferences window: opening and closing it, the way every event
// reaches the logic (collect the widgets, act, refresh or close), the tabs,
// and the two hooks a host installs (the window back end and the runner of
// the notifier registration).
#include "prefs/preferences_window.h"

#include <memory>

#include "platform/headless.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "prefs/preferences_services.h"
#include "prefs/preferences_window_internal.h"

int lastTabIndex = 1;

namespace {

std::unique_ptr<PreferencesWindow> currentWindow;
const PreferencesWindowBackend* windowBackend = nullptr;
bool windowShown = false; // the back end built the window it is now showing
GrowlRegistrationRunner growlRunner = nullptr;

void requestEngineUpdate(StagebeaconClass* app, unsigned long tasks) {
    (void)app->calGetData.suggestUpdateShowList(tasks, true);
}

void collect(PreferencesWindow& window) {
    if (windowShown) windowBackend->collect(window);
}

// After an event: the widgets show the model again, or the window goes.
void finish(PreferencesWindow& window) {
    if (window.open) {
        if (windowShown) windowBackend->refresh(window);
        return;
    }
    if (windowShown) windowBackend->close(window);
    windowShown = false;
    currentWindow.reset();
}

} // namespace

void setPreferencesWindowBackend(const PreferencesWindowBackend* backend) {
    windowBackend = backend;
}

void setGrowlRegistrationRunner(GrowlRegistrationRunner runner) {
    growlRunner = runner;
}

void runGrowlRegistration(const std::string& script) {
    if (growlRunner)
        growlRunner(script);
    else
        (void)preferencesServices().runScript(script.c_str());
}

void OpenPreferencesGUI() {
    OpenPreferencesGUI(Stagebeacon);
}

void OpenPreferencesGUI(StagebeaconClass* app) {
    if (!app || currentWindow) return;
    currentWindow = std::make_unique<PreferencesWindow>();
    PreferencesWindow& window = *currentWindow;
    window.app = app;
    window.requestUpdate = requestEngineUpdate;
    fillPreferences(window);
    InstallTabHandler(window);
    windowShown = windowBackend && windowBackend->show(window);
    if (!windowShown) headlessLog("preferences: opened");
}

PreferencesWindow* openPreferencesWindow() {
    return currentWindow.get();
}

bool PreferencesControlHandler(int number) {
    PreferencesWindow* window = currentWindow.get();
    if (!window || !findControl(number)) return false;
    collect(*window);
    if (number == CID_MAIN_BTTN_ok.id)
        preferencesOk(*window);
    else if (number == CID_MAIN_BTTN_cancel.id)
        window->open = false; // nothing is stored
    else
        (void)handleControlHit(*window, number);
    finish(*window);
    return true;
}

void preferencesTabSwitched(int value) {
    PreferencesWindow* window = currentWindow.get();
    if (!window) return;
    collect(*window);
    TabEventHandler(*window, value);
    finish(*window);
}

void preferencesRowSelected(int listNumber, int item) {
    PreferencesWindow* window = currentWindow.get();
    if (!window) return;
    collect(*window);
    if (listNumber == CID_SHARING_LBOX_friendList.id)
        selectFriend(*window, item);
    else if (listNumber == CID_SHARING_LBOX_seeLocalFriends.id)
        selectNearbyUser(*window, item);
    finish(*window);
}

void preferencesColumnClicked(const char* property) {
    PreferencesWindow* window = currentWindow.get();
    if (!window) return;
    collect(*window);
    sortNearbyList(*window, property);
    finish(*window);
}

void preferencesEdit(void (*edit)(PreferencesWindow& window, void* data), void* data) {
    PreferencesWindow* window = currentWindow.get();
    if (!window) return;
    collect(*window);
    edit(*window, data);
    finish(*window);
}

void SelectItemOfTabControl(PreferencesWindow& window) {
    PreferencesModel& model = window.model;
    for (int position = 1; position <= tabList.count; ++position) {
        ControlState& pane = model.controls[tabList.paneIds[position - 1]];
        pane.visible = pane.enabled = position == model.tabValue;
    }
    lastTabIndex = model.tabValue;
}

void TabEventHandler(PreferencesWindow& window, int value) {
    if (value < 1 || value > tabList.count || value == window.model.tabValue) return;
    window.model.tabValue = value;
    SelectItemOfTabControl(window);
}

void InstallTabHandler(PreferencesWindow& window) {
    if (lastTabIndex >= 1 && lastTabIndex <= tabList.count) window.model.tabValue = lastTabIndex;
    SelectItemOfTabControl(window);
}

bool tabPaneShown(const PreferencesWindow& window, int position) {
    if (position < 1 || position > tabList.count) return false;
    auto pane = window.model.controls.find(tabList.paneIds[position - 1]);
    return pane != window.model.controls.end() && pane->second.visible;
}
