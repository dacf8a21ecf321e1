// CalGetData::getURL: the one way the plug-in downloads. It prepares the
// client's settings for each request (every request but the version check
// carries empty User-Agent and Referer lines; the version check identifies
// the release and the user), allows 60 seconds per wait, and records in the
// store whether the internet could be reached.
#include <algorithm>
#include <cstring>
#include <string>

#include "model/fixed_text.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/http_fetch.h"
#include "update/release_version.h"
#include "net/service_config.h"

namespace {

constexpr int kAgentSize = 128;
// Only this much of the version-check address is compared.
constexpr size_t kVersionPrefixCompared = 40;

bool isVersionCheck(const char* url) {
    std::string address = serviceAddress("/current_version");
    size_t compared = std::min(address.size(), kVersionPrefixCompared);
    return strncmp(url, address.c_str(), compared) == 0;
}

} // namespace

int CalGetData::getURL() {
    requestUrl[RequestUrlSize - 1] = '\0';
    requestReferer[RequestUrlSize - 1] = '\0';
    char agent[kAgentSize] = "";
    if (isVersionCheck(requestUrl)) {
        char uuid[ProtectedData::UUIDSize];
        app->protectedData.getUUID(uuid);
        std::string text = "version:" + std::to_string(kVersionMajor) + "." +
                           std::to_string(kVersionMinor) + " uuid:" + uuid;
        copyText(agent, text.c_str()); // cut to 127 characters
    }
    bool failed = http_setUserAgent(agent) == -1;
    failed = http_setReferer(requestReferer) == -1 || failed;
    http_setTimeout(fetchTimeout);
    // Only for this fetch: the client never points at an engine that is gone.
    http_setCancel(&fetchCancel);
    char* page = nullptr;
    int length = http_fetch(requestUrl, &page);
    http_setCancel(nullptr);
    if (length != -1) fetchBuffer.adopt(page, static_cast<size_t>(length));
    if (failed || length == -1) {
        http_perror("http_fetch");
        app->protectedData.setValid_internet_connection(false);
        return -1;
    }
    if (strcmp(requestUrl, serviceAddress("/current_version.html").c_str()) != 0) {
        app->protectedData.setValid_internet_connection(true);
    }
    return 0;
}

int CalGetData::fetchPage(const std::string& url) {
    copyText(requestUrl, url.c_str());
    requestReferer[0] = '\0';
    return getURL();
}
