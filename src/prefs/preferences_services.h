// What the preferences window asks of the features beside it: the sharing
// service (name checks, registration, nearby users), the phone exchange and
// the notifier. The plug-in entry installs the real ones at set-up time
// (plugin/app_wiring.cc); until then each answers as if offline, and the
// notifier's script is empty and not run.
//
// Threads: set and called on the main thread only.
#pragma once

#include <string>
#include <vector>

#include "model/sharer.h"

class StagebeaconClass;

struct PreferencesServices {
    // Sharing service: kSharingAccepted, kSharingRefused or kSharingOffline.
    int (*checkUser)(StagebeaconClass* app, const char* name);
    int (*registerSharing)(StagebeaconClass* app);
    // The users of the store's city into *users; false when the download
    // failed (then *users is empty). Takes the internet lock itself.
    bool (*findNearbyUsers)(StagebeaconClass* app, std::vector<SHARER>* users);
    // Phone exchange registration: 0 accepted, 1 the name is taken, 2 the
    // download failed.
    int (*registerPhone)(StagebeaconClass* app);
    // The notifier's registration text for the chosen kinds, and the runner
    // of such texts (0 = run).
    std::string (*notifierScript)(bool concerts, bool albums);
    int (*runScript)(const char* script);
};

// Installs `services` (every member set).
void setPreferencesServices(const PreferencesServices& services);
const PreferencesServices& preferencesServices();
