// OK in the preferences window. The groups are applied in a fixed order,
// each one storing what changed and adding the update tasks that its change
// needs to a set that starts at 1 ("none"):
//
//   library path and band lists  -> everything (and "scheduling update all")
//   sharing switch or mode       -> shared calendar (0x10)
//   friends list changed         -> friends' shows (0x08)
//   release kinds                -> the format filters (the view filters)
//   export location              -> concerts (0x02), also after a sharing change
//   notifications                -> registration with the notifier
//   phone account or switch      -> phone sync (0x20) when on
//
// Bits are or-ed in, so a set that already asks for everything stays so.
// A set still at 1 when OK is done starts no update.
//
// A group whose input fails validation, or whose registration the service
// refuses, shows an alert and ends OK there with the window open; groups
// before it keep what they stored. A refused group leaves the store as it
// was: validation comes before it stores anything, and a refused
// registration puts the old account names back (the registration reads them
// from the store). Its switches are stored only once it went through, so
// the next OK still counts their change.
#include <cstdio>
#include <cstring>

#include "library/file_io.h"
#include "library/settings_save.h"
#include "library/support_files.h"
#include "platform/home_folder.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "prefs/preferences_services.h"
#include "prefs/preferences_window_internal.h"

namespace {

// A box's text as the store would keep it in a field of `size` bytes.
std::string fitted(const std::string& text, int size) {
    return text.substr(0, static_cast<size_t>(size) - 1);
}

bool lettersAndDigits(const std::string& text) {
    for (char c : text)
        if (!asciiLetterOrDigit(c)) return false;
    return true;
}

class OkRun {
  public:
    explicit OkRun(PreferencesWindow& window)
        : window(window), model(window.model), store(window.app->protectedData) {}

    void run() {
        applyLibrary();
        if (!applySharing()) return;
        if (sharingChanged) addTasks(CalGetData::kTaskShared);
        if (window.friendsListChanged) addTasks(CalGetData::kTaskFriends);
        applyReleaseKinds();
        applyExporting();
        applyNotifications();
        if (!applyPhone()) return;
        window.open = false;
        save();
        if (tasks != CalGetData::kTaskNone) window.requestUpdate(window.app, tasks);
    }

  private:
    void save() { window.app->calGetData.genPref(); }
    // Each change saves the preferences as it is counted.
    void addTasks(unsigned long bits) {
        save();
        tasks |= bits;
    }

    const std::string& text(const ControlID& cid) { return model.at(cid).text; }
    bool on(const ControlID& cid) { return model.at(cid).value; }

    // A band list box whose text changed since opening is written to its
    // file, one name per line.
    static bool writeBandList(const std::string& shown, const std::string& saved,
                              const char* path) {
        if (shown == saved) return false;
        std::string lines = shown;
        for (char& c : lines)
            if (c == '\r') c = '\n';
        (void)saveSettingsFile(path, lines, kSettingsFileMode); // a failure is said once
        return true;
    }

    void applyLibrary() {
        char stored[ProtectedData::iTunes_xml_pathSize];
        store.getiTunes_xml_path(stored);
        std::string path = fitted(text(CID_GENERAL_TBOX_libraryPath), sizeof stored);
        bool changed = path != stored;
        if (changed) store.setiTunes_xml_path(path.c_str());

        char file[ProtectedData::StagebeaconIncludeBandsListSize];
        store.getStagebeaconIncludeBandsList(file);
        changed |=
            writeBandList(text(CID_GENERAL_TBOX_includeArtists), window.fullListIncludeSaved, file);
        store.getStagebeaconExcludeBandsList(file);
        changed |=
            writeBandList(text(CID_GENERAL_TBOX_excludeArtists), window.fullListExcludeSaved, file);
        if (!changed) return;
        save();
        printf("scheduling update all\n");
        fflush(stdout);
        tasks = CalGetData::kTaskAll;
    }

    bool validSharingNames(const std::string& user, const std::string& first,
                           const std::string& last) {
        if (user.empty()) {
            showAlert("Empty username.", "Please enter a username.");
            return false;
        }
        const char* complaint = nullptr;
        if (!lettersDigitsSpaces(user))
            complaint = "You can only use letters, numbers, and spaces in you username.";
        else if (!lettersDigitsSpaces(first))
            complaint = "You can only use letters, numbers, and spaces in the first name.";
        else if (!lettersDigitsSpaces(last))
            complaint = "You can only use letters, numbers, and spaces in the last name.";
        if (complaint) showAlert("Illegal characters.", complaint);
        return !complaint;
    }

    // The store's account names, kept so that a refused registration can
    // put them back.
    struct Names {
        char user[ProtectedData::UsernameSize];
        char first[ProtectedData::FirstnameSize];
        char last[ProtectedData::LastnameSize];
        char password[ProtectedData::PasswordSize];
        explicit Names(ProtectedData& store) {
            store.getUsername(user);
            store.getFirstname(first);
            store.getLastname(last);
            store.getPassword(password);
        }
        void restore(ProtectedData& store) const {
            store.setUsername(user);
            store.setFirstname(first);
            store.setLastname(last);
            store.setPassword(password);
        }
    };

    // Registers the names just stored; on refusal puts the old ones back
    // and shows why.
    bool registerSharing(const Names& old) {
        int answer = preferencesServices().registerSharing(window.app);
        if (answer == kSharingAccepted) return true;
        old.restore(store);
        if (answer == kSharingRefused)
            showAlert("Username already taken.",
                      "Sorry, that username is already taken.  Please try a different username.");
        else
            showAlert("Internet Problem.", "Internet Connection Problem... You must be online to "
                                           "create a new username.");
        return false;
    }

