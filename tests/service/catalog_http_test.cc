// What the plug-in reads on a search, over HTTP: coordinates, the sites of a
// place and radius, event pages filtered by distance, release pages, the
// version check, the geolocation page and the redirects.
#include "service_fixture.h"

#include "geo.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace service_test {
namespace {

size_t count(const std::string& text, const std::string& needle) {
    size_t n = 0;
    for (size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1))
        ++n;
    return n;
}

// The values of `tags` when `line` is exactly "<t1>v1</t1><t2>v2</t2>..."
// (after `prefix`, before `suffix`) with no tag character inside a value;
// empty when the layout differs.
std::vector<std::string> taggedValues(const std::string& line, const std::string& prefix,
                                      const std::vector<std::string>& tags,
                                      const std::string& suffix) {
    if (line.compare(0, prefix.size(), prefix) != 0) return {};
    size_t at = prefix.size();
    std::vector<std::string> values;
    for (const std::string& tag : tags) {
        const std::string open = "<" + tag + ">", close = "</" + tag + ">";
        if (line.compare(at, open.size(), open) != 0) return {};
        size_t end = line.find(close, at + open.size());
        if (end == std::string::npos) return {};
        std::string value = line.substr(at + open.size(), end - at - open.size());
        if (value.find_first_of("<>") != std::string::npos) return {};
        values.push_back(value);
        at = end + close.size();
    }
    if (line.substr(at) != suffix) return {};
    return values;
}

using CatalogHttp = ServiceTest;

TEST_F(CatalogHttp, LatLonAnswersKnownPlacesWithoutRegardToCaseOrBlanks) {
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Half+Degree&STATE=ZZ"),
              "<LAT>0.500000</LAT><LON>0.000000</LON>\n");
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=half++DEGREE&STATE=zz"),
              "<LAT>0.500000</LAT><LON>0.000000</LON>\n");
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Nowhere&STATE=ZZ"), "<NOTFOUND>\n");
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=&STATE="), "<NOTFOUND>\n");
}

TEST_F(CatalogHttp, SitesAreListedWhenTheirReachMeetsTheSearchRadius) {
    const std::string base = "/datasources/datasources.php?TODO=GETSITES&CITY=Origin&STATE=ZZ";
    std::string narrow = get(base + "&RADIUS=79&VERSION=2.9");
    EXPECT_EQ(count(narrow, "<site"), 1u);
    EXPECT_NE(narrow.find("<site id=\"1\">" + service_->publicUrl() +
                          "/events/events.php?site=1</site>"),
              std::string::npos);
    std::string wide = get(base + "&RADIUS=81&VERSION=2.9");
    EXPECT_EQ(count(wide, "<site"), 2u);
    EXPECT_EQ(count(wide, "ticket=1"), 0u);

    std::string far = get("/datasources/datasources.php?TODO=GETSITES&CITY=Far+Away&STATE=ZZ"
                          "&RADIUS=5&VERSION=2.9");
    EXPECT_NE(far.find("<site id=\"3\" ticket=1>"), std::string::npos);
    EXPECT_EQ(count(get(base.substr(0, base.find("&CITY")) + "&CITY=Nowhere&STATE=ZZ&RADIUS=50"),
                    "<site"),
              0u);
}

TEST_F(CatalogHttp, EventPageKeepsUpcomingEventsInsideTheRadiusOnly) {
    const std::string page = "/events/events.php?site=1&city=Origin&state=ZZ&radius=";
    std::string inside69 = get(page + "69");
    EXPECT_NE(inside69.find("<artist>Near Band</artist>"), std::string::npos);
    EXPECT_NE(inside69.find("<artist>Half Band</artist>"), std::string::npos);
    EXPECT_EQ(inside69.find("Edge Band"), std::string::npos); // 69.17 miles away
    EXPECT_NE(get(page + "70").find("Edge Band"), std::string::npos);
    EXPECT_EQ(get(page + "500").find("Past Band"), std::string::npos);
    EXPECT_EQ(get(page + "0").find("Half Band"), std::string::npos);
    // An unknown place has no events (the page is a bare line feed, which a
    // closing connection needs: see closeAfterReply).
    EXPECT_EQ(get("/events/events.php?site=1&city=Nowhere&state=ZZ&radius=50"), "\n");
}

