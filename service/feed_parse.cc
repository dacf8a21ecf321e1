// Choosing a feed's parser, and the date forms they share: see feed_event.h.
#include "feed_event.h"

#include "geo.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace service {
namespace {

// First characters after a byte order mark and blanks.
std::string opening(const std::string& body) {
    size_t start = body.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    while (start < body.size() && std::strchr(" \t\r\n", body[start])) ++start;
    return body.substr(start, 64);
}

bool startsWithNoCase(const std::string& text, const char* prefix) {
    const size_t length = std::strlen(prefix);
    if (text.size() < length) return false;
    for (size_t i = 0; i < length; ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != prefix[i]) return false;
    return true;
}

} // namespace

bool splitDateTime(const std::string& text, std::string& date, std::string& time) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    int used = 0;
    const char* s = text.c_str();
    if (std::sscanf(s, "%4d-%2d-%2d%n", &year, &month, &day, &used) != 3 &&
        std::sscanf(s, "%4d%2d%2d%n", &year, &month, &day, &used) != 3)
        return false;
    char iso[48];
    std::snprintf(iso, sizeof iso, "%04d-%02d-%02d", year, month, day);
    auto checked = checkedIsoDate(iso);
    if (!checked) return false;
    date = *checked;
    time.clear();
    const char* rest = s + used;
    if ((*rest == 'T' || *rest == ' ') &&
        (std::sscanf(rest + 1, "%2d:%2d", &hour, &minute) == 2 ||
         std::sscanf(rest + 1, "%2d%2d", &hour, &minute) == 2) &&
        hour < 24 && minute < 60) {
        char clock[32];
        std::snprintf(clock, sizeof clock, "%02d:%02d", hour, minute);
        time = clock;
    }
    return true;
}

std::vector<FeedEvent> parseFeed(const std::string& body, const std::string& format,
                                 const ParseLimits& limits) {
    if (body.find('\0') != std::string::npos)
        throw FeedError("binary data, not an iCalendar, JSON-LD or CSV feed");
    if (format == "ics") return parseICalendar(body, limits);
    if (format == "jsonld") return parseJsonLd(body, limits);
    if (format == "csv") return parseCsvFeed(body, limits);
    if (!format.empty()) throw FeedError("unknown feed format '" + format + "'");
    const std::string start = opening(body);
    if (start.empty()) throw FeedError("the feed is empty");
    if (startsWithNoCase(start, "begin:vcalendar")) return parseICalendar(body, limits);
    if (start[0] == '<' || start[0] == '{' || start[0] == '[') return parseJsonLd(body, limits);
    return parseCsvFeed(body, limits);
}

} // namespace service
