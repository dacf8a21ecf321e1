// CSV feeds: a header row names the columns. Calendar programs and ticket
// sites export under many names ("Event Start Date", "start_date", "Date"),
// so each field has a list of names, compared without case, blanks or
// underscores. A row without a readable date is skipped, not fatal: one
// bad row costs one event.
#include "feed_event.h"

#include "csv.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace service {
namespace {

struct Column {
    std::string FeedEvent::*field; // null: handled by name below
    const char* role;
    std::vector<const char*> names;
};

const std::vector<Column> kColumns = {
    {nullptr, "date", {"date", "startdate", "eventstartdate", "start", "eventdate", "dtstart"}},
    {nullptr, "time", {"time", "starttime", "eventstarttime", "doors"}},
    {nullptr, "artists", {"artist", "artists", "performer", "performers", "lineup", "band"}},
    {&FeedEvent::summary, "name", {"name", "eventname", "title", "summary", "event"}},
    {&FeedEvent::venue, "venue", {"venue", "venuename", "eventvenuename", "place"}},
    {&FeedEvent::location, "location", {"location"}},
    {&FeedEvent::address, "address", {"address", "street", "venueaddress", "streetaddress"}},
    {&FeedEvent::city, "city", {"city", "venuecity", "town", "locality"}},
    {&FeedEvent::state, "state", {"state", "region", "venuestate", "province", "country"}},
    {&FeedEvent::url, "url", {"url", "eventurl", "link", "eventwebsite", "website"}},
    {&FeedEvent::ticketUrl, "tickets", {"ticketurl", "tickets", "ticketlink", "buy"}},
    {&FeedEvent::availability, "availability", {"availability", "ticketstatus"}},
    {nullptr, "latitude", {"latitude", "lat"}},
    {nullptr, "longitude", {"longitude", "lon", "lng"}},
};

std::string folded(const std::string& name) {
    std::string key;
    for (char c : name)
        if (std::isalnum(static_cast<unsigned char>(c)))
            key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

// "7/4/2030" (month first, as US exports write it) or ISO forms.
bool readDate(const std::string& text, std::string& date, std::string& time) {
    int month = 0, day = 0, year = 0;
    if (std::sscanf(text.c_str(), "%d/%d/%d", &month, &day, &year) == 3) {
        char iso[48];
        std::snprintf(iso, sizeof iso, "%04d-%02d-%02d", year, month, day);
        return splitDateTime(iso, date, time);
    }
    return splitDateTime(text, date, time);
}

// "19:30", "7:30:00", "7:30 PM" -> "HH:MM"; empty when unreadable.
std::string readTime(const std::string& text) {
    int hour = 0, minute = 0;
    if (std::sscanf(text.c_str(), "%d:%d", &hour, &minute) != 2) return std::string();
    const std::string lowered = folded(text);
    if (lowered.find("pm") != std::string::npos && hour < 12) hour += 12;
    if (lowered.find("am") != std::string::npos && hour == 12) hour = 0;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return std::string();
    char clock[32];
    std::snprintf(clock, sizeof clock, "%02d:%02d", hour, minute);
    return clock;
}

// Several performers in one field: "A | B" or "A; B".
std::vector<std::string> splitPerformers(const std::string& text) {
    std::vector<std::string> names;
    std::string current;
    for (char c : text + "|") {
        if (c != '|' && c != ';') {
            current += c;
        } else {
            if (current.find_first_not_of(' ') != std::string::npos) names.push_back(current);
            current.clear();
        }
    }
    return names;
}

} // namespace

std::vector<FeedEvent> parseCsvFeed(const std::string& text, const ParseLimits& limits) {
    std::unique_ptr<CsvTable> table;
    try {
        table = std::make_unique<CsvTable>(text, "the CSV feed", limits.maxEvents, true);
    } catch (const CsvError& error) {
        const std::string what = error.what();
        if (what.find("more than") != std::string::npos)
            throw FeedError("more than " + std::to_string(limits.maxEvents) + " events");
        throw FeedError(what);
    }
    // Which header name serves each role.
    std::vector<std::string> chosen(kColumns.size());
    for (const std::string& name : table->header()) {
        const std::string key = folded(name);
        for (size_t i = 0; i < kColumns.size(); ++i)
            for (const char* candidate : kColumns[i].names)
                if (chosen[i].empty() && key == candidate) chosen[i] = name;
    }
    if (chosen[0].empty())
        throw FeedError("the CSV header names no date column (looked for Date, Start Date, ...)");
    if (chosen[2].empty() && chosen[3].empty())
        throw FeedError("the CSV header names no artist or event name column");
    std::vector<FeedEvent> events;
    for (size_t row = 0; row < table->rows(); ++row) {
        FeedEvent event;
        if (!readDate(table->field(row, chosen[0]), event.date, event.time)) continue;
        for (size_t i = 0; i < kColumns.size(); ++i) {
            if (chosen[i].empty()) continue;
            const std::string& value = table->field(row, chosen[i]);
            if (kColumns[i].field) event.*(kColumns[i].field) = value;
        }
        if (!chosen[1].empty()) {
            std::string clock = readTime(table->field(row, chosen[1]));
            if (!clock.empty()) event.time = clock;
        }
        if (!chosen[2].empty()) event.performers = splitPerformers(table->field(row, chosen[2]));
        if (!chosen[12].empty() && !chosen[13].empty()) {
            const std::string& lat = table->field(row, chosen[12]);
            const std::string& lon = table->field(row, chosen[13]);
            event.hasGeo = !lat.empty() && !lon.empty();
            event.latitude = std::atof(lat.c_str());
            event.longitude = std::atof(lon.c_str());
        }
        events.push_back(std::move(event));
    }
    return events;
}

} // namespace service
