#include "plugin/host_services.h"

#include <string>

#include "platform/file_dialog.h"
#include "platform/gtk_backends.h"
#include "platform/headless.h"
#include "platform/notify_window.h"
#include "plugin/stagebeacon_class.h"
#include "prefs/preferences_window.h"

namespace {

// A copy: the host's record need not outlive the init message.
PlayerHostServices services;

void logToHost(const std::string& line) {
    if (services.log) services.log(services.hostData, line.c_str());
}

AlertButton alertAnsweredByHost(const AlertRequest& request) {
    int32_t answer = services.takeAlertAnswer ? services.takeAlertAnswer(services.hostData) : -1;
    if (answer >= 0) scriptAlertAnswer(answer == 0 ? AlertButton::Default : AlertButton::Cancel);
    return runHeadlessAlert(request);
}

bool fileChosenByHost(const FileOpenRequest& request, std::string* chosen) {
    char path[1024] = {};
    int32_t answer =
        services.takeFileChoice ? services.takeFileChoice(services.hostData, path, sizeof path) : -1;
    if (answer == 0) scriptFileCancel();
    if (answer == 1) scriptFileChoice(path);
    return chooseFileToOpenHeadless(request, chosen);
}

int32_t updatesRunning() {
    return Stagebeacon && Stagebeacon->calGetData.updateRunning() ? 1 : 0;
}

// The script verbs of the preferences window (set, press, select-tab...).
int32_t scriptCommand(const char* verb, const char* arguments, char* error, size_t errorSize) {
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
        setAlertBackend(alertAnsweredByHost);
        setFileDialogBackend(fileChosenByHost);
    } else if (gtkDisplayAvailable()) {
        installGtkBackends();
        installGtkNotifyBackends();
    }
}
