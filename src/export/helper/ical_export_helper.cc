// The calendar helper module (Stagebeacon_iCalExport.so). Its calendar store
// is a folder of iCalendar files: a calendar titled T is the file
// "$XDG_DATA_HOME/stagebeacon/calendars/T.ics" ($XDG_DATA_HOME defaults to
// ~/.local/share; a "/" in T becomes "_"), which desktop calendar programs
// can add as a local calendar file.
//
// The file is Stagebeacon's alone: a save replaces it with the events added
// since the calendar was opened, as the plug-in hands over the whole
// exported list every time. It is written with libical, so it is a proper
// RFC 5545 file (escaping, folding, CRLF), unlike the plug-in's own file
// route, and it is replaced in one step (a new file beside it, renamed over
// it), so a calendar program never reads half a calendar.
//
// The four entry points are the only symbols the module exports.
#include <libical/ical.h>

#include <cstdlib>
#include <ctime>
#include <mutex>
#include <string>
#include <type_traits>

#include "export/calendar_store_api.h"
#include "library/file_io.h"
#include "platform/home_folder.h"
#include "platform/uuid_text.h"

#define SBN_EXPORT __attribute__((visibility("default")))

extern "C" {
SBN_EXPORT void InitializeCocoa(void);
SBN_EXPORT SbnCalendarRef Sbn_CreateNewCalendar(const char* title);
SBN_EXPORT void Sbn_AddEvent(SbnCalendarRef calendar, const char* artist, const char* otherActs,
                             const char* venue, const char* clickThrough, const char* location,
                             const char* note, uint32_t year, uint32_t month, uint32_t day,
                             uint8_t ticketsAvailable);
SBN_EXPORT void Sbn_SaveCalendar(SbnCalendarRef calendar);
}

// The plug-in finds these by name only: the types must match its own.
static_assert(std::is_same<decltype(&InitializeCocoa), InitializeCocoaFunction>::value, "");
static_assert(std::is_same<decltype(&Sbn_CreateNewCalendar), CreateNewCalendarFunction>::value, "");
static_assert(std::is_same<decltype(&Sbn_AddEvent), AddEventFunction>::value, "");
static_assert(std::is_same<decltype(&Sbn_SaveCalendar), SaveCalendarFunction>::value, "");

namespace {

constexpr const char* kProductId = "-//Stagebeacon//Concert calendar//EN";
constexpr const char* kLocationUnknown = "-";

struct CalendarData {
    std::string path;
    icalcomponent* calendar = nullptr;
};

// Standard layout with the handle header first, so the handle the plug-in
// holds converts back to the whole object.
struct Calendar {
    SbnObject header;
    CalendarData* data;
};
static_assert(std::is_standard_layout<Calendar>::value, "");

Calendar* calendarOf(SbnCalendarRef handle) {
    return reinterpret_cast<Calendar*>(handle);
}

void releaseCalendar(SbnObject* object) {
    Calendar* calendar = calendarOf(object);
    icalcomponent_free(calendar->data->calendar);
    delete calendar->data;
    delete calendar;
}

// libical sets up its UTC zone lazily and without a lock; do it once, before
// two threads can get there.
void prepareRuntime() {
    static std::once_flag once;
    std::call_once(once, [] {
        icalerror_set_errors_are_fatal(0);
        (void)icaltimezone_get_utc_timezone();
    });
}

// $XDG_DATA_HOME when it is an absolute path (the basedir rules ignore a
// relative one), else ~/.local/share; empty when there is no home either.
std::string dataFolder() {
    const char* xdg = getenv("XDG_DATA_HOME");
    if (xdg && xdg[0] == '/') return xdg;
    std::string home = homeFolder();
    return home.empty() ? std::string() : home + "/.local/share";
}

// How many continuation bytes follow a UTF-8 lead byte; -1 when it leads
// nothing.
int continuationBytes(unsigned char lead) {
    if (lead < 0x80) return 0;
    if ((lead & 0xE0) == 0xC0) return 1;
    if ((lead & 0xF0) == 0xE0) return 2;
    if ((lead & 0xF8) == 0xF0) return 3;
    return -1;
}

// Valid UTF-8 stays as it is. Anything else is taken for Latin-1, the 8-bit
// text most concert sites send, and re-encoded. Control characters, which
// iCalendar does not allow, become blanks.
std::string utf8Text(const char* text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text ? text : "");
    bool valid = true;
    for (const unsigned char* p = bytes; *p && valid;) {
        int extra = continuationBytes(*p);
        valid = extra >= 0;
        // Stops at the first byte that is no continuation, the NUL included.
        for (int i = 1; valid && i <= extra; ++i)
            valid = (p[i] & 0xC0) == 0x80;
        p += extra + 1;
    }
    std::string out;
    for (const unsigned char* p = bytes; *p; ++p) {
        if (*p < 0x20 || *p == 0x7F) {
            out += ' ';
        } else if (*p < 0x80 || valid) {
            out += static_cast<char>(*p);
        } else {
            out += static_cast<char>(0xC0 | (*p >> 6));
            out += static_cast<char>(0x80 | (*p & 0x3F));
        }
    }
    return out;
}

