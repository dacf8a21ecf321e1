// The notification script: the AppleScript text that asks the notifier to
// show one upcoming concert or release. Built here, whole and exact, and
// read back by the script runner (export/applescript.h), which on this
// platform hands the request to the desktop notification service instead of
// running it.
//
// Threads: plain functions.
#pragma once

#include <cstddef>
#include <string>

constexpr size_t kGrowlScriptSize = 4096;
// Where the notifier looks for the icons, as the script names them; only the
// file name after the last "/" matters to the runner here.
constexpr const char* kGrowlIconFolder =
    "~/Library/iTunes/iTunes Plug-ins/Stagebeacon.bundle/Contents/Resources/";

struct GrowlNotifyFields {
    std::string name;        // "Upcoming Concert" or "Upcoming Album Release"
    std::string title;       // the same as the name when we build it
    std::string description; // three "label value" lines, each ended by "\r"
    std::string appName;     // "Stagebeacon"
    std::string imageLocation;
};

// Writes the script into `script` (kGrowlScriptSize bytes, truncated and
// always terminated). `name` is both the notification name and the title;
// `iconFile` the image's file name ("Stagebeacon_icon_blue.png"). The texts
// go in unescaped.
void buildGrowlNotifyScript(char* script, const char* name, const char* label1, const char* value1,
                            const char* label2, const char* value2, const char* label3,
                            const char* value3, const char* iconFile);

// True when `script` has the exact shape buildGrowlNotifyScript produces,
// with its fields in `fields`. A double quote inside the description is
// taken as part of it.
[[nodiscard]] bool parseGrowlNotifyScript(const std::string& script, GrowlNotifyFields* fields);
