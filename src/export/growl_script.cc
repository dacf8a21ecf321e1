#include "export/growl_script.h"

namespace {

// The enabled list by the two notify settings: [concerts][albums].
constexpr const char* kEnabledLists[2][2] = {
    {"{}", "{\"Upcoming Album Release\"}"},
    {"{\"Upcoming Concert\"}", "{\"Upcoming Concert\", \"Upcoming Album Release\"}"},
};

} // namespace

std::string growlRegistrationScript(bool notifyConcerts, bool notifyAlbums) {
    std::string script;
    script += "tell application \"System Events\"\n";
    script += "\tset bGrowlIsRunning to (count of (every process whose name is "
              "\"GrowlHelperApp\")) > 0\n";
    script += "\tif bGrowlIsRunning is true then\n";
    script += "\t\ttell application \"GrowlHelperApp\"\n";
    script += "\t\t\tset the allNotificationsList to \t\t\t{\"Upcoming Concert\", \"Upcoming Album "
              "Release\"}\n";
    script += "\t\t\tset the enabledNotificationsList to \t\t\t";
    script += kEnabledLists[notifyConcerts ? 1 : 0][notifyAlbums ? 1 : 0];
    script += "\n";
    script += "\t\t\tregister as application \"Stagebeacon\" ";
    script += "\t\t\tall notifications allNotificationsList ";
    script += "\t\t\tdefault notifications enabledNotificationsList ";
    script += "\t\t\ticon of application \"Stagebeacon_Installer.app\"\n";
    script += "\t\tend tell\n";
    script += "\tend if\n";
    script += "end tell";
    return script;
}

std::string preferencesGrowlScript(bool notifyConcerts, bool notifyAlbums) {
    // The window's text differs from start-up's in one place: a blank
    // before the comma of the list of all notifications.
    std::string script = growlRegistrationScript(notifyConcerts, notifyAlbums);
    const std::string all =
        std::string("{\"") + kConcertNotificationName + "\", \"" + kReleaseNotificationName + "\"}";
    const std::string spaced = std::string("{\"") + kConcertNotificationName + "\" , \"" +
                               kReleaseNotificationName + "\"}";
    size_t at = script.find(all);
    if (at != std::string::npos) script.replace(at, all.size(), spaced);
    return script;
}
