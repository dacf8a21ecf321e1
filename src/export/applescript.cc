// The script runner: notification scripts go to the desktop notification
// service; nothing else runs (see applescript.h).
#include "export/applescript.h"

#include <cstring>

#include "export/growl_notify.h"
#include "platform/desktop_notifier.h"
#include "platform/resources_folder.h"

namespace {

// The description's "\r"-ended lines as the body's "\n"-separated lines.
std::string bodyOf(const std::string& description) {
    std::string body = description;
    if (!body.empty() && body.back() == '\r') body.pop_back();
    for (char& c : body)
        if (c == '\r') c = '\n';
    return body;
}

// The image named by the script, looked up in our resources folder: the
// script names the notifier's bundle path, of which only the file counts.
std::string iconPathOf(const std::string& location) {
    size_t slash = location.rfind('/');
    std::string file = slash == std::string::npos ? location : location.substr(slash + 1);
    return file.empty() ? std::string() : resourcePath(file.c_str());
}

void report(std::string* resultData, const char* text) {
    if (resultData) *resultData = text;
}

} // namespace

int LowRunAppleScript(const void* text, long textLength, std::string* resultData) {
    if (!text || textLength <= 0) {
        report(resultData, "empty script");
        return kScriptNotRun;
    }
    std::string script(static_cast<const char*>(text), static_cast<size_t>(textLength));
    GrowlNotifyFields fields;
    if (!parseGrowlNotifyScript(script, &fields)) {
        report(resultData, "not run: only notification scripts run on this system");
        return kScriptNotRun;
    }
    DesktopNotification notification;
    notification.appName = fields.appName;
    notification.title = fields.title;
    notification.body = bodyOf(fields.description);
    notification.iconPath = iconPathOf(fields.imageLocation);
    if (!showDesktopNotification(notification)) {
        report(resultData, "the desktop notification service cannot be reached");
        return kScriptNotDelivered;
    }
    report(resultData, "");
    return 0;
}

int SimpleRunAppleScript(const char* text) {
    return LowRunAppleScript(text, text ? static_cast<long>(strlen(text)) : 0, nullptr);
}
