// CalGetData::checkForVersionUpdate: once per start, when due, the service
// says whether this release is the newest ("<current>") or, if not, may give
// a message for the user between "<message>" and "</message>". A newer
// release with a message is offered in an alert whose "Download" opens the
// service's download page. The check runs on the update thread; the alert
// waits for the main thread.
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/alert.h"
#include "platform/main_thread.h"
#include "platform/page_opener.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/release_version.h"
#include "net/service_config.h"

namespace {

constexpr const char* kCurrentTag = "<current>";
constexpr const char* kMessageOpen = "<message>";
constexpr const char* kMessageClose = "</message>";
constexpr const char* kDownloadPage = "/download/download_mac_redirect.php";

// The text after the first "<message>" up to the "</message>" after it, or
// to the end of the page when none follows.
std::string messageOf(const char* page) {
    const char* open = strstr(page, kMessageOpen);
    if (!open) return std::string();
    open += strlen(kMessageOpen);
    const char* close = strstr(open, kMessageClose);
    return close ? std::string(open, static_cast<size_t>(close - open)) : std::string(open);
}

} // namespace

void CalGetData::checkForVersionUpdate() { (void)versionCheck(); }

int CalGetData::versionCheck() {
    ProtectedData& store = app->protectedData;
    char path[64];
    snprintf(path, sizeof path, "/current_version.php?VERSION=%d.%d&OS=MAC", kVersionMajor,
             kVersionMinor);

    lockInternet();
    if (fetchPage(serviceAddress(path)) != 0) {
        unlockInternet(); // no connection: the flag keeps its value
        return -1;
    }
    const char* page = fetchBuffer.get();
    if (strstr(page, kCurrentTag)) {
        store.setStagebeacon_version_update(false);
    } else {
        store.setStagebeacon_version_update(true);
        store.setUpdateMessage(messageOf(page).c_str()); // the store keeps 511 characters
    }
    unlockInternet();

    char message[ProtectedData::UpdateMessageSize];
    store.getUpdateMessage(message);
    if (!store.getStagebeacon_version_update() || !*message) return 0;
    // The settings are saved here and now: what they hold does not depend
    // on the answer, and the alert may wait long for the user.
    genPref();
    AlertRequest alert{"New Stagebeacon Version Available", message, "Download", "Cancel"};
    std::string download = serviceAddress(kDownloadPage);
    runOnMainThread([alert, download] {
        if (runAlert(alert) == AlertButton::Default) openPage(download.c_str());
    });
    return 0;
}
