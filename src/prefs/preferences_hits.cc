// What a click on a control of the preferences window does, OK and Cancel
// aside: the two path choosers, the partner rule of the radio buttons, the
// enable rules, adding and removing a friend (at once, for good), the users
// of the same city, and the phone pages.
#include <mutex>
#include <string_view>

#include "platform/alert.h"
#include "platform/file_dialog.h"
#include "platform/page_opener.h"
#include "model/stagebeacon_class.h"
#include "prefs/preferences_services.h"
#include "prefs/preferences_window_internal.h"
#include "net/service_config.h"

void showAlert(const char* title, const char* text) {
    (void)runAlert(AlertRequest{title, text, "OK", ""});
}

bool asciiLetterOrDigit(char c) {
    // Not isalnum: a host that sets a locale must not let accented bytes in.
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool lettersDigitsSpaces(const std::string& text) {
    for (char c : text)
        if (!asciiLetterOrDigit(c) && c != ' ') return false;
    return true;
}

namespace {

constexpr size_t kFriendNameLimit = 63;

void chooseLibrary(PreferencesModel& model) {
    std::string chosen;
    if (chooseFileToOpen(FileOpenRequest{"Locate 'iTunes Music Library.xml'",
                                         "Please locate your 'iTunes Music Library.xml' file.\n"},
                         &chosen))
        model.at(CID_GENERAL_TBOX_libraryPath).text = chosen;
}

void chooseExportLocation(PreferencesModel& model) {
    std::string chosen;
    if (chooseFileToSave(
            FileSaveRequest{"Specify iCal file export location.",
                            "Please specify a location for your iCal file: 'corestorage.ics'\n",
                            "corestorage.ics"},
            &chosen))
        model.at(CID_EXPORTING_TBOX_iCalPath).text = chosen;
}

// The partner of each radio button: a click on one sets the other to the
// opposite value.
int radioPartner(int number) {
    const int pairs[][2] = {
        {CID_SHARING_RBTN_shareHighlighted.id, CID_SHARING_RBTN_shareAll.id},
        {CID_EXPORTING_RBTN_exportHighlighted.id, CID_EXPORTING_RBTN_exportAll.id},
        {CID_NOTIFICATIONS_RBTN_defaultWindow.id, CID_NOTIFICATIONS_RBTN_growlWindow.id},
    };
    for (const auto& pair : pairs) {
        if (pair[0] == number) return pair[1];
        if (pair[1] == number) return pair[0];
    }
    return -1;
}

void addFriend(PreferencesWindow& window) {
    PreferencesModel& model = window.model;
    std::string name = model.at(CID_SHARING_TBOX_addFriend).text.substr(0, kFriendNameLimit);
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
    if (name.empty()) {
        showAlert("Empty username.", "Please enter a friend name in the text box.");
        return;
    }
    // Only a warning: the name is still checked and added.
    if (!lettersDigitsSpaces(name))
        showAlert("Illegal characters.",
                  "Names can only only contain letters, numbers, and spaces.");
    switch (preferencesServices().checkUser(window.app, name.c_str())) {
    case kSharingAccepted:
        break;
    case kSharingRefused:
        showAlert("Unknown username.", "That friend name could not be found.");
        return;
    default:
        showAlert("Internet problem.", "There seemed to be a problem with your internet "
                                       "connection.  You must be online to add a friend.");
        return;
    }
    auto* added = new FRIENDNAME(name.c_str());
    if (!window.app->friendsList->add(added)) delete added; // one there already
    refreshFriendList(window);
    model.at(CID_SHARING_TBOX_addFriend).text.clear();
    window.friendsListChanged = true;
}

void removeFriend(PreferencesWindow& window) {
    if (window.iFriendListItemSelected < 1) return;
    FRIENDLIST* friends = window.app->friendsList;
    std::string name = friendListItemText(friends, window.iFriendListItemSelected);
    // Walkers of the list hold its lock, so once unlinked nobody reaches it.
    delete friends->remove(name.c_str());
    refreshFriendList(window);
    selectFriend(window, -1);
    window.friendsListChanged = true;
}

void seeLocalFriends(PreferencesWindow& window) {
    PreferencesModel& model = window.model;
    model.at(CID_SHARING_BTTN_seeLocalFriends).visible = false;
    model.at(CID_SHARING_LBOX_seeLocalFriends).visible = true;
    model.at(CID_SHARING_TEXT_lboxHeader).visible = true;
    (void)preferencesServices().findNearbyUsers(window.app, &window.sharers);
    window.iLocalListItemSelected = -1;
    refreshNearbyList(window);
}

} // namespace

bool handleControlHit(PreferencesWindow& window, int number) {
    PreferencesModel& model = window.model;
    int partner = radioPartner(number);
    if (partner >= 0) {
        model.controls[partner].value = !model.controls[number].value;
        return true;
    }
    if (number == CID_GENERAL_BTTN_libraryPath.id)
        chooseLibrary(model);
    else if (number == CID_SHARING_CBOX_shareCal.id)
        applySharingEnabled(model);
    else if (number == CID_SHARING_BTTN_addFriend.id)
        addFriend(window);
    else if (number == CID_SHARING_BTTN_removeFriend.id)
        removeFriend(window);
    else if (number == CID_SHARING_BTTN_seeLocalFriends.id)
        seeLocalFriends(window);
    else if (number == CID_EXPORTING_CBOX_exportToiCal.id)
        applyExportEnabled(model, window.app->protectedData.getOSXVersion());
    else if (number == CID_EXPORTING_BTTN_iCalPath.id)
        chooseExportLocation(model);
    else if (number == CID_IPHONE_CBOX_sync.id)
        applyPhoneEnabled(model);
    else if (number == CID_IPHONE_BTTN_getApp.id)
        openPage(serviceAddress("/iphonelink.php").c_str());
    else if (number == CID_IPHONE_BTTN_watchDemo.id)
        openPage(serviceAddress("/iphone.php").c_str());
    else
        return false;
    return true;
}
