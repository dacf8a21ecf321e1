// Distances, dates and addresses: the pure arithmetic behind the catalogue
// replies, kept apart so it can be tested without a server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace service {

// Great-circle distance in miles by the haversine formula, with the same
// constants the plug-in uses (earth radius 6378.0 km, 0.621371192 miles per
// km), so both sides agree on which shows lie inside a radius.
double milesBetween(double lat1, double lon1, double lat2, double lon2);

// A latitude/longitude box that holds every point within `miles` of the
// centre (a cheap index filter before the exact test).
struct Box {
    double minLat, maxLat, minLon, maxLon;
};
Box boxAround(double lat, double lon, double miles);

// Days since 1970-01-01 of a civil date, and back (proleptic Gregorian).
int64_t daysFromCivil(int year, int month, int day);
void civilFromDays(int64_t days, int& year, int& month, int& day);

// "YYYY-MM-DD" of the local date `offsetDays` after today.
std::string isoDateFromToday(int offsetDays);
// Validates "YYYY-MM-DD" (a real calendar date); nullopt otherwise.
std::optional<std::string> checkedIsoDate(const std::string& text);
// "YYYY-MM-DD" -> the event pages' "M/D/YYYY".
std::string slashDate(const std::string& isoDate);

// "a.b.c.d" -> host-order address; nullopt when not a dotted IPv4 address.
std::optional<uint32_t> parseIpv4(const std::string& text);
// "a.b.c.d/n" or "a.b.c.d-e.f.g.h" -> first and last address.
bool parseIpRange(const std::string& text, uint32_t& first, uint32_t& last);

} // namespace service
