// iCalendar feeds through libical. libical does the format itself (folded
// lines, escapes, TZID against the calendar's VTIMEZONEs, dates, UTC,
// RRULE arithmetic); this file picks what a concert needs from each VEVENT
// and expands recurring ones to their instances within a year.
//
// Times: a TZID or floating time is the wall time at the venue and is kept
// as written; a UTC time is moved into the calendar's own zone
// (X-WR-TIMEZONE, else its first VTIMEZONE), which for a venue's calendar
// is the venue's zone. With neither, UTC is kept.
#include "feed_event.h"

#include "geo.h"

#include <libical/ical.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <set>

namespace service {
namespace {

// Instances of one recurring event: at most this many steps of its rule.
constexpr int kMaxRecurrenceSteps = 5000;

struct ComponentFree {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
struct IteratorFree {
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

size_t countOf(const std::string& text, const char* needle) {
    size_t count = 0;
    for (size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1))
        ++count;
    return count;
}

std::string text(const char* value) { return value ? value : ""; }

// The zone UTC times are shown in.
icaltimezone* calendarZone(icalcomponent* calendar) {
    for (icalproperty* p = icalcomponent_get_first_property(calendar, ICAL_X_PROPERTY); p;
         p = icalcomponent_get_next_property(calendar, ICAL_X_PROPERTY)) {
        if (std::strcmp(text(icalproperty_get_x_name(p)).c_str(), "X-WR-TIMEZONE") != 0) continue;
        const std::string name = text(icalproperty_get_x(p));
        if (icaltimezone* zone = icalcomponent_get_timezone(calendar, name.c_str())) return zone;
        if (icaltimezone* zone = icaltimezone_get_builtin_timezone(name.c_str())) return zone;
    }
    icalcomponent* vtimezone = icalcomponent_get_first_component(calendar, ICAL_VTIMEZONE_COMPONENT);
    if (!vtimezone) return nullptr;
    icalproperty* tzid = icalcomponent_get_first_property(vtimezone, ICAL_TZID_PROPERTY);
    return tzid ? icalcomponent_get_timezone(calendar, text(icalproperty_get_tzid(tzid)).c_str())
                : nullptr;
}

// "YYYYMMDDTHHMMSS" in UTC (a date or a floating time as written): the key
// that matches an instance to its EXDATE or RECURRENCE-ID, whichever zone
// each was written in.
// A time libical left without its zone is read in `zone` (the event's start
// zone, which rule instances and most EXDATEs share).
std::string instanceKey(icaltimetype t, const icaltimezone* zone) {
    if (!t.is_date && !icaltime_is_utc(t) && !t.zone && zone)
        t = icaltime_set_timezone(&t, const_cast<icaltimezone*>(zone));
    if (!t.is_date) t = icaltime_convert_to_zone(t, icaltimezone_get_utc_timezone());
    char key[80];
    std::snprintf(key, sizeof key, "%04d%02d%02dT%02d%02d%02d", t.year, t.month, t.day, t.hour,
                  t.minute, t.second);
    return key;
}

class CalendarReader {
public:
    CalendarReader(const ParseLimits& limits, std::vector<FeedEvent>& out)
        : limits_(limits), out_(out) {
        windowEnd_ = limits.windowStart;
        if (windowEnd_.size() == 10)
            windowEnd_.replace(0, 4, std::to_string(std::stoi(windowEnd_.substr(0, 4)) + 1));
    }

    void read(icalcomponent* calendar) {
        zone_ = calendarZone(calendar);
        overrides_.clear();
        for (icalcomponent* e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
             e; e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
            icaltimetype id = icalcomponent_get_recurrenceid(e);
            if (!icaltime_is_null_time(id))
                overrides_.insert(text(icalcomponent_get_uid(e)) + "|" +
                                  instanceKey(id, icalcomponent_get_dtstart(e).zone));
        }
        for (icalcomponent* e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
             e; e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT))
            readEvent(e);
    }

private:
    void readEvent(icalcomponent* e) {
        if (icalcomponent_get_status(e) == ICAL_STATUS_CANCELLED) return;
        const icaltimetype start = icalcomponent_get_dtstart(e);
        if (icaltime_is_null_time(start)) return;
        FeedEvent event;
        event.summary = text(icalcomponent_get_summary(e));
        event.location = text(icalcomponent_get_location(e));
        if (icalproperty* url = icalcomponent_get_first_property(e, ICAL_URL_PROPERTY))
            event.url = text(icalproperty_get_url(url));
        if (icalproperty* geo = icalcomponent_get_first_property(e, ICAL_GEO_PROPERTY)) {
            icalgeotype where = icalproperty_get_geo(geo);
            event.hasGeo = true;
            event.latitude = where.lat;
            event.longitude = where.lon;
        }
        icalproperty* rule = icalcomponent_get_first_property(e, ICAL_RRULE_PROPERTY);
        if (!rule || !icaltime_is_null_time(icalcomponent_get_recurrenceid(e))) {
            add(std::move(event), start);
            return;
        }
        std::set<std::string> skipped;
        for (icalproperty* p = icalcomponent_get_first_property(e, ICAL_EXDATE_PROPERTY); p;
             p = icalcomponent_get_next_property(e, ICAL_EXDATE_PROPERTY))
            skipped.insert(instanceKey(icalproperty_get_exdate(p), start.zone));
        const std::string uid = text(icalcomponent_get_uid(e));
        for (const std::string& key : overrides_)
            if (key.compare(0, uid.size() + 1, uid + "|") == 0) skipped.insert(key.substr(uid.size() + 1));
        for (icalproperty* p = icalcomponent_get_first_property(e, ICAL_RDATE_PROPERTY); p;
             p = icalcomponent_get_next_property(e, ICAL_RDATE_PROPERTY)) {
            const icaldatetimeperiodtype value = icalproperty_get_rdate(p);
            icaltimetype extra = icaltime_is_null_time(value.time) ? value.period.start : value.time;
            if (!icaltime_is_null_time(extra) && !skipped.count(instanceKey(extra, start.zone)) &&
                inWindow(extra))
                add(event, extra);
        }
        expand(event, icalproperty_get_rrule(rule), start, skipped);
    }

