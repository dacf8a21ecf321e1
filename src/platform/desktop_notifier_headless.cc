// Notifications without a desktop: one line in the headless log, the body's
// lines separated like the title.
#include <atomic>
#include <string>

#include "platform/desktop_notifier.h"
#include "platform/headless.h"

namespace {
std::atomic<DesktopNotifierBackend> chosenBackend{nullptr};
} // namespace

void setDesktopNotifierBackend(DesktopNotifierBackend backend) {
    chosenBackend.store(backend);
}

bool showDesktopNotification(const DesktopNotification& notification) {
    DesktopNotifierBackend backend = chosenBackend.load();
    return backend ? backend(notification) : showDesktopNotificationHeadless(notification);
}

bool showDesktopNotificationHeadless(const DesktopNotification& notification) {
    std::string line = "notify: " + notification.title;
    size_t start = 0;
    while (start <= notification.body.size() && !notification.body.empty()) {
        size_t end = notification.body.find('\n', start);
        if (end == std::string::npos) end = notification.body.size();
        line += " | " + notification.body.substr(start, end - start);
        start = end + 1;
    }
    headlessLog(line);
    return true;
}
