// The pure helpers: query parsing as the plug-in writes queries, distances
// and boxes, calendar dates, address ranges, reply escaping.
#include "geo.h"
#include "query.h"
#include "replies.h"
#include "text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kPi = 3.141592653589793;

TEST(Query, PlusIsABlankAndPercentIsPlainText) {
    service::Query query("TODO=GETLATLON&CITY=San+Francisco&STATE=100%25", {"TODO", "CITY", "STATE"});
    EXPECT_EQ(query.get("CITY"), "San Francisco");
    EXPECT_EQ(query.get("state"), "100%25");
    EXPECT_EQ(query.problem(), service::Query::Problem::None);
}

TEST(Query, UnknownPiecesContinueTheValueBeforeThem) {
    service::Query query("URL=http://s.example/e?a=1&b=2&OTHERARTISTS=x&y", {"URL", "OTHERARTISTS"});
    EXPECT_EQ(query.get("URL"), "http://s.example/e?a=1&b=2");
    EXPECT_EQ(query.get("OTHERARTISTS"), "x&y");
}

TEST(Query, RepeatedKeysKeepTheFirstAndMissingKeysAreNamed) {
    service::Query query("A=1&A=2&B=", {"A", "B", "C"});
    EXPECT_EQ(query.get("A"), "1");
    EXPECT_TRUE(query.has("B"));
    EXPECT_EQ(query.get("B"), "");
    EXPECT_EQ(query.firstMissing({"A", "B", "C"}), "C");
}

TEST(Query, OversizedAndControlValuesAreFlagged) {
    EXPECT_EQ(service::Query("A=" + std::string(1025, 'x'), {"A"}).problem(),
              service::Query::Problem::ValueTooLong);
    EXPECT_EQ(service::Query("A=" + std::string(1024, 'x'), {"A"}).problem(),
              service::Query::Problem::None);
    EXPECT_EQ(service::Query(std::string("A=a\0b", 5), {"A"}).problem(),
              service::Query::Problem::ControlCharacter);
}

TEST(Distance, HaversineMatchesKnownFigures) {
    EXPECT_DOUBLE_EQ(service::milesBetween(42.36, -71.06, 42.36, -71.06), 0.0);
    EXPECT_NEAR(service::milesBetween(0, 0, 1, 0), 69.17, 0.01);
    // Boston to New York, about 190 miles.
    EXPECT_NEAR(service::milesBetween(42.3601, -71.0589, 40.7128, -74.0060), 190.5, 1.5);
}

TEST(Distance, BoxesHoldEveryPointInsideTheRadius) {
    for (double lat : {0.0, 45.0, 70.0, -60.0}) {
        service::Box box = service::boxAround(lat, 179.5, 100);
        for (int bearing = 0; bearing < 360; bearing += 15) {
            double dlat = 99.0 / 69.17 * std::cos(bearing * kPi / 180);
            double dlon = 99.0 / 69.17 * std::sin(bearing * kPi / 180) / std::cos(lat * kPi / 180);
            double plat = lat + dlat, plon = 179.5 + dlon;
            if (plon > 180) plon -= 360;
            if (service::milesBetween(lat, 179.5, plat, plon) > 100) continue;
            EXPECT_TRUE(plat >= box.minLat && plat <= box.maxLat && plon >= box.minLon &&
                        plon <= box.maxLon)
                << lat << " " << bearing;
        }
    }
}

TEST(Dates, CivilDaysRoundTripAndBadDatesAreRefused) {
    int y, m, d;
    service::civilFromDays(service::daysFromCivil(2024, 2, 29) + 1, y, m, d);
    EXPECT_EQ(y * 10000 + m * 100 + d, 20240301);
    EXPECT_EQ(service::slashDate("2009-07-04"), "7/4/2009");
    EXPECT_TRUE(service::checkedIsoDate("2024-02-29"));
    EXPECT_FALSE(service::checkedIsoDate("2023-02-29"));
    EXPECT_FALSE(service::checkedIsoDate("2023-13-01"));
    EXPECT_FALSE(service::checkedIsoDate("2023-1-01"));
    EXPECT_LT(service::isoDateFromToday(-1), service::isoDateFromToday(0));
}

TEST(Addresses, RangesAndAddressesParse) {
    uint32_t first = 0, last = 0;
    ASSERT_TRUE(service::parseIpRange("10.1.2.3/8", first, last));
    EXPECT_EQ(first, 0x0a000000u);
    EXPECT_EQ(last, 0x0affffffu);
    ASSERT_TRUE(service::parseIpRange("0.0.0.0/0", first, last));
    EXPECT_EQ(last, 0xffffffffu);
    ASSERT_TRUE(service::parseIpRange("1.2.3.4-1.2.3.9", first, last));
    EXPECT_EQ(last - first, 5u);
    EXPECT_FALSE(service::parseIpRange("1.2.3.9-1.2.3.4", first, last));
    EXPECT_FALSE(service::parseIpRange("1.2.3.4/33", first, last));
    EXPECT_FALSE(service::parseIpv4("256.1.1.1"));
    EXPECT_FALSE(service::parseIpv4("1.2.3"));
    EXPECT_FALSE(service::parseIpv4("::1"));
}

TEST(Replies, ValuesCannotOpenOrCloseTagsOrLines) {
    std::string page;
    service::Event event;
    event.date = "2031-01-02";
    event.artists = {"Head</artist>\nliner", "Opener"};
    event.venue = "<b>Club</b>";
    service::appendEventLines(page, event, "http://h");
    EXPECT_EQ(page, "<artist>Opener</artist>\n<event><artist>Head/artist liner</artist><event_date>"
                    "1/2/2031</event_date><venue_name>bClub/b</venue_name><event_url></event_url>"
                    "<venue_city></venue_city><venue_state></venue_state></event>\n");
    EXPECT_EQ(service::ipLocationPage(service::Location{"Germany", "Bayern, Ost", "Munchen"})
                  .find(">GERMANY, Bayern  Ost, Munchen</span>") != std::string::npos,
              true);
    EXPECT_EQ(service::nameKey("  New   YORK "), "new york");
}

} // namespace
