// The grid's date arithmetic over 2000-2100, against an independent
// calendar, with the deliberate limits (no century rule; the weekday rule
// is right from March 2000 only).
#include "model/dates.h"

#include <gtest/gtest.h>

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date (H. Hinnant's
// days_from_civil), the reference weekday source.
int daysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yoe = y - era * 400;
    const int doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

int referenceWeekday(int y, int m, int d) {
    return (daysFromCivil(y, m, d) % 7 + 11) % 7;
}

// Month lengths of the grid's calendar: every fourth year is a leap year.
int gridMonthLength(int y, int m) {
    static const int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && y % 4 == 0 ? 29 : kLengths[m - 1];
}

TEST(GetDayOfTheWeek, KnownDates) {
    EXPECT_EQ(2, getDayOfTheWeek(1, 1, 2008));   // a Tuesday
    EXPECT_EQ(0, getDayOfTheWeek(15, 11, 2026)); // a Sunday
    EXPECT_EQ(3, getDayOfTheWeek(1, 3, 2000));   // a Wednesday
    EXPECT_EQ(4, getDayOfTheWeek(31, 12, 2099)); // a Thursday
}

TEST(GetDayOfTheWeek, MatchesTheCalendarFromMarch2000To2099) {
    for (int y = 2000; y <= 2099; ++y)
        for (int m = y == 2000 ? 3 : 1; m <= 12; ++m)
            for (int d = 1; d <= gridMonthLength(y, m); ++d)
                ASSERT_EQ(referenceWeekday(y, m, d), getDayOfTheWeek(d, m, y))
                    << y << "-" << m << "-" << d;
}

TEST(GetDayOfTheWeek, JanuaryAndFebruary2000AreOneDayEarly) {
    EXPECT_EQ(0, getDayOfTheWeek(1, 1, 2000)); // really a Saturday
    for (int m = 1; m <= 2; ++m)
        for (int d = 1; d <= gridMonthLength(2000, m); ++d)
            EXPECT_EQ((referenceWeekday(2000, m, d) + 1) % 7, getDayOfTheWeek(d, m, 2000));
}

TEST(IncrementDay, WalksEveryDayFrom2000To2100) {
    int d = 1, m = 1, y = 2000;
    for (int steps = 0; y < 2101; ++steps) {
        int ed = d + 1, em = m, ey = y;
        if (ed > gridMonthLength(y, m)) {
            ed = 1;
            if (++em > 12) {
                em = 1;
                ++ey;
            }
        }
        incrementDay(&d, &m, &y);
        ASSERT_EQ(ed, d) << steps;
        ASSERT_EQ(em, m) << steps;
        ASSERT_EQ(ey, y) << steps;
    }
}

TEST(IncrementDay, EdgesOfMonthsAndYears) {
    int d = 28, m = 2, y = 2100; // no century rule
    incrementDay(&d, &m, &y);
    EXPECT_EQ(29, d);
    EXPECT_EQ(2, m);
    d = 28, m = 2, y = 2009;
    incrementDay(&d, &m, &y);
    EXPECT_EQ(1, d);
    EXPECT_EQ(3, m);
    d = 31, m = 12, y = 2030;
    incrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 1 && m == 1 && y == 2031);
    d = 30, m = 4, y = 2030;
    incrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 1 && m == 5 && y == 2030);
}

TEST(DecrementDay, UndoesIncrementDayFrom2000To2100) {
    for (int y = 2000; y <= 2100; ++y)
        for (int m = 1; m <= 12; ++m)
            for (int d = 1; d <= gridMonthLength(y, m); ++d) {
                if (y == 2000 && m == 1 && d == 1) continue;
                int pd = d, pm = m, py = y;
                decrementDay(&pd, &pm, &py);
                int nd = pd, nm = pm, ny = py;
                incrementDay(&nd, &nm, &ny);
                ASSERT_TRUE(nd == d && nm == m && ny == y) << y << "-" << m << "-" << d;
            }
}

TEST(DecrementDay, EdgesOfMonthsAndYears) {
    int d = 1, m = 3, y = 2009;
    decrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 28 && m == 2 && y == 2009);
    d = 1, m = 3, y = 2008;
    decrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 29 && m == 2);
    d = 1, m = 1, y = 2010;
    decrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 31 && m == 12 && y == 2009);
    d = 1, m = 5, y = 2010;
    decrementDay(&d, &m, &y);
    EXPECT_TRUE(d == 30 && m == 4);
}

} // namespace
