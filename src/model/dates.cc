// Date arithmetic of the month grid.
#include "model/dates.h"

#include <cmath>

const char* const monthStrings[12] = {"January",   "February", "March",    "April",
                                      "May",       "June",     "July",     "August",
                                      "September", "October",  "November", "December"};

const char* const monthAbrevStrings[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

namespace {

// Days of months 1..12 in a common year.
constexpr int kMonthDays[13] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

// Divisibility by four alone, read from the year's two lowest bits: there is
// no century rule (2100 counts as a leap year).
bool leapYear(int year) {
    return (year & 3) == 0;
}

int februaryDays(int year) {
    return leapYear(year) ? 29 : 28;
}

} // namespace

int getDayOfTheWeek(int day, int month, int year) {
    // A Zeller-type congruence with the century taken in whole hundreds
    // (2000, not 20): K/4 - 2K is then a multiple of 7, so the century adds
    // nothing, which is right for 2000..2099 only.
    int m = month - 2;
    if (m < 1) m = month + 10;
    int century = static_cast<int>(std::floor(year / 100.0) * 100.0);
    int y = year - century;
    if (m >= 11) y -= 1;
    double sum = double(day) + (13 * m - 1) / 5 + y + y / 4 + century / 4 - 2.0 * century;
    int r = static_cast<int>(sum) % 7;
    if (r < 0) r += 7;
    return r;
}

void incrementDay(int* day, int* month, int* year) {
    const int d = *day, m = *month;
    if (d <= 27) {
        *day = d + 1;
        return;
    }
    // A month number outside 1..12 is treated as February.
    const bool february = m < 1 || m > 12 || m == 2;
    const int last = february ? februaryDays(*year) : kMonthDays[m];
    if (d < last) {
        *day = d + 1;
        return;
    }
    *day = 1;
    if (february) {
        *month = 3;
    } else if (m == 12) {
        *month = 1;
        *year += 1;
    } else {
        *month = m + 1;
    }
}

void decrementDay(int* day, int* month, int* year) {
    const int d = *day, m = *month;
    if (d >= 2) {
        *day = d - 1;
        return;
    }
    if (m == 1) {
        *day = 31;
        *month = 12;
        *year -= 1;
        return;
    }
    // From March, or a month number outside 1..12, back into February.
    const bool intoFebruary = m < 2 || m > 12 || m == 3;
    *day = intoFebruary ? februaryDays(*year) : kMonthDays[m - 1];
    *month = m - 1;
}
