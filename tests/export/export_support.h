// Helpers of the export suites: a calendar read back with libical, an
// environment variable or the working folder set for one scope, and where
// the helper module keeps the concert calendar.
#pragma once

#include <libical/ical.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

struct CalendarEvent {
    std::string summary, location, description, url, uid, start, end;
};

inline std::string textOf(const char* text) {
    return text ? text : "";
}

// "2009-03-05" for a whole-day date; empty for anything else.
inline std::string dayOf(icaltimetype t) {
    char text[16] = "";
    if (t.is_date) snprintf(text, sizeof text, "%04d-%02d-%02d", t.year, t.month, t.day);
    return text;
}

// The events of a calendar text; `*parsed` says whether it was a calendar.
inline std::vector<CalendarEvent> readEvents(const std::string& text, bool* parsed = nullptr) {
    std::vector<CalendarEvent> out;
    icalcomponent* calendar = icalparser_parse_string(text.c_str());
    if (parsed) *parsed = calendar && icalcomponent_isa(calendar) == ICAL_VCALENDAR_COMPONENT;
    if (!calendar) return out;
    for (icalcomponent* e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); e;
         e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
        icalproperty* url = icalcomponent_get_first_property(e, ICAL_URL_PROPERTY);
        out.push_back({textOf(icalcomponent_get_summary(e)), textOf(icalcomponent_get_location(e)),
                       textOf(icalcomponent_get_description(e)),
                       url ? textOf(icalproperty_get_url(url)) : "",
                       textOf(icalcomponent_get_uid(e)), dayOf(icalcomponent_get_dtstart(e)),
                       dayOf(icalcomponent_get_dtend(e))});
    }
    icalcomponent_free(calendar);
    return out;
}

// Sets (null: removes) an environment variable until the end of the scope.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const char* value) : name(name) {
        const char* old = getenv(name);
        had = old != nullptr;
        if (had) saved = old;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedVariable() { had ? setenv(name.c_str(), saved.c_str(), 1) : unsetenv(name.c_str()); }

  private:
    std::string name, saved;
    bool had;
};

// Works in `folder` until the end of the scope, so that a relative export
// location lands there.
class ScopedWorkingFolder {
  public:
    explicit ScopedWorkingFolder(const std::string& folder) : saved(getcwd(nullptr, 0)) {
        if (chdir(folder.c_str()) != 0) abort();
    }
    ~ScopedWorkingFolder() {
        if (chdir(saved) != 0) abort();
        free(saved);
    }
    ScopedWorkingFolder(const ScopedWorkingFolder&) = delete;
    ScopedWorkingFolder& operator=(const ScopedWorkingFolder&) = delete;

  private:
    char* saved;
};

// Where the helper module keeps the concert calendar of a home without
// XDG_DATA_HOME.
inline std::string concertCalendarFile(const std::string& home) {
    return home + "/.local/share/stagebeacon/calendars/Stagebeacon_Concerts.ics";
}
