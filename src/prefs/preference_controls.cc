#include "prefs/preference_controls.h"

#include <cstring>

#define SB_DEFINE_CONTROL(Tab, Kind, name, signature, number, kind)                                \
    const ControlID CID_##Tab##_##Kind##_##name = {signature, number};
SB_PREFERENCE_CONTROLS(SB_DEFINE_CONTROL)
#undef SB_DEFINE_CONTROL

const ControlID kTabControlID = {"tabs", 128};
const TabList tabList = {6, {129, 130, 131, 132, 133, 134}};

const ControlInfo kPreferenceControls[] = {
#define SB_CONTROL_ROW(Tab, Kind, name, signature, number, kind)                                   \
    {"CID_" #Tab "_" #Kind "_" #name, {signature, number}, ControlKind::kind},
    SB_PREFERENCE_CONTROLS(SB_CONTROL_ROW)
#undef SB_CONTROL_ROW
};

const size_t kPreferenceControlCount = sizeof(kPreferenceControls) / sizeof(kPreferenceControls[0]);

const ControlInfo* findControl(const char* name) {
    for (const ControlInfo& control : kPreferenceControls)
        if (strcmp(control.name, name) == 0) return &control;
    return nullptr;
}

const ControlInfo* findControl(int number) {
    for (const ControlInfo& control : kPreferenceControls)
        if (control.cid.id == number) return &control;
    return nullptr;
}

const char* tabPaneName(int position) {
    static const char* const kNames[] = {"tabs_129", "tabs_130", "tabs_131",
                                         "tabs_132", "tabs_133", "tabs_134"};
    if (position < 1 || position > tabList.count) return nullptr;
    return kNames[position - 1];
}