    void expand(const FeedEvent& event, const icalrecurrencetype& rule, const icaltimetype& start,
                const std::set<std::string>& skipped) {
        std::unique_ptr<icalrecur_iterator, IteratorFree> it(icalrecur_iterator_new(rule, start));
        if (!it) return;
        if (rule.count == 0 && limits_.windowStart.size() == 10 &&
            limits_.windowStart > dateOf(start)) {
            // Jump to the window instead of stepping through the past.
            icaltimetype from = start;
            std::sscanf(limits_.windowStart.c_str(), "%4d-%2d-%2d", &from.year, &from.month,
                        &from.day);
            (void)icalrecur_iterator_set_start(it.get(), from);
        }
        for (int step = 0; step < kMaxRecurrenceSteps; ++step) {
            icaltimetype next = icalrecur_iterator_next(it.get());
            if (icaltime_is_null_time(next) || dateOf(next) >= windowEnd_) break;
            if (skipped.count(instanceKey(next, start.zone)) || !inWindow(next)) continue;
            add(event, next);
        }
    }

    static std::string dateOf(const icaltimetype& t) {
        char date[48];
        std::snprintf(date, sizeof date, "%04d-%02d-%02d", t.year, t.month, t.day);
        return date;
    }

    bool inWindow(const icaltimetype& t) const {
        const std::string date = dateOf(t);
        return date >= limits_.windowStart && date < windowEnd_;
    }

    void add(FeedEvent event, icaltimetype start) {
        if (out_.size() >= limits_.maxEvents)
            throw FeedError("more than " + std::to_string(limits_.maxEvents) + " events");
        if (!start.is_date && icaltime_is_utc(start) && zone_)
            start = icaltime_convert_to_zone(start, zone_);
        auto date = checkedIsoDate(dateOf(start));
        if (!date) return;
        event.date = *date;
        if (!start.is_date) {
            char clock[32];
            std::snprintf(clock, sizeof clock, "%02d:%02d", start.hour, start.minute);
            event.time = clock;
        }
        out_.push_back(std::move(event));
    }

    const ParseLimits& limits_;
    std::vector<FeedEvent>& out_;
    std::string windowEnd_;
    icaltimezone* zone_ = nullptr;
    std::set<std::string> overrides_;
};

} // namespace

std::vector<FeedEvent> parseICalendar(const std::string& text, const ParseLimits& limits) {
    // Counted before parsing: libical would build the whole tree first.
    if (countOf(text, "BEGIN:VEVENT") > limits.maxEvents)
        throw FeedError("more than " + std::to_string(limits.maxEvents) + " events");
    if (text.find("BEGIN:VCALENDAR") == std::string::npos)
        throw FeedError("not an iCalendar feed (no BEGIN:VCALENDAR)");
    // A download cut short still parses; its last events would be lost quietly.
    if (text.find("END:VCALENDAR") == std::string::npos)
        throw FeedError("the calendar is cut short (no END:VCALENDAR)");
    std::unique_ptr<icalcomponent, ComponentFree> root(icalparser_parse_string(text.c_str()));
    if (!root) throw FeedError("libical could not read the calendar");
    std::vector<FeedEvent> events;
    CalendarReader reader(limits, events);
    if (icalcomponent_isa(root.get()) == ICAL_VCALENDAR_COMPONENT) {
        reader.read(root.get());
    } else {
        // Several calendars in one file come back under an XROOT.
        for (icalcomponent* c = icalcomponent_get_first_component(root.get(), ICAL_VCALENDAR_COMPONENT);
             c; c = icalcomponent_get_next_component(root.get(), ICAL_VCALENDAR_COMPONENT))
            reader.read(c);
    }
    return events;
}

} // namespace service