TEST_F(CatalogHttp, EventRecordsAreCompleteLinesWithSupportingActsBeforeThem) {
    std::string body = get("/events/events.php?site=1&city=Origin&state=ZZ&radius=40");
    std::string date = service::slashDate(service::isoDateFromToday(2));
    std::string expected = "<artist>Opener One</artist>\n<artist>Opener Two</artist>\n"
                           "<event><artist>Half Band</artist><event_date>" + date +
                           "</event_date><venue_name>Half Club</venue_name><event_url>" +
                           service_->publicUrl() +
                           "/show.php?artist=Half Band</event_url><venue_city>Half Degree"
                           "</venue_city><venue_state>ZZ</venue_state></event>\n";
    EXPECT_NE(body.find(expected), std::string::npos) << body;
    // Every line that closes a record holds all six fields.
    const std::vector<std::string> fields = {"artist",    "event_date", "venue_name",
                                             "event_url", "venue_city", "venue_state"};
    size_t start = 0, records = 0;
    for (size_t end; (end = body.find('\n', start)) != std::string::npos; start = end + 1) {
        std::string line = body.substr(start, end - start);
        if (line.find("</event>") == std::string::npos) continue;
        std::vector<std::string> values = taggedValues(line, "<event>", fields, "</event>");
        ASSERT_EQ(values.size(), 6u) << line;
        EXPECT_EQ(std::count(values[1].begin(), values[1].end(), '/'), 2) << line;
        ++records;
    }
    EXPECT_EQ(records, 2u);
    EXPECT_EQ(start, body.size()); // the last line ends with a line feed too
}

TEST_F(CatalogHttp, CatalogueRepliesAreReusedForAMomentOnly) {
    config_.cacheMilliseconds = 300;
    startService();
    const std::string page = "/events/events.php?site=1&city=Origin&state=ZZ&radius=5";
    ASSERT_NE(get(page).find("Near Band"), std::string::npos);
    service::Catalog emptied = testCatalog();
    emptied.events.clear();
    storage_->replaceCatalog(emptied);
    EXPECT_NE(get(page).find("Near Band"), std::string::npos); // still the kept reply
    EXPECT_EQ(get("/events/events.php?site=1&city=Origin&state=ZZ&radius=6").find("Near Band"),
              std::string::npos); // another question is answered afresh
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    EXPECT_EQ(get(page).find("Near Band"), std::string::npos);
    int status = 0;
    get("/events/events.php?site=99&city=Origin&state=ZZ&radius=5", &status);
    EXPECT_EQ(status, 404);
}

TEST_F(CatalogHttp, UnknownSiteOrBadRadiusIsRefused) {
    int status = 0;
    get("/events/events.php?site=99&city=Origin&state=ZZ&radius=50", &status);
    EXPECT_EQ(status, 404);
    get("/events/events.php?site=1&city=Origin&state=ZZ&radius=ten", &status);
    EXPECT_EQ(status, 400);
    get("/events/events.php?site=1&city=Origin&state=ZZ&radius=-1", &status);
    EXPECT_EQ(status, 400);
}

