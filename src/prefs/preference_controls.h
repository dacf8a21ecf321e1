// The controls of the preferences window: one table naming each control by
// its identifier (a four-letter signature and a number, unique over the
// window) and saying what kind of control it is. The globals
// CID_<TAB>_<KIND>_<name> are generated from the table, and the interface
// file gives each widget the same name as id, so the logic, the window and
// the player's script all speak of a control the same way.
//
// Threads: constant data; any thread.
#pragma once

#include <cstddef>

enum class ControlKind { TextBox, Button, CheckBox, RadioButton, ListBox, StaticText };

struct ControlID {
    const char* signature; // four letters: "tbox", "bttn", "cbox", "rbtn", "lbox", "text"
    int id;
};

// Columns: tab, kind, name, signature, number, kind of control.
#define SB_PREFERENCE_CONTROLS(X)                                                                  \
    X(GENERAL, TBOX, libraryPath, "tbox", 0, TextBox)                                              \
    X(GENERAL, BTTN, libraryPath, "bttn", 1, Button)                                               \
    X(GENERAL, TBOX, includeArtists, "tbox", 2, TextBox)                                           \
    X(GENERAL, TBOX, excludeArtists, "tbox", 3, TextBox)                                           \
    X(SHARING, CBOX, shareCal, "cbox", 20, CheckBox)                                               \
    X(SHARING, TBOX, userName, "tbox", 21, TextBox)                                                \
    X(SHARING, TBOX, firstName, "tbox", 22, TextBox)                                               \
    X(SHARING, TBOX, lastName, "tbox", 23, TextBox)                                                \
    X(SHARING, RBTN, shareHighlighted, "rbtn", 24, RadioButton)                                    \
    X(SHARING, RBTN, shareAll, "rbtn", 25, RadioButton)                                            \
    X(SHARING, TBOX, addFriend, "tbox", 26, TextBox)                                               \
    X(SHARING, LBOX, friendList, "lbox", 27, ListBox)                                              \
    X(SHARING, BTTN, addFriend, "bttn", 28, Button)                                                \
    X(SHARING, BTTN, removeFriend, "bttn", 29, Button)                                             \
    X(SHARING, BTTN, seeLocalFriends, "bttn", 30, Button)                                          \
    X(SHARING, LBOX, seeLocalFriends, "lbox", 31, ListBox)                                         \
    X(SHARING, TEXT, lboxHeader, "text", 32, StaticText)                                           \
    X(RELEASES, CBOX, imports, "cbox", 40, CheckBox)                                               \
    X(RELEASES, CBOX, extraTracks, "cbox", 41, CheckBox)                                           \
    X(RELEASES, CBOX, singles, "cbox", 42, CheckBox)                                               \
    X(RELEASES, CBOX, eps, "cbox", 43, CheckBox)                                                   \
    X(RELEASES, CBOX, remastered, "cbox", 44, CheckBox)                                            \
    X(RELEASES, CBOX, limitedEditions, "cbox", 45, CheckBox)                                       \
    X(RELEASES, CBOX, soundtracks, "cbox", 46, CheckBox)                                           \
    X(RELEASES, CBOX, live, "cbox", 47, CheckBox)                                                  \
    X(RELEASES, CBOX, nonActive, "cbox", 48, CheckBox)                                             \
    X(EXPORTING, CBOX, exportToiCal, "cbox", 60, CheckBox)                                         \
    X(EXPORTING, TBOX, iCalPath, "tbox", 61, TextBox)                                              \
    X(EXPORTING, BTTN, iCalPath, "bttn", 62, Button)                                               \
    X(EXPORTING, RBTN, exportHighlighted, "rbtn", 63, RadioButton)                                 \
    X(EXPORTING, RBTN, exportAll, "rbtn", 64, RadioButton)                                         \
    X(NOTIFICATIONS, CBOX, concerts, "cbox", 80, CheckBox)                                         \
    X(NOTIFICATIONS, CBOX, albums, "cbox", 81, CheckBox)                                           \
    X(NOTIFICATIONS, RBTN, defaultWindow, "rbtn", 82, RadioButton)                                 \
    X(NOTIFICATIONS, RBTN, growlWindow, "rbtn", 83, RadioButton)                                   \
    X(IPHONE, CBOX, sync, "cbox", 90, CheckBox)                                                    \
    X(IPHONE, TBOX, userName, "tbox", 91, TextBox)                                                 \
    X(IPHONE, TBOX, password, "tbox", 92, TextBox)                                                 \
    X(IPHONE, BTTN, getApp, "bttn", 93, Button)                                                    \
    X(IPHONE, BTTN, watchDemo, "bttn", 94, Button)                                                 \
    X(MAIN, BTTN, cancel, "bttn", 100, Button)                                                     \
    X(MAIN, BTTN, ok, "bttn", 101, Button)

#define SB_DECLARE_CONTROL(Tab, Kind, name, signature, number, kind)                               \
    extern const ControlID CID_##Tab##_##Kind##_##name;
SB_PREFERENCE_CONTROLS(SB_DECLARE_CONTROL)
#undef SB_DECLARE_CONTROL

// The tab control and its panes: the tab control's value (1 to 6) is the
// position of the pane shown.
extern const ControlID kTabControlID; // "tabs" 128
struct TabList {
    int count;
    int paneIds[6]; // "tabs" 129 to 134
};
extern const TabList tabList;

struct ControlInfo {
    const char* name; // "CID_SHARING_TBOX_userName": also the widget's id
    ControlID cid;
    ControlKind kind;
};

extern const ControlInfo kPreferenceControls[];
extern const size_t kPreferenceControlCount;

// The control named `name`, or the one numbered `number`; null when none.
const ControlInfo* findControl(const char* name);
const ControlInfo* findControl(int number);

// The id of the widget that shows tab pane `position` (1 to 6), as the
// interface file names it: "tabs_129" and so on.
const char* tabPaneName(int position);
