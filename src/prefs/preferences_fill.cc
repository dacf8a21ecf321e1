// Filling a new preferences window from the store, the band list files and
// the friends list, and the rules that enable controls by other controls.
#include <string_view>

#include "library/file_io.h"
#include "model/stagebeacon_class.h"
#include "prefs/preferences_window_internal.h"

const ReleaseKind kReleaseKinds[9] = {
    {&CID_RELEASES_CBOX_imports, "Import"},
    {&CID_RELEASES_CBOX_extraTracks, "Extra tracks"},
    {&CID_RELEASES_CBOX_singles, "CD-single"},
    {&CID_RELEASES_CBOX_eps, "EP"},
    {&CID_RELEASES_CBOX_remastered, "Original recording remastered"},
    {&CID_RELEASES_CBOX_limitedEditions, "Limited Edition"},
    {&CID_RELEASES_CBOX_soundtracks, "Soundtrack"},
    {&CID_RELEASES_CBOX_live, "Live"},
    {&CID_RELEASES_CBOX_nonActive, "Non-Active Artist"},
};

std::string readBandList(const char* path) {
    std::string joined;
    LineReader reader(path);
    std::string_view line;
    while (reader.isOpen() && reader.next(&line)) {
        if (line.empty()) continue;
        if (!joined.empty()) joined += '\r';
        joined.append(line);
    }
    return joined;
}

void applySharingEnabled(PreferencesModel& model) {
    bool on = model.at(CID_SHARING_CBOX_shareCal).value;
    for (const ControlID* cid :
         {&CID_SHARING_TBOX_userName, &CID_SHARING_TBOX_firstName, &CID_SHARING_TBOX_lastName,
          &CID_SHARING_RBTN_shareHighlighted, &CID_SHARING_RBTN_shareAll})
        model.at(*cid).enabled = on;
}

void applyExportEnabled(PreferencesModel& model, float osVersion) {
    bool on = model.at(CID_EXPORTING_CBOX_exportToiCal).value;
    // From 10.5 on the export goes to the calendar store, which has no path.
    bool pathChoosable = on && osVersion >= 10.0f && osVersion < 10.5f;
    model.at(CID_EXPORTING_TBOX_iCalPath).enabled = pathChoosable;
    model.at(CID_EXPORTING_BTTN_iCalPath).enabled = pathChoosable;
    model.at(CID_EXPORTING_RBTN_exportHighlighted).enabled = on;
    model.at(CID_EXPORTING_RBTN_exportAll).enabled = on;
}

void applyPhoneEnabled(PreferencesModel& model) {
    bool on = model.at(CID_IPHONE_CBOX_sync).value;
    model.at(CID_IPHONE_TBOX_userName).enabled = on;
    model.at(CID_IPHONE_TBOX_password).enabled = on;
}

namespace {

void setPair(PreferencesModel& model, const ControlID& first, const ControlID& second,
             bool secondOn) {
    model.at(first).value = !secondOn;
    model.at(second).value = secondOn;
}

void fillGeneral(PreferencesWindow& window, ProtectedData& store) {
    char text[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(text);
    window.model.at(CID_GENERAL_TBOX_libraryPath).text = text;
    store.getStagebeaconIncludeBandsList(text);
    window.fullListIncludeSaved = readBandList(text);
    store.getStagebeaconExcludeBandsList(text);
    window.fullListExcludeSaved = readBandList(text);
    window.model.at(CID_GENERAL_TBOX_includeArtists).text = window.fullListIncludeSaved;
    window.model.at(CID_GENERAL_TBOX_excludeArtists).text = window.fullListExcludeSaved;
}

void fillSharing(PreferencesWindow& window, ProtectedData& store) {
    PreferencesModel& model = window.model;
    char text[ProtectedData::FirstnameSize];
    model.at(CID_SHARING_CBOX_shareCal).value = store.getSharing();
    store.getUsername(text);
    model.at(CID_SHARING_TBOX_userName).text = text;
    window.initialUsername = text;
    store.getFirstname(text);
    model.at(CID_SHARING_TBOX_firstName).text = text;
    store.getLastname(text);
    model.at(CID_SHARING_TBOX_lastName).text = text;
    setPair(model, CID_SHARING_RBTN_shareHighlighted, CID_SHARING_RBTN_shareAll,
            store.getShareAllShows());
    applySharingEnabled(model);
    refreshFriendList(window);
    model.at(CID_SHARING_BTTN_removeFriend).enabled = false;
    model.at(CID_SHARING_LBOX_seeLocalFriends).visible = false;
    model.at(CID_SHARING_TEXT_lboxHeader).visible = false;
}

void fillExporting(PreferencesModel& model, ProtectedData& store) {
    char text[ProtectedData::iCalLocSize];
    model.at(CID_EXPORTING_CBOX_exportToiCal).value = store.getExportTo_iCal();
    setPair(model, CID_EXPORTING_RBTN_exportHighlighted, CID_EXPORTING_RBTN_exportAll,
            store.getExportAllShows());
    store.getiCalLoc(text);
    model.at(CID_EXPORTING_TBOX_iCalPath).text = text;
    applyExportEnabled(model, store.getOSXVersion());
}

void fillPhone(PreferencesModel& model, ProtectedData& store) {
    char text[ProtectedData::PasswordSize];
    model.at(CID_IPHONE_CBOX_sync).value = store.getiPhoneSync();
    store.getUsername(text);
    model.at(CID_IPHONE_TBOX_userName).text = text;
    store.getPassword(text);
    model.at(CID_IPHONE_TBOX_password).text = text;
    applyPhoneEnabled(model);
}

} // namespace

void fillPreferences(PreferencesWindow& window) {
    PreferencesModel& model = window.model;
    ProtectedData& store = window.app->protectedData;
    for (size_t i = 0; i < kPreferenceControlCount; ++i)
        model.controls[kPreferenceControls[i].cid.id] = ControlState{};

    fillGeneral(window, store);
    fillSharing(window, store);
    for (const ReleaseKind& release : kReleaseKinds)
        model.at(*release.box).value = !store.isFilterOn(release.kind);
    fillExporting(model, store);
    model.at(CID_NOTIFICATIONS_CBOX_concerts).value = store.getNotifyConcerts();
    model.at(CID_NOTIFICATIONS_CBOX_albums).value = store.getNotifyAlbums();
    setPair(model, CID_NOTIFICATIONS_RBTN_defaultWindow, CID_NOTIFICATIONS_RBTN_growlWindow,
            store.getNotificationWindowStyle());
    fillPhone(model, store);
}