TEST_F(CatalogHttp, ReleasesAreSpreadOverTenPagesInDateOrder) {
    std::vector<std::string> seen;
    for (int page = 0; page < 10; ++page) {
        int status = 0;
        std::string body =
            get("/CDReleases/data/cdReleasesData_" + std::to_string(page) + ".html", &status);
        EXPECT_EQ(status, 200);
        EXPECT_LE(count(body, "\n"), 3u);

        size_t start = 0;
        for (size_t end; (end = body.find('\n', start)) != std::string::npos; start = end + 1) {
            std::string text = body.substr(start, end - start);
            if (text.empty()) continue; // an empty page is one line feed
            std::vector<std::string> values = taggedValues(text, "", {"D", "A", "T", "F", "L"}, "");
            ASSERT_EQ(values.size(), 5u) << text;
            EXPECT_TRUE(service::checkedIsoDate(values[0])) << text;
            EXPECT_EQ(values[3], "Import@@Live@@");
            EXPECT_EQ(values[4].size(), 10u);
            seen.push_back(values[0]);
        }
    }
    ASSERT_EQ(seen.size(), 25u); // the past release is left out
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    int status = 0;
    get("/CDReleases/data/cdReleasesData_10.html", &status);
    EXPECT_EQ(status, 404);
}

TEST_F(CatalogHttp, ClickThroughsRedirectToAbsoluteAddresses) {
    auto result = getResult("/clickthrough.php?target=http://site.example/e?id=4&from=sb");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 302);
    EXPECT_EQ(result->get_header_value("Location"), "http://site.example/e?id=4&from=sb");

    result = getResult("/CDReleases/cdreleaseclickthrough.php?ASIN=B000000000&CITY=Origin&STATE=ZZ");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->get_header_value("Location"), "https://store.example/album0");
    result = getResult("/CDReleases/cdreleaseclickthrough.php?ASIN=B000000001&CITY=Origin&STATE=ZZ");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->get_header_value("Location"),
              service_->publicUrl() + "/release.php?ASIN=B000000001");
    EXPECT_NE(get("/release.php?ASIN=B000000001").find("Artist 1: Album 1"), std::string::npos);

    for (const char* refused : {"/clickthrough.php?target=javascript:alert(1)",
                                "/clickthrough.php?target=", "/clickthrough.php",
                                "/CDReleases/cdreleaseclickthrough.php?ASIN=NOPE"}) {
        int status = 0;
        get(refused, &status);
        EXPECT_GE(status, 400) << refused;
    }
}

TEST_F(CatalogHttp, VersionCheckAnswersCurrentOrAMessage) {
    EXPECT_EQ(get("/current_version.php?VERSION=2.9&OS=MAC"), "<current>\n");
    EXPECT_EQ(get("/current_version.php?VERSION=3.0&OS=MAC"), "<current>\n");
    std::string older = get("/current_version.php?VERSION=2.8&OS=MAC");
    EXPECT_EQ(older.find("<current>"), std::string::npos);
    EXPECT_NE(older.find("<message>Stagebeacon 2.9 "), std::string::npos);
    EXPECT_NE(older.find("</message>"), std::string::npos);
}

TEST_F(CatalogHttp, GeolocationPagePlacesLoopbackClients) {
    // The test connects from 127.0.0.1: no range holds it, the default applies.
    EXPECT_NE(get("/ip-location").find(">UNITED STATES, MASSACHUSETTS, BOSTON</span>"),
              std::string::npos);
    config_.loopbackCity = "WORCESTER";
    startService();
    EXPECT_NE(get("/ip-location").find(">UNITED STATES, MASSACHUSETTS, WORCESTER</span>"),
              std::string::npos);
}

TEST_F(CatalogHttp, LinkedPagesAreServed) {
    for (const char* page : {"/", "/download.php", "/iphone.php", "/android.php",
                             "/donations.php", "/iphonelink.php"}) {
        int status = 0;
        std::string body = get(page, &status);
        EXPECT_EQ(status, 200) << page;
        EXPECT_NE(body.find("<h1>"), std::string::npos) << page;
    }
    EXPECT_EQ(get("/health"), "OK\n");
    auto result = getResult("/download/download_mac_redirect.php");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 302);
    EXPECT_EQ(result->get_header_value("Location"), service_->publicUrl() + "/download.php");
}

} // namespace
} // namespace service_test