    bool applySharing() {
        bool sharing = on(CID_SHARING_CBOX_shareCal);
        bool shareAll = on(CID_SHARING_RBTN_shareAll);
        std::string user = fitted(text(CID_SHARING_TBOX_userName), ProtectedData::UsernameSize);
        std::string first = fitted(text(CID_SHARING_TBOX_firstName), ProtectedData::FirstnameSize);
        std::string last = fitted(text(CID_SHARING_TBOX_lastName), ProtectedData::LastnameSize);
        Names old(store);
        bool namesChanged = sharing && (user != old.user || first != old.first || last != old.last);
        if (namesChanged) {
            if (!validSharingNames(user, first, last)) return false;
            store.setUsername(user.c_str());
            store.setFirstname(first.c_str());
            store.setLastname(last.c_str());
            if (!registerSharing(old)) return false;
        }
        sharingChanged = sharing != store.getSharing() || shareAll != store.getShareAllShows();
        store.setSharing(sharing);
        store.setShareAllShows(shareAll);
        return true;
    }

    void applyReleaseKinds() {
        for (const ReleaseKind& release : kReleaseKinds) {
            bool shown = on(*release.box);
            bool filtered = store.isFilterOn(release.kind);
            if (shown && filtered) store.removeFormatFilter(release.kind);
            if (!shown && !filtered) store.addFormatFilter(release.kind);
        }
    }

    void applyExporting() {
        store.setExportTo_iCal(on(CID_EXPORTING_CBOX_exportToiCal));
        store.setExportAllShows(on(CID_EXPORTING_RBTN_exportAll));
        char stored[ProtectedData::iCalLocSize];
        store.getiCalLoc(stored);
        std::string path = fitted(text(CID_EXPORTING_TBOX_iCalPath), sizeof stored);
        if (path != stored) {
            store.setiCalLoc(path.c_str());
            tasks |= CalGetData::kTaskConcerts;
        } else if (sharingChanged) {
            tasks |= CalGetData::kTaskConcerts;
        }
    }

    void applyNotifications() {
        bool concerts = on(CID_NOTIFICATIONS_CBOX_concerts);
        bool albums = on(CID_NOTIFICATIONS_CBOX_albums);
        bool notifier = on(CID_NOTIFICATIONS_RBTN_growlWindow);
        store.setNotifyConcerts(concerts);
        store.setNotifyAlbums(albums);
        store.setNotificationWindowStyle(notifier);
        if (notifier) runGrowlRegistration(preferencesServices().notifierScript(concerts, albums));
    }

    bool validPhoneAccount(const std::string& user, const std::string& password) {
        const char* title = "Illegal characters.";
        const char* complaint = nullptr;
        if (user.empty()) {
            title = "Empty username.";
            complaint = "Please enter a username.";
        } else if (!lettersDigitsSpaces(user)) {
            complaint = "You can only use letters, numbers, and spaces in you username.";
        } else if (password.empty()) {
            title = "Empty password.";
            complaint = "Please enter a password.";
        } else if (!lettersAndDigits(password)) {
            complaint = "You can only use letters and numbers in your password.";
        }
        if (complaint) showAlert(title, complaint);
        return !complaint;
    }

    // The password file as the dialog writes it: 64 bytes, the password and
    // zeros, at the path with the backslash (see support_files.h).
    static void writePasswordFile(const std::string& password) {
        char buffer[kPasswordFileSize] = {};
        strncpy(buffer, password.c_str(), sizeof buffer - 1);
        (void)replaceFile(dialogPasswordPath(homeFolder()).c_str(), buffer, sizeof buffer,
                          kSecretFileMode);
    }

    // Registers the account just stored; on refusal puts the old one back
    // and shows why.
    bool registerPhone(const Names& old) {
        int answer = preferencesServices().registerPhone(window.app);
        if (answer == 0) return true;
        old.restore(store);
        if (answer == 1)
            showAlert("Username already taken.",
                      "Sorry, that username is already taken.  Please try a different username.");
        else
            showAlert("Internet Problem.", "Internet Connection Problem... You must be online to "
                                           "create a new username and password.");
        return false;
    }

    bool applyPhone() {
        bool sync = on(CID_IPHONE_CBOX_sync);
        // Compared with the name the window opened with, so that a sharing
        // name stored above is not undone by the phone box's old copy.
        window.currentUsername =
            fitted(text(CID_IPHONE_TBOX_userName), ProtectedData::UsernameSize);
        std::string password = fitted(text(CID_IPHONE_TBOX_password), ProtectedData::PasswordSize);
        Names old(store);
        bool accountChanged =
            sync && (window.currentUsername != window.initialUsername || password != old.password);
        if (accountChanged) {
            printf("username or password changed\n");
            fflush(stdout);
            if (!validPhoneAccount(window.currentUsername, password)) return false;
            store.setUsername(window.currentUsername.c_str());
            store.setPassword(password.c_str());
            writePasswordFile(password);
            if (!registerPhone(old)) return false;
        }
        bool syncChanged = sync != store.getiPhoneSync();
        store.setiPhoneSync(sync);
        if (accountChanged || syncChanged) {
            save();
            if (sync) tasks |= CalGetData::kTaskiPhone;
        }
        return true;
    }

    PreferencesWindow& window;
    PreferencesModel& model;
    ProtectedData& store;
    unsigned long tasks = CalGetData::kTaskNone;
    bool sharingChanged = false;
};

} // namespace

void preferencesOk(PreferencesWindow& window) {
    OkRun(window).run();
}
