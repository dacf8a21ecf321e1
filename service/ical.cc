// iCalendar import: reads the VEVENTs of a real calendar file (RFC 5545
// line folding and text escapes) and turns them into a site's events.
#include "geo.h"
#include "seed.h"
#include "text.h"

#include <cstdio>

namespace service {
namespace {

// Joins folded lines: a line break followed by a blank or tab continues the line.
std::vector<std::string> unfold(const std::string& text) {
    std::vector<std::string> lines;
    std::string current;
    size_t pos = 0;
    while (pos <= text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && (line[0] == ' ' || line[0] == '\t')) {
            current += line.substr(1);
        } else {
            if (!current.empty()) lines.push_back(current);
            current = line;
        }
        pos = end + 1;
    }
    if (!current.empty()) lines.push_back(current);
    return lines;
}

std::string unescape(const std::string& value) {
    std::string out;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            char next = value[++i];
            out += (next == 'n' || next == 'N') ? ' ' : next;
        } else {
            out += value[i];
        }
    }
    return tagSafe(out);
}

// DTSTART values: "20090305" or "20090305T200000Z" (time ignored).
std::string dateOf(const std::string& value) {
    if (value.size() < 8) return std::string();
    std::string iso = value.substr(0, 4) + "-" + value.substr(4, 2) + "-" + value.substr(6, 2);
    auto checked = checkedIsoDate(iso);
    return checked ? *checked : std::string();
}

std::string trim(const std::string& text) {
    size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

std::vector<CalendarEvent> parseCalendar(const std::string& text, size_t& skipped) {
    std::vector<CalendarEvent> events;
    CalendarEvent event;
    bool inside = false;
    for (const std::string& line : unfold(text)) {
        size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        std::string name = line.substr(0, std::min(colon, line.find(';')));
        for (char& c : name)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        const std::string value = line.substr(colon + 1);
        if (name == "BEGIN" && value == "VEVENT") {
            event = CalendarEvent();
            inside = true;
        } else if (name == "END" && value == "VEVENT" && inside) {
            inside = false;
            if (event.summary.empty() || event.date.empty()) ++skipped;
            else events.push_back(event);
        } else if (!inside) {
            continue;
        } else if (name == "SUMMARY") {
            event.summary = unescape(value);
        } else if (name == "DTSTART") {
            event.date = dateOf(value);
        } else if (name == "LOCATION") {
            event.location = unescape(value);
        } else if (name == "URL") {
            event.url = tagSafe(value);
        } else if (name == "GEO") {
            event.hasGeo = std::sscanf(value.c_str(), "%lf;%lf", &event.latitude,
                                       &event.longitude) == 2;
        }
    }
    return events;
}

std::vector<Event> eventsFromCalendar(const std::vector<CalendarEvent>& calendar,
                                      Storage& storage, int64_t siteId, size_t& skipped) {
    std::vector<Event> events;
    for (const CalendarEvent& entry : calendar) {
        std::vector<std::string> parts = split(entry.location, ",");
        for (std::string& part : parts) part = trim(part);
        Event event;
        event.siteId = siteId;
        event.date = entry.date;
        event.artists = {entry.summary};
        event.url = entry.url;
        if (parts.size() >= 3) {
            event.state = parts.back();
            event.city = parts[parts.size() - 2];
            parts.resize(parts.size() - 2);
            event.venue = join(parts, ", ");
        } else {
            event.venue = entry.location;
        }
        std::optional<Place> place;
        if (!event.city.empty()) place = storage.findPlace(event.city, event.state);
        if (entry.hasGeo) {
            event.latitude = entry.latitude;
            event.longitude = entry.longitude;
        } else if (place) {
            event.latitude = place->latitude;
            event.longitude = place->longitude;
        } else {
            ++skipped;
            continue;
        }
        events.push_back(std::move(event));
    }
    return events;
}

} // namespace service
