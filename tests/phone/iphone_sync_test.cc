// The phone sync against a loopback exchange: registration, batches of
// names just past 800 characters, the 1023-character cut of a request,
// progress, stops, and the taken-name alert.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "phone/iphone_sync.h"
#include "service_app.h"
#include "temp_home.h"

namespace {

const std::string kExchange = "/iphone/exchange.php";

class PhoneSync : public ServiceApp {
  protected:
    TempHome home;

    void SetUp() override {
        ServiceApp::SetUp();
        store().setiPhoneSync(true);
        store().setUsername("jane doe");
        store().setPassword("pw");
        store().setUUID("ABC-123");
        server.onPath(kExchange, ScriptedReply::ok("OK"));
    }

    void library(const std::vector<std::string>& artists) {
        std::string text = "<plist>\n";
        int id = 0;
        for (const std::string& artist : artists)
            text += "<dict>\n<key>Track ID</key><integer>" + std::to_string(++id) +
                    "</integer>\n<key>Artist</key><string>" + artist + "</string>\n</dict>\n";
        writeText(home.path() + "/library.xml", text + "</plist>\n");
        store().setiTunes_xml_path((home.path() + "/library.xml").c_str());
    }

    // The ARTISTS values of the add requests, in order.
    std::vector<std::string> batches() {
        const std::string prefix =
            kExchange + "?TODO=ADD_ARTISTS&USERNAME=jane+doe&PWD=pw&ARTISTS=";
        std::vector<std::string> out;
        for (const std::string& t : targets())
            if (t.rfind(prefix, 0) == 0) out.push_back(t.substr(prefix.size()));
        return out;
    }
};

std::vector<std::string> split(const std::string& batch) {
    std::vector<std::string> out;
    size_t at = 0;
    for (size_t sep; (sep = batch.find("@@", at)) != std::string::npos; at = sep + 2)
        out.push_back(batch.substr(at, sep - at));
    out.push_back(batch.substr(at));
    return out;
}

TEST_F(PhoneSync, OffSendsNothing) {
    store().setiPhoneSync(false);
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 0);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(PhoneSync, Registration) {
    server.enqueue(ScriptedReply::ok("<OK/>"));
    EXPECT_EQ(iPhoneSync_Initialize(app.get()), 0);
    EXPECT_EQ(targets()[0],
              kExchange + "?TODO=INITIALIZE_USER&USERNAME=jane+doe&UUID=ABC-123&PWD=pw");
    server.onPath(kExchange, ScriptedReply::ok("<ERROR>taken</ERROR>"));
    EXPECT_EQ(iPhoneSync_Initialize(app.get()), 1);
    goOffline();
    EXPECT_EQ(iPhoneSync_Initialize(app.get()), 2);
}

TEST_F(PhoneSync, ShortNamesGoOutInBatchesJustPast800) {
    std::vector<std::string> artists;
    for (int i = 0; i < 2000; ++i)
        artists.push_back("Band " + std::to_string(10000 + i));
    library(artists);
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 0);

    std::vector<std::string> sent = batches();
    ASSERT_GT(sent.size(), 2u);
    std::multiset<std::string> names;
    for (size_t i = 0; i < sent.size(); ++i) {
        if (i + 1 < sent.size()) {
            EXPECT_GT(sent[i].size(), 800u) << i;
            EXPECT_LE(sent[i].size(), 800u + 2u + 10u) << i; // a separator and one name more
        }
        EXPECT_NE(sent[i].substr(sent[i].size() - 2), "@@");
        for (const std::string& name : split(sent[i]))
            names.insert(name);
    }
    EXPECT_EQ(names.size(), 2000u);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 2000u);
    EXPECT_EQ(*names.begin(), "Band+10000"); // blanks sent as "+"
    EXPECT_EQ(store().getUpdatingProgress(), 100.0);
    EXPECT_FALSE(store().getUpdatingiPhone());
}

TEST_F(PhoneSync, LongBatchRequestIsCutAt1023) {
    library({std::string(250, 'a'), std::string(250, 'b'), std::string(250, 'c'),
             std::string(250, 'd')});
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 0);
    std::vector<RecordedRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    // The whole address, host included, was cut to 1023 characters.
    EXPECT_EQ(requests[1].target.size(), 1023u - server.url("").size());
    EXPECT_EQ(requests[1].target.back(), 'd');
}

TEST_F(PhoneSync, NamesAreCleanedForTheRequest) {
    library({"Bj\xc3\xb6rk", "Simon &#38; Garfunkel", "  Spoon", "Tom &amp; Jerry"});
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 0);
    std::vector<std::string> sent = batches();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0], "Bjrk@@Simon+and+Garfunkel@@Spoon@@Tom+amp+Jerry");
}

TEST_F(PhoneSync, TakenNameAlertsOnTheMainThreadAndStops) {
    library({"Wilco"});
    server.onPath(kExchange, ScriptedReply::ok("<ERROR>"));
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 1);
    EXPECT_EQ(server.requestCount(), 1u);
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(drainMainThreadQueue(), 1u);
    ASSERT_EQ(alerts().size(), 1u);
    EXPECT_NE(alerts()[0].find("Username already taken. | Sorry, that username is already taken.  "
                               "Please try a new name for your calendar."),
              std::string::npos);
}

TEST_F(PhoneSync, FailuresAndStopsEndTheSyncEarly) {
    library({"Wilco", "Spoon"});
    store().setForceUpdate(true);
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 1); // checked after the first name
    EXPECT_EQ(server.requestCount(), 1u);              // only the registration
    EXPECT_TRUE(store().getUpdatingiPhone());
    EXPECT_EQ(store().getUpdatingProgress(), 10.0);

    store().setForceUpdate(false);
    goOffline();
    EXPECT_EQ(iPhoneSync_addAllArtists(app.get()), 1);
    // The update run clears the flag of a sync that stopped early.
    app->calGetData.performUpdate(CalGetData::kTaskiPhone);
    EXPECT_FALSE(store().getUpdatingiPhone());
}

} // namespace
