// The event message: typing into the location fields, and month and list
// navigation with the arrow keys.
#include "plugin/plugin_entry.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "view/cal_vis.h"
#include "view/mouse_handlers.h"

namespace {

constexpr char kBackspace = 8;
constexpr char kTab = 9;
constexpr char kLineFeed = 10;
constexpr char kReturn = 13;
constexpr char kLeftArrow = 28;
constexpr char kRightArrow = 29;
constexpr char kUpArrow = 30;
constexpr char kDownArrow = 31;

// A space or anything from 'A' to 'z', brackets and carets included.
bool letterForPlace(char c) { return c == ' ' || (c >= 65 && c <= 122); }
bool endsField(char c) { return c == kReturn || c == kLineFeed; }

void suggestSearch(StagebeaconClass* app) {
    (void)app->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, false);
}

void cityKey(StagebeaconClass* app, char c) {
    ProtectedData& store = app->protectedData;
    if (letterForPlace(c)) {
        store.addLetterCurCityDisplay(c);
    } else if (c == kBackspace) {
        store.removeLetterCurCityDisplay();
    } else if (endsField(c) || c == kTab) {
        store.setUpdatingCity(false);
        store.setUpdatingState(true);
    }
}

void stateKey(StagebeaconClass* app, char c) {
    ProtectedData& store = app->protectedData;
    if (letterForPlace(c)) {
        store.addLetterCurStateDisplay(c);
    } else if (c == kBackspace) {
        store.removeLetterCurStateDisplay();
    } else if (endsField(c)) {
        store.setUpdatingState(false);
        suggestSearch(app);
        app->calVis.Render();
    } else if (c == kTab) {
        store.setUpdatingState(false);
        store.setUpdatingSearchRadius(true);
    }
}

void radiusKey(StagebeaconClass* app, char c) {
    ProtectedData& store = app->protectedData;
    if (c == ' ' || (c >= '0' && c <= '9')) {
        store.addLetterCurSearchRadiusDisplay(c);
    } else if (c == kBackspace) {
        store.removeLetterCurSearchRadiusDisplay();
    } else if (endsField(c) || c == kTab) {
        store.setUpdatingSearchRadius(false);
        store.limitCurSearchRadiusDisplay();
        suggestSearch(app);
    }
}

PlayerStatus navigationKey(StagebeaconClass* app, char c) {
    CalVis& view = app->calVis;
    switch (c) {
    case kRightArrow: view.incrementCurVisMonth(); break;
    case kLeftArrow: view.decrementCurVisMonth(); break;
    case kUpArrow: view.scrollUp(); break;
    case kDownArrow: view.scrollDown(); break;
    default: return kPlayerUnimplementedMessage;
    }
    view.Render();
    // The content moved under a pointer that did not.
    handleMouseMoveEvents();
    return kPlayerNoErr;
}

PlayerStatus keyDown(StagebeaconClass* app, char c) {
    ProtectedData& store = app->protectedData;
    if (store.getUpdatingCity()) {
        cityKey(app, c);
    } else if (store.getUpdatingState()) {
        stateKey(app, c);
    } else if (store.getUpdatingSearchRadius()) {
        radiusKey(app, c);
    } else {
        return navigationKey(app, c);
    }
    app->calVis.Render();
    return kPlayerNoErr;
}

} // namespace

PlayerStatus handleEventMessage(const PlayerEventRecord* event) {
    if (!event || !Stagebeacon) return kPlayerUnimplementedMessage;
    switch (event->what) {
    case kPlayerMouseDownEvent:
        // Clicks themselves are the mouse monitor's.
        Stagebeacon->calVis.mouseX = event->where.h;
        Stagebeacon->calVis.mouseY = event->where.v;
        return kPlayerUnimplementedMessage;
    case kPlayerKeyDownEvent:
    case kPlayerAutoKeyEvent:
        return keyDown(Stagebeacon, static_cast<char>(event->message & 0xFF));
    default:
        return kPlayerUnimplementedMessage;
    }
}
