// Distances, dates and addresses: see geo.h.
#include "geo.h"

#include <cmath>
#include <cstdio>
#include <ctime>

namespace service {
namespace {

constexpr double kPi = 3.14159265;
constexpr double kEarthRadiusKm = 6378.0;
constexpr double kMilesPerKm = 0.621371192;

double radians(double degrees) { return degrees * kPi / 180.0; }

} // namespace

double milesBetween(double lat1, double lon1, double lat2, double lon2) {
    double dlat = radians(lat2 - lat1);
    double dlon = radians(lon2 - lon1);
    double a = std::sin(dlat * 0.5) * std::sin(dlat * 0.5) +
               std::cos(radians(lat1)) * std::cos(radians(lat2)) * std::sin(dlon * 0.5) *
                   std::sin(dlon * 0.5);
    double c = 2 * std::atan2(std::sqrt(a), std::sqrt(1 - a));
    return c * kEarthRadiusKm * kMilesPerKm;
}

Box boxAround(double lat, double lon, double miles) {
    // One degree of latitude is about 69.2 miles; pad by a tenth so rounding
    // never drops a point the exact test would keep.
    const double milesPerDegree = kEarthRadiusKm * kMilesPerKm * kPi / 180.0;
    double dlat = miles / milesPerDegree * 1.1 + 1e-6;
    double minLat = lat - dlat, maxLat = lat + dlat;
    double cosine = std::cos(radians(lat));
    if (minLat <= -90 || maxLat >= 90 || cosine < 0.01 || miles >= 3000)
        return Box{-90, 90, -180, 180}; // near a pole or half the globe: no useful box
    double dlon = dlat / std::fabs(cosine);
    if (lon - dlon < -180 || lon + dlon > 180) return Box{minLat, maxLat, -180, 180};
    return Box{minLat, maxLat, lon - dlon, lon + dlon};
}

// Howard Hinnant's civil-date algorithms.
int64_t daysFromCivil(int year, int month, int day) {
    int64_t y = year - (month <= 2 ? 1 : 0);
    int64_t era = (y >= 0 ? y : y - 399) / 400;
    int64_t yoe = y - era * 400;
    int64_t doy = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void civilFromDays(int64_t days, int& year, int& month, int& day) {
    days += 719468;
    int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    int64_t doe = days - era * 146097;
    int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    int64_t mp = (5 * doy + 2) / 153;
    day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    year = static_cast<int>(yoe + era * 400 + (month <= 2 ? 1 : 0));
}

std::string isoDateFromToday(int offsetDays) {
    time_t now = std::time(nullptr);
    struct tm local {};
    localtime_r(&now, &local);
    int64_t days = daysFromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    int year, month, day;
    civilFromDays(days + offsetDays, year, month, day);
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
    return text;
}

std::optional<std::string> checkedIsoDate(const std::string& text) {
    int year = 0, month = 0, day = 0;
    char extra = 0;
    if (text.size() != 10 || std::sscanf(text.c_str(), "%4d-%2d-%2d%c", &year, &month, &day,
                                         &extra) != 3)
        return std::nullopt;
    if (year < 1900 || month < 1 || month > 12 || day < 1) return std::nullopt;
    int y, m, d;
    civilFromDays(daysFromCivil(year, month, day), y, m, d);
    if (y != year || m != month || d != day) return std::nullopt; // 31 April and the like
    return text;
}

std::string slashDate(const std::string& isoDate) {
    int year = 0, month = 0, day = 0;
    std::sscanf(isoDate.c_str(), "%d-%d-%d", &year, &month, &day);
    char text[32];
    std::snprintf(text, sizeof text, "%d/%d/%d", month, day, year);
    return text;
}

std::optional<uint32_t> parseIpv4(const std::string& text) {
    unsigned parts[4];
    char extra = 0;
    if (text.size() > 15 || std::sscanf(text.c_str(), "%3u.%3u.%3u.%3u%c", &parts[0], &parts[1],
                                        &parts[2], &parts[3], &extra) != 4)
        return std::nullopt;
    uint32_t address = 0;
    for (unsigned part : parts) {
        if (part > 255) return std::nullopt;
        address = (address << 8) | part;
    }
    return address;
}

bool parseIpRange(const std::string& text, uint32_t& first, uint32_t& last) {
    size_t slash = text.find('/');
    if (slash != std::string::npos) {
        auto base = parseIpv4(text.substr(0, slash));
        unsigned bits = 0;
        char extra = 0;
        if (!base || std::sscanf(text.c_str() + slash + 1, "%2u%c", &bits, &extra) != 1 ||
            bits > 32)
            return false;
        uint32_t mask = bits == 0 ? 0 : ~uint32_t(0) << (32 - bits);
        first = *base & mask;
        last = first | ~mask;
        return true;
    }
    size_t dash = text.find('-');
    if (dash == std::string::npos) return false;
    auto low = parseIpv4(text.substr(0, dash));
    auto high = parseIpv4(text.substr(dash + 1));
    if (!low || !high || *low > *high) return false;
    first = *low;
    last = *high;
    return true;
}

} // namespace service