bool possibleDate(uint32_t year, uint32_t month, uint32_t day) {
    return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
           day <= static_cast<uint32_t>(
                      icaltime_days_in_month(static_cast<int>(month), static_cast<int>(year)));
}

std::string eventDescription(const std::string& otherActs, bool tickets, const std::string& note) {
    std::string text;
    if (!otherActs.empty()) text = "With: " + otherActs;
    if (tickets) text += std::string(text.empty() ? "" : "\n") + "Tickets available";
    if (!note.empty()) text += (text.empty() ? "" : "\n") + note;
    return text;
}

} // namespace

void InitializeCocoa(void) {
    prepareRuntime();
}

SbnCalendarRef Sbn_CreateNewCalendar(const char* title) {
    prepareRuntime();
    if (!title || !title[0]) return nullptr;
    const std::string data = dataFolder();
    if (data.empty()) return nullptr;
    // The title names a file: no folder separators in it.
    std::string fileName = title;
    for (char& c : fileName)
        if (c == '/') c = '_';
    const std::string folder = data + "/stagebeacon/calendars";
    if (!makeFolders(folder)) return nullptr;

    auto* calendarData = new CalendarData;
    calendarData->path = folder + "/" + fileName + ".ics";
    icalcomponent* vcalendar = icalcomponent_new_vcalendar();
    icalcomponent_add_property(vcalendar, icalproperty_new_version("2.0"));
    icalcomponent_add_property(vcalendar, icalproperty_new_prodid(kProductId));
    icalcomponent_add_property(vcalendar, icalproperty_new_calscale("GREGORIAN"));
    icalproperty* name = icalproperty_new_x(utf8Text(title).c_str());
    icalproperty_set_x_name(name, "X-WR-CALNAME");
    icalcomponent_add_property(vcalendar, name);
    calendarData->calendar = vcalendar;

    auto* calendar = new Calendar{{releaseCalendar}, calendarData};
    return &calendar->header;
}

void Sbn_AddEvent(SbnCalendarRef handle, const char* artist, const char* otherActs,
                  const char* venue, const char* clickThrough, const char* location,
                  const char* note, uint32_t year, uint32_t month, uint32_t day,
                  uint8_t ticketsAvailable) {
    if (!handle || !possibleDate(year, month, day)) return;
    prepareRuntime();
    CalendarData& data = *calendarOf(handle)->data;

    icalcomponent* event = icalcomponent_new_vevent();
    icalcomponent_add_property(event, icalproperty_new_uid(newUuidText().c_str()));
    icalcomponent_add_property(event, icalproperty_new_dtstamp(icaltime_from_timet_with_zone(
                                          time(nullptr), 0, icaltimezone_get_utc_timezone())));
    // All day: a date start and the next day as the (exclusive) end.
    icaltimetype start = icaltime_null_date();
    start.year = static_cast<int>(year);
    start.month = static_cast<int>(month);
    start.day = static_cast<int>(day);
    icaltimetype end = start;
    icaltime_adjust(&end, 1, 0, 0, 0);
    icalcomponent_add_property(event, icalproperty_new_dtstart(start));
    icalcomponent_add_property(event, icalproperty_new_dtend(end));
    icalcomponent_add_property(event, icalproperty_new_summary(utf8Text(artist).c_str()));

    std::string place = utf8Text(venue);
    const std::string town = utf8Text(location);
    if (!town.empty() && town != kLocationUnknown) place += (place.empty() ? "" : ", ") + town;
    if (!place.empty()) icalcomponent_add_property(event, icalproperty_new_location(place.c_str()));

    const std::string description =
        eventDescription(utf8Text(otherActs), ticketsAvailable != 0, utf8Text(note));
    if (!description.empty())
        icalcomponent_add_property(event, icalproperty_new_description(description.c_str()));
    const std::string page = utf8Text(clickThrough);
    if (!page.empty()) icalcomponent_add_property(event, icalproperty_new_url(page.c_str()));
    icalcomponent_add_property(event, icalproperty_new_transp(ICAL_TRANSP_TRANSPARENT));

    icalcomponent_add_component(data.calendar, event);
}

void Sbn_SaveCalendar(SbnCalendarRef handle) {
    if (!handle) return;
    CalendarData& data = *calendarOf(handle)->data;
    char* text = icalcomponent_as_ical_string_r(data.calendar);
    if (!text) return;
    const std::string contents = text;
    icalmemory_free_buffer(text);
    (void)replaceFile(data.path.c_str(), contents, kSettingsFileMode);
}
