// The notification script, written and read back. The reader is anchored on
// the fixed pieces of the writer, front and back, so that a quote inside an
// artist or venue (which the text does not escape) stays in the description
// instead of ending it.
#include "export/growl_notify.h"

#include <cstdio>

namespace {

constexpr const char* kHead = "tell application \"System Events\"\n"
                              "\tset bGrowlIsRunning to (count of (every process whose name is "
                              "\"GrowlHelperApp\")) > 0\n"
                              "\tif bGrowlIsRunning is true then\n"
                              "tell application \"GrowlHelperApp\"\n"
                              "notify with name \"";
constexpr const char* kTitle = "\" title \"";
constexpr const char* kDescription = "\" description \"";
constexpr const char* kAppName = "\" application name \"";
constexpr const char* kImage = "\" image from location \"";
constexpr const char* kTail = "\"\nend tell\n end if\nend tell";

// Cuts `text` at the first `marker` at or after `from`: the piece before it
// goes to `piece`, and `from` moves past the marker.
bool cutAt(const std::string& text, const char* marker, size_t* from, std::string* piece) {
    size_t at = text.find(marker, *from);
    if (at == std::string::npos) return false;
    *piece = text.substr(*from, at - *from);
    *from = at + std::char_traits<char>::length(marker);
    return true;
}

} // namespace

void buildGrowlNotifyScript(char* script, const char* name, const char* label1, const char* value1,
                            const char* label2, const char* value2, const char* label3,
                            const char* value3, const char* iconFile) {
    snprintf(script, kGrowlScriptSize,
             "%s%s%s%s%s"
             "%s %s\r%s %s\r%s %s\r"
             "%sStagebeacon%s%s%s%s",
             kHead, name, kTitle, name, kDescription, label1, value1, label2, value2, label3,
             value3, kAppName, kImage, kGrowlIconFolder, iconFile, kTail);
}

bool parseGrowlNotifyScript(const std::string& script, GrowlNotifyFields* fields) {
    std::string head(kHead), tail(kTail);
    if (script.size() < head.size() + tail.size()) return false;
    if (script.compare(0, head.size(), head) != 0) return false;
    if (script.compare(script.size() - tail.size(), tail.size(), tail) != 0) return false;
    std::string inner = script.substr(head.size(), script.size() - head.size() - tail.size());

    GrowlNotifyFields parsed;
    size_t from = 0;
    if (!cutAt(inner, kTitle, &from, &parsed.name)) return false;
    if (!cutAt(inner, kDescription, &from, &parsed.title)) return false;
    // The description runs to the last application-name piece.
    size_t appAt = inner.rfind(kAppName);
    if (appAt == std::string::npos || appAt < from) return false;
    parsed.description = inner.substr(from, appAt - from);
    from = appAt + std::char_traits<char>::length(kAppName);
    if (!cutAt(inner, kImage, &from, &parsed.appName)) return false;
    parsed.imageLocation = inner.substr(from);
    if (parsed.imageLocation.find('"') != std::string::npos) return false;
    *fields = parsed;
    return true;
}
