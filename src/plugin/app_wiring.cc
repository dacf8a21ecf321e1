// The application object built, and the calls that lower floors make upwards
// wired: the engine's feature tasks and hooks, the view's clicks, the
// preferences window's services. Everything below the plug-in entry learns
// of the floors above it only here.
#include "export/export_route.h"
#include "export/growl_script.h"
#include "export/applescript.h"
#include "export/notify_gui.h"
#include "model/stagebeacon_class.h"
#include "phone/iphone_sync.h"
#include "prefs/preferences_services.h"
#include "prefs/preferences_window.h"
#include "sharing/friend_shows.h"
#include "sharing/nearby_users.h"
#include "sharing/sharing_client.h"
#include "update/cal_get_data.h"
#include "view/cal_vis.h"

StagebeaconClass* Stagebeacon = nullptr;

namespace {

void wireEngine(StagebeaconClass* app, EngineHooks& hooks) {
    hooks.updateFriends = [app] { return updateFriendShows(app); };
    hooks.updateShared = [app] { return shareUserCalendar(app); };
    hooks.updateiPhone = [app] { return iPhoneSync_addAllArtists(app); };
    hooks.exportConcerts = [app] { exportAfterConcertSearch(app); };
    hooks.registerNotifier = [](bool concerts, bool albums) {
        (void)SimpleRunAppleScript(growlRegistrationScript(concerts, albums).c_str());
    };
    hooks.closeNotifications = [] { removeNotifyWindows(); };
}

void wireView(StagebeaconClass* app, ViewHooks& hooks) {
    hooks.openPreferences = [app] { OpenPreferencesGUI(app); };
    hooks.exportMarkedShows = [app] { exportMarkedShows(*app); };
    hooks.shareMark = [app](const SHOWENTRY* show) {
        if (show->attending)
            (void)addSingleSharedShow(app, show);
        else
            (void)deleteSingleSharedShow(app, show);
    };
}

void wirePreferences() {
    setPreferencesServices(PreferencesServices{checkIfUserExists, initializeSharing,
                                               findNearbyUsers, iPhoneSync_Initialize,
                                               preferencesGrowlScript, SimpleRunAppleScript});
}

} // namespace

StagebeaconClass::StagebeaconClass()
    : ownedView(std::make_unique<CalVis>(this)),
      ownedEngine(std::make_unique<CalGetData>(this)),
      calVis(*ownedView),
      calGetData(*ownedEngine),
      friendsList(new FRIENDLIST) {
    setSharedStore(&protectedData);
    redraw = [this] { return calVis.Render(); };
    frameShown = [this] { return calVis.frameDrawn(); };
    wireEngine(this, calGetData.hooks);
    wireView(this, calVis.hooks);
    wirePreferences();
}

StagebeaconClass::StagebeaconClass(LoadSettings) : StagebeaconClass() {
    (void)calGetData.initialize();
}

StagebeaconClass::~StagebeaconClass() {
    if (sharedStore() == &protectedData) setSharedStore(nullptr);
    deleteNames(friendsList);
    delete friendsList;
}
