// The player's script verbs for the preferences window, so that a headless
// run can fill it in and press its buttons as a user would:
//
//   set CID_SHARING_TBOX_userName "Jane Doe"   text box: the text
//   set CID_SHARING_CBOX_shareCal 1            check box or radio button:
//                                              1/0 or true/false (a change
//                                              is a click)
//   press CID_MAIN_BTTN_ok                     a click on a button, check
//                                              box or radio button
//   select CID_SHARING_LBOX_friendList 2       a list row as shown (0: none)
//   select-tab 3                               a tab, 1 to 6
//
// A quoted value may hold \" \\ \n \r and \t. Disabled or hidden controls
// refuse, as they would refuse a click.
#include <cstdlib>

#include "prefs/preferences_window_internal.h"

namespace {

std::string trimmed(const std::string& text) {
    size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) return std::string();
    size_t end = text.find_last_not_of(" \t");
    return text.substr(begin, end - begin + 1);
}

// A quoted value with its escapes, or the text as it stands.
bool parseValue(const std::string& text, std::string* value, std::string* error) {
    if (text.empty() || text[0] != '"') {
        *value = text;
        return true;
    }
    value->clear();
    for (size_t i = 1; i < text.size(); ++i) {
        char c = text[i];
        if (c == '"') {
            if (i + 1 == text.size()) return true;
            *error = "text after the closing quote";
            return false;
        }
        if (c == '\\' && i + 1 < text.size()) {
            char next = text[++i];
            c = next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : next;
        }
        value->push_back(c);
    }
    *error = "missing closing quote";
    return false;
}

bool parseNumber(const std::string& text, int* number) {
    if (text.empty()) return false;
    char* end = nullptr;
    long value = strtol(text.c_str(), &end, 10);
    if (*end != '\0' || value < -1000000 || value > 1000000) return false;
    *number = static_cast<int>(value);
    return true;
}

// The control named by the first word of `arguments`; the rest in *rest.
const ControlInfo* namedControl(const std::string& arguments, std::string* rest,
                                std::string* error) {
    std::string text = trimmed(arguments);
    size_t space = text.find_first_of(" \t");
    std::string name = text.substr(0, space);
    *rest = space == std::string::npos ? "" : trimmed(text.substr(space));
    const ControlInfo* control = findControl(name.c_str());
    if (!control) *error = "unknown control '" + name + "'";
    return control;
}

bool usable(const ControlInfo& control, std::string* error) {
    const ControlState& state = openPreferencesWindow()->model.at(control.cid);
    if (state.enabled && state.visible) return true;
    *error = std::string(control.name) + (state.visible ? " is disabled" : " is hidden");
    return false;
}

struct TextEdit {
    int number;
    std::string text;
};

void setText(PreferencesWindow& window, void* data) {
    auto* edit = static_cast<TextEdit*>(data);
    window.model.controls[edit->number].text = edit->text;
}

void setValue(PreferencesWindow& window, void* data) {
    auto* edit = static_cast<TextEdit*>(data);
    window.model.controls[edit->number].value = edit->text == "1";
}

bool parseOnOff(const std::string& text, bool* on) {
    if (text == "1" || text == "true")
        *on = true;
    else if (text == "0" || text == "false")
        *on = false;
    else
        return false;
    return true;
}

// Sets a check box or radio button as a click would leave it, then runs
// the click.
bool click(const ControlInfo& control, bool on) {
    TextEdit edit{control.cid.id, on ? "1" : "0"};
    preferencesEdit(setValue, &edit);
    return PreferencesControlHandler(control.cid.id);
}

bool setCommand(const std::string& arguments, std::string* error) {
    std::string rest, value;
    const ControlInfo* control = namedControl(arguments, &rest, error);
    if (!control || !usable(*control, error) || !parseValue(rest, &value, error)) return false;
    switch (control->kind) {
    case ControlKind::TextBox: {
        TextEdit edit{control->cid.id, value};
        preferencesEdit(setText, &edit);
        return true;
    }
    case ControlKind::CheckBox:
    case ControlKind::RadioButton: {
        bool on = false;
        if (!parseOnOff(value, &on)) {
            *error = "expected 1, 0, true or false, not '" + value + "'";
            return false;
        }
        if (openPreferencesWindow()->model.at(control->cid).value == on) return true;
        return click(*control, on);
    }
    default:
        *error = std::string(control->name) + " takes no value";
        return false;
    }
}

bool pressCommand(const std::string& arguments, std::string* error) {
    std::string rest;
    const ControlInfo* control = namedControl(arguments, &rest, error);
    if (!control || !usable(*control, error)) return false;
    bool value = openPreferencesWindow()->model.at(control->cid).value;
    switch (control->kind) {
    case ControlKind::Button:
        return PreferencesControlHandler(control->cid.id);
    case ControlKind::CheckBox:
        return click(*control, !value);
    case ControlKind::RadioButton:
        return click(*control, true);
    default:
        *error = std::string(control->name) + " cannot be pressed";
        return false;
    }
}

bool selectCommand(const std::string& arguments, std::string* error) {
    std::string rest;
    const ControlInfo* control = namedControl(arguments, &rest, error);
    if (!control || !usable(*control, error)) return false;
    if (control->kind != ControlKind::ListBox) {
        *error = std::string(control->name) + " is not a list";
        return false;
    }
    const PreferencesModel& model = openPreferencesWindow()->model;
    const std::vector<ListRow>& rows =
        control->cid.id == CID_SHARING_LBOX_friendList.id ? model.friendRows : model.nearbyRows;
    int row = 0; // counted as shown, from 1
    if (!parseNumber(rest, &row) || row < 0 || static_cast<size_t>(row) > rows.size()) {
        *error = "no row '" + rest + "' in " + control->name;
        return false;
    }
    preferencesRowSelected(control->cid.id, row == 0 ? 0 : rows[row - 1].item);
    return true;
}

} // namespace

bool preferencesScriptVerb(const std::string& verb) {
    return verb == "set" || verb == "press" || verb == "select" || verb == "select-tab";
}

bool preferencesScriptCommand(const std::string& verb, const std::string& arguments,
                              std::string* error) {
    if (!preferencesScriptVerb(verb)) {
        *error = "unknown command '" + verb + "'";
        return false;
    }
    if (!openPreferencesWindow()) {
        *error = "no preferences window is open";
        return false;
    }
    if (verb == "set") return setCommand(arguments, error);
    if (verb == "press") return pressCommand(arguments, error);
    if (verb == "select") return selectCommand(arguments, error);
    int tab = 0;
    if (!parseNumber(trimmed(arguments), &tab) || tab < 1 || tab > tabList.count) {
        *error = "no tab '" + trimmed(arguments) + "'";
        return false;
    }
    preferencesTabSwitched(tab);
    return true;
}
