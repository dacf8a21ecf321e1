// The preferences window: six tabs of settings that the user edits and
// applies with OK. The logic works on a plain model of the controls' values
// (PreferencesModel, keyed by control number), so it runs the same with or
// without a display. A window back end, when one is installed, builds the
// real window from resources/preferences.ui and only copies values between
// its widgets and the model: before each control hit (collect) and after it
// (refresh). Without one the window is the model alone, driven by the
// player's script (preferencesScriptCommand).
//
// Life of a window: OpenPreferencesGUI fills the model from the store, the
// band list files and the friends list; control hits act at once (adding and
// removing a friend change the friends list for good, Cancel or not); OK
// validates, writes the store group by group, saves the preference file and
// asks the update engine for the tasks whose inputs changed. A validation
// failure shows an alert and leaves the window open; groups handled before
// it keep what they stored.
//
// Threads: everything here runs on the main thread (the host's messages and
// the window's signals); there is one window at a time and no locking of its
// own. The store and the lists are reached through their own locks.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "prefs/preference_controls.h"
#include "model/sharer.h"

class StagebeaconClass;
class FRIENDLIST;

struct ControlState {
    std::string text;   // text boxes and static texts
    bool value = false; // check boxes and radio buttons: on
    bool enabled = true;
    bool visible = true;
};

// One row of a list box: the item number its callbacks know it by (1-based)
// and the text of each column.
struct ListRow {
    int item = 0;
    std::vector<std::string> cells;
};

struct PreferencesModel {
    std::map<int, ControlState> controls; // by control number
    std::vector<ListRow> friendRows;      // column "FRND", in list order
    std::vector<ListRow> nearbyRows;      // "UNME" "FNME" "LNME" "CITY" "STAT", as sorted
    std::string nearbySortColumn;         // the column the nearby list is sorted by; "" none
    bool nearbySortAscending = true;
    int tabValue = 1; // the tab control's value: the pane shown, 1 to 6

    ControlState& at(const ControlID& cid) { return controls[cid.id]; }
};

struct PreferencesWindow {
    StagebeaconClass* app = nullptr;
    PreferencesModel model;

    bool friendsListChanged = false;
    int iFriendListItemSelected = -1; // item number, -1 when none
    int iLocalListItemSelected = -1;
    std::string initialUsername;      // the store's user name when the window opened
    std::string currentUsername;      // the phone user name as OK found it
    std::string fullListIncludeSaved; // the artist lists as shown at opening
    std::string fullListExcludeSaved;
    std::vector<SHARER> sharers;

    // Cleared by OK (once everything was stored) and by Cancel.
    bool open = true;
    // How OK asks for the changed tasks; by default the engine's
    // suggestUpdateShowList(tasks, true). Tests watch the task set here.
    void (*requestUpdate)(StagebeaconClass* app, unsigned long tasks) = nullptr;
};

// The column properties of the two lists.
constexpr const char* kFriendColumn = "FRND";
constexpr const char* kNearbyColumns[] = {"UNME", "FNME", "LNME", "CITY", "STAT"};

// Opens the window for `app` (the process-wide `Stagebeacon` without an
// argument) and fills it from the store. With a window back end the real
// window is built and shown; otherwise "preferences: opened" is logged. A
// window already open is left as it is.
void OpenPreferencesGUI();
void OpenPreferencesGUI(StagebeaconClass* app);
// The open window; null when none.
PreferencesWindow* openPreferencesWindow();

// A hit on control `number` of the open window: collects the widgets, acts,
// and then refreshes the widgets or, after OK or Cancel, closes the window.
// False when no window is open or no control has that number.
bool PreferencesControlHandler(int number);
// The other events of the window, each handled the same way (collect, act,
// refresh): the tab control switched to `value`; row `item` of list box
// `listNumber` selected (0: none); a header of the nearby list clicked.
void preferencesTabSwitched(int value);
void preferencesRowSelected(int listNumber, int item);
void preferencesColumnClicked(const char* property);

// Tabs. lastTabIndex is the pane last selected (1 to 6); a window opens on
// it. SelectItemOfTabControl shows and enables the pane of the tab
// control's value and hides and disables the others; TabEventHandler runs
// it when the value changes (to `value`, out-of-range values ignored);
// InstallTabHandler selects the current tab of a new window.
extern int lastTabIndex;
void SelectItemOfTabControl(PreferencesWindow& window);
void TabEventHandler(PreferencesWindow& window, int value);
void InstallTabHandler(PreferencesWindow& window);
// Whether pane `position` is the one shown (for the window back end).
bool tabPaneShown(const PreferencesWindow& window, int position);

// List callbacks. The name of the friends list's item `item` (1-based);
// empty past the end.
std::string friendListItemText(FRIENDLIST* friends, int item);
// Column `property` of nearby user `item` (1-based); empty for an unknown
// column or item.
std::string nearbyItemText(const std::vector<SHARER>& sharers, int item, const char* property);
// The nearby list's order: by the text of a sort column, by item number
// for any other column.
bool nearbyItemLess(const std::vector<SHARER>& sharers, int item1, int item2, const char* property);
// Rebuilds the rows of the friends list from `app`'s friends list.
void refreshFriendList(PreferencesWindow& window);
// Rebuilds the nearby rows from `sharers` in the current sort order.
void refreshNearbyList(PreferencesWindow& window);
// Sorts the nearby list by `property`; the same column again reverses it.
void sortNearbyList(PreferencesWindow& window, const char* property);
// Selection: a friend (enables removal and copies the name into the add
// box), a nearby user (clears the friend selection, disables removal,
// copies the user name); item 0 or less selects nothing (empties the add
// box and disables removal).
void selectFriend(PreferencesWindow& window, int item);
void selectNearbyUser(PreferencesWindow& window, int item);

// True for the verbs preferencesScriptCommand knows.
bool preferencesScriptVerb(const std::string& verb);
// The player's headless script: "set CID_... "value"" (text boxes take the
// text, check boxes and radio buttons 1/0 or true/false), "press CID_..." (a
// button, check box or radio button: the control hit), "select CID_... N"
// (a row of a list box, 0 for none) and "select-tab N". False with the
// reason in *error for anything else, or when no window is open.
bool preferencesScriptCommand(const std::string& verb, const std::string& arguments,
                              std::string* error);

// The window back end. show builds and shows the window from the model
// (false: it could not, and the model goes on alone); collect copies the
// widgets into the model; refresh copies the model into the widgets; close
// hides and destroys the window.
struct PreferencesWindowBackend {
    bool (*show)(PreferencesWindow& window);
    void (*collect)(PreferencesWindow& window);
    void (*refresh)(PreferencesWindow& window);
    void (*close)(PreferencesWindow& window);
};
// Null (the default) for none. Main thread, while no window is open.
void setPreferencesWindowBackend(const PreferencesWindowBackend* backend);

// The registration of the two notification kinds that OK runs when the
// notifier is chosen. Null (the default): the script runner runs it.
using GrowlRegistrationRunner = void (*)(const std::string& script);
void setGrowlRegistrationRunner(GrowlRegistrationRunner runner);
