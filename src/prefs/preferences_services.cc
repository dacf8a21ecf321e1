#include "prefs/preferences_services.h"

namespace {

int offlineAnswer(StagebeaconClass*) { return kSharingOffline; }
int offlineCheck(StagebeaconClass*, const char*) { return kSharingOffline; }
bool noNearbyUsers(StagebeaconClass*, std::vector<SHARER>* users) {
    users->clear();
    return false;
}
std::string noScript(bool, bool) { return std::string(); }
int notRun(const char*) { return -1; }

PreferencesServices installed = {offlineCheck, offlineAnswer, noNearbyUsers,
                                 offlineAnswer, noScript,     notRun};

} // namespace

void setPreferencesServices(const PreferencesServices& services) {
    installed = services;
}

const PreferencesServices& preferencesServices() {
    return installed;
}
