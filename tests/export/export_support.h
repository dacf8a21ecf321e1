// Helpers of the export suites: reading a calendar back with libical,
// environment variables and the working folder set for one test, and where
// the helper module keeps the concert calendar.
#pragma once

#include <libical/ical.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

struct CalendarEvent {
    std::string summary;
    std::string location;
    std::string description;
    std::string url;
    std::string uid;
    icaltimetype start{};
    icaltimetype end{};
};

struct CalendarContents {
    bool parsed = false;
    std::string name; // X-WR-CALNAME
    std::vector<CalendarEvent> events;
};

inline std::string textOrEmpty(const char* text) { return text ? text : ""; }

inline CalendarContents readCalendar(const std::string& text) {
    CalendarContents out;
    icalcomponent* calendar = icalparser_parse_string(text.c_str());
    if (!calendar) return out;
    out.parsed = icalcomponent_isa(calendar) == ICAL_VCALENDAR_COMPONENT;
    for (icalproperty* p = icalcomponent_get_first_property(calendar, ICAL_X_PROPERTY); p;
         p = icalcomponent_get_next_property(calendar, ICAL_X_PROPERTY))
        if (textOrEmpty(icalproperty_get_x_name(p)) == "X-WR-CALNAME")
            out.name = textOrEmpty(icalproperty_get_x(p));
    for (icalcomponent* e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); e;
         e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
        CalendarEvent event;
        event.summary = textOrEmpty(icalcomponent_get_summary(e));
        event.location = textOrEmpty(icalcomponent_get_location(e));
        event.description = textOrEmpty(icalcomponent_get_description(e));
        event.uid = textOrEmpty(icalcomponent_get_uid(e));
        if (icalproperty* url = icalcomponent_get_first_property(e, ICAL_URL_PROPERTY))
            event.url = textOrEmpty(icalproperty_get_url(url));
        event.start = icalcomponent_get_dtstart(e);
        event.end = icalcomponent_get_dtend(e);
        out.events.push_back(event);
    }
    icalcomponent_free(calendar);
    return out;
}

// "2009-03-05", with " (date)" when it is a whole day.
inline std::string dayText(const icaltimetype& t) {
    char text[40];
    snprintf(text, sizeof text, "%04d-%02d-%02d%s", t.year, t.month, t.day,
             t.is_date ? " (date)" : "");
    return text;
}

// Sets (or, with null, removes) an environment variable for one scope.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const char* value) : name(name) {
        if (const char* old = getenv(name)) {
            hadValue = true;
            saved = old;
        }
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~ScopedVariable() {
        if (hadValue)
            setenv(name.c_str(), saved.c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

  private:
    std::string name;
    std::string saved;
    bool hadValue = false;
};

// Runs one scope in `folder`, so that a relative export location lands there.
class ScopedWorkingFolder {
  public:
    explicit ScopedWorkingFolder(const std::string& folder) {
        char* current = getcwd(nullptr, 0);
        if (current) saved = current;
        free(current);
        EXPECT_EQ(0, chdir(folder.c_str()));
    }
    ~ScopedWorkingFolder() {
        if (!saved.empty()) (void)chdir(saved.c_str());
    }
    ScopedWorkingFolder(const ScopedWorkingFolder&) = delete;
    ScopedWorkingFolder& operator=(const ScopedWorkingFolder&) = delete;

  private:
    std::string saved;
};

// The built helper module's folder (passed in by the build).
inline const char* builtModuleFolder() { return STAGEBEACON_MODULE_RESOURCES; }

// Where the module keeps the concert calendar of a home without
// XDG_DATA_HOME.
inline std::string concertCalendarFile(const std::string& home) {
    return home + "/.local/share/stagebeacon/calendars/Stagebeacon_Concerts.ics";
}
