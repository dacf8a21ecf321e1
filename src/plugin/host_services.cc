#include "plugin/host_services.h"

#include <string>

#include "platform/gtk_backends.h"
#include "platform/headless.h"
#include "export/notify_window.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "prefs/gtk/preferences_window_gtk.h"
#include "prefs/preferences_window.h"

namespace {

// A copy: the host's record need not outlive the init message.
PlayerHostServices services;

void logToHost(const std::string& line) {
    if (services.log) services.log(services.hostData, line.c_str());
}

bool alertAnswerFromHost(AlertButton* answer) {
    int32_t scripted = services.takeAlertAnswer ? services.takeAlertAnswer(services.hostData) : -1;
    if (scripted < 0) return false;
    *answer = scripted == 0 ? AlertButton::Default : AlertButton::Cancel;
    return true;
}

bool fileChoiceFromHost(std::string* path) {
    char chosen[1024] = {};
    int32_t scripted =
        services.takeFileChoice ? services.takeFileChoice(services.hostData, chosen, sizeof chosen)
                                : -1;
    if (scripted < 0) return false;
    *path = scripted == 1 ? chosen : "";
    return true;
}

const HeadlessAnswerSource kHostAnswers = {alertAnswerFromHost, fileChoiceFromHost};

int32_t updatesRunning() {
    return Stagebeacon && Stagebeacon->calGetData.updateRunning() ? 1 : 0;
}

// "refresh" (the app's Refresh now: a full update at once) and the script
// verbs of the preferences window (set, press, select-tab...).
int32_t scriptCommand(const char* verb, const char* arguments, char* error, size_t errorSize) {
    if (std::string(verb) == "refresh" && Stagebeacon) {
        Stagebeacon->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, true);
        return 0;
    }
    if (!preferencesScriptVerb(verb)) return -1;
    std::string reason;
    if (preferencesScriptCommand(verb, arguments ? arguments : "", &reason)) return 0;
    snprintf(error, errorSize, "%s", reason.c_str());
    return -2;
}

} // namespace

void useHostServices(PluginInitMessage* init) {
    services = PlayerHostServices{};
    if (init->services && init->services->recordLength >= sizeof(PlayerHostServices))
        services = *init->services;
    init->backgroundWorkRunning = updatesRunning;
    init->scriptCommand = scriptCommand;

    if (services.log) setHeadlessLogSink(logToHost);
    if (services.headless) {
        // The headless back ends stay; their answers come from the script.
        setHeadlessAnswerSource(&kHostAnswers);
    } else if (gtkDisplayAvailable()) {
        installGtkBackends();
        installGtkNotifyBackends();
        setPreferencesWindowBackend(gtkPreferencesWindowBackend());
    }
}
