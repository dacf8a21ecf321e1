// Alerts without a display: logged, answered from the script.
#include "platform/alert.h"

#include <atomic>

#include "platform/headless.h"

namespace {
std::atomic<AlertBackend> chosenBackend{nullptr};
} // namespace

void setAlertBackend(AlertBackend backend) { chosenBackend.store(backend); }

AlertButton runAlert(const AlertRequest& request) {
    AlertBackend backend = chosenBackend.load();
    return backend ? backend(request) : runHeadlessAlert(request);
}

AlertButton runHeadlessAlert(const AlertRequest& request) {
    // A scripted answer is used up even by an alert that offers no choice.
    AlertButton answer = AlertButton::Default;
    AlertButton scripted = AlertButton::Default;
    if (takeScriptedAlertAnswer(&scripted) && !request.cancelButton.empty()) answer = scripted;
    headlessLog("alert: " + request.title + " | " + request.text + " | " +
                (answer == AlertButton::Default ? request.defaultButton : request.cancelButton));
    return answer;
}
