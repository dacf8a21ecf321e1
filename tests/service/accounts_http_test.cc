// Shared calendars and the phone exchange over HTTP: registration and its
// races, shows added and withdrawn, nearby users, phone passwords.
#include "service_fixture.h"

#include "text.h"

#include <atomic>
#include <thread>

namespace service_test {
namespace {

const std::string kSharing = "/sharing/sharing.php?TODO=";
const std::string kExchange = "/iphone/exchange.php?TODO=";

std::string registration(const std::string& name, const std::string& uuid,
                         const std::string& city = "Origin") {
    return kSharing + "INITIALIZE_USER&USERNAME=" + name + "&UUID=" + uuid + "&CITY=" + city +
           "&STATE=ZZ&FIRSTNAME=Ann&LASTNAME=Lee";
}

std::string show(const std::string& todo, const std::string& name, const std::string& uuid,
                 int day, const std::string& url = "http://site.example/e?id=1&x=2") {
    return kSharing + todo + "&USERNAME=" + name + "&UUID=" + uuid + "&YEAR=2031&MONTH=7&DAY=" +
           std::to_string(day) + "&TICKETSAVAILABLE=1&ARTIST=Simon+&+Garfunkel&VENUE=Fenway+Park"
           "&LOCATION=Boston,+MA&URL=" + url + "&OTHERARTISTS=Paul+Simon";
}

using SharingHttp = ServiceTest;

TEST_F(SharingHttp, ANameBelongsToTheUuidThatRegisteredIt) {
    EXPECT_NE(get(kSharing + "USER_EXISTS&USERNAME=Ann+Lee").find("Error"), std::string::npos);
    EXPECT_EQ(get(registration("Ann+Lee", "UUID-1")).find("Error"), std::string::npos);
    EXPECT_EQ(get(kSharing + "USER_EXISTS&USERNAME=ann+lee").find("Error"), std::string::npos);
    // The same installation may register again (details change), another may not.
    EXPECT_EQ(get(registration("Ann+Lee", "UUID-1", "Half+Degree")).find("Error"),
              std::string::npos);
    EXPECT_NE(get(registration("ANN+LEE", "UUID-2")).find("Error"), std::string::npos);
    std::string near = get(kSharing + "GETLOCALUSERS&CITY=Half+Degree&STATE=ZZ");
    EXPECT_NE(near.find("<entry><USERNAME>Ann Lee</USERNAME><CITY>Half Degree</CITY><STATE>ZZ"
                        "</STATE><FIRSTNAME>Ann</FIRSTNAME><LASTNAME>Lee</LASTNAME></entry>"),
              std::string::npos);
    EXPECT_EQ(get(kSharing + "GETLOCALUSERS&CITY=Origin&STATE=ZZ").find("<entry>"),
              std::string::npos);
}

TEST_F(SharingHttp, TwoInstallationsRacingForOneNameLeaveOneOwner) {
    for (int round = 0; round < 5; ++round) {
        const std::string name = "racer" + std::to_string(round);
        std::atomic<int> accepted{0};
        std::vector<std::thread> racers;
        for (int i = 0; i < 2; ++i) {
            racers.emplace_back([&, i] {
                std::string body = get(registration(name, "RACE-" + std::to_string(i)));
                if (!body.empty() && body.find("Error") == std::string::npos) ++accepted;
            });
        }
        for (auto& racer : racers) racer.join();
        EXPECT_EQ(accepted.load(), 1) << name;
    }
}

TEST_F(SharingHttp, ShowsAreAddedOnceListedAndDeleted) {
    ASSERT_EQ(get(registration("ann", "UUID-1")), "<OK>\n");
    // The show address keeps its own "?" and "&".
    EXPECT_EQ(get(show("ADD_SHOW", "ann", "UUID-1", 4)), "<OK>\n");
    EXPECT_EQ(get(show("ADD_SHOW", "ann", "UUID-1", 4)), "<OK>\n");
    EXPECT_EQ(get(show("ADD_SHOW", "ann", "UUID-1", 9)), "<OK>\n");
    EXPECT_NE(get(show("ADD_SHOW", "ann", "WRONG-UUID", 5)).find("Error"), std::string::npos);

    std::string shows = get(kSharing + "DISPLAY_USER_SHOWS&USERNAME=ann");
    EXPECT_NE(shows.find("<event>2031@@7@@4@@1@@Simon & Garfunkel@@Fenway Park@@Boston, MA@@"
                         "http://site.example/e?id=1&x=2@@Paul Simon\n</event>"),
              std::string::npos)
        << shows;
    EXPECT_NE(shows.find("<event>2031@@7@@9@@"), std::string::npos);
    EXPECT_EQ(shows.find("@@5@@"), std::string::npos);

    EXPECT_EQ(get(show("DELETE_SHOW", "ann", "UUID-1", 4)), "<OK>\n");
    shows = get(kSharing + "DISPLAY_USER_SHOWS&USERNAME=ann");
    EXPECT_EQ(shows.find("@@7@@4@@"), std::string::npos);
    EXPECT_NE(shows.find("@@7@@9@@"), std::string::npos);
    EXPECT_NE(get(kSharing + "DISPLAY_USER_SHOWS&USERNAME=nobody").find("StagebeaconError"),
              std::string::npos);
}

TEST_F(SharingHttp, ShowFieldsCannotBreakTheBlockLayout) {
    ASSERT_EQ(get(registration("ann", "UUID-1")), "<OK>\n");
    std::string tricky = kSharing + "ADD_SHOW&USERNAME=ann&UUID=UUID-1&YEAR=2031&MONTH=1&DAY=2"
                         "&TICKETSAVAILABLE=0&ARTIST=A@@B</event>&VENUE=V&LOCATION=L&URL=U"
                         "&OTHERARTISTS=O";
    ASSERT_EQ(get(tricky), "<OK>\n");
    std::string shows = get(kSharing + "DISPLAY_USER_SHOWS&USERNAME=ann");
    size_t open = shows.find("<event>") + 7;
    std::string block = shows.substr(open, shows.find("</event>", open) - open);
    std::vector<std::string> fields = service::split(block, "@@");
    ASSERT_EQ(fields.size(), 9u) << shows;
    EXPECT_EQ(fields[4], "A@B/event");
    EXPECT_EQ(fields[8], "O\n");
}

TEST_F(SharingHttp, MalformedShowRequestsAreRefused) {
    ASSERT_EQ(get(registration("ann", "UUID-1")), "<OK>\n");
    int status = 0;
    get(kSharing + "ADD_SHOW&USERNAME=ann&UUID=UUID-1", &status);
    EXPECT_EQ(status, 400);
    std::string badDay = show("ADD_SHOW", "ann", "UUID-1", 32);
    get(badDay, &status);
    EXPECT_EQ(status, 400);
    get(kSharing + "FLY_TO_MOON", &status);
    EXPECT_EQ(status, 400);
    get(registration("bad;name", "UUID-9"), &status);
    EXPECT_EQ(status, 400);
}

using ExchangeHttp = ServiceTest;

TEST_F(ExchangeHttp, PasswordsGuardTheAccountAndAreStoredHashed) {
    EXPECT_EQ(get(kExchange + "INITIALIZE_USER&USERNAME=ann&UUID=U1&PWD=secret1"), "<OK>\n");
    auto account = storage_->phoneAccount("ann");
    ASSERT_TRUE(account);
    EXPECT_EQ(account->passwordHash.find("secret1"), std::string::npos);
    EXPECT_EQ(account->passwordHash.rfind("$argon2id$", 0), 0u);

    // Another installation: only with the right password.
    EXPECT_NE(get(kExchange + "INITIALIZE_USER&USERNAME=ann&UUID=U2&PWD=guess").find("<ERROR>"),
              std::string::npos);
    EXPECT_EQ(get(kExchange + "INITIALIZE_USER&USERNAME=ann&UUID=U2&PWD=secret1"), "<OK>\n");
    // The owning installation may change it.
    EXPECT_EQ(get(kExchange + "INITIALIZE_USER&USERNAME=ann&UUID=U1&PWD=secret2"), "<OK>\n");

    EXPECT_NE(get(kExchange + "ADD_ARTISTS&USERNAME=ann&PWD=secret1&ARTISTS=Beck").find("<ERROR>"),
              std::string::npos);
    EXPECT_EQ(get(kExchange + "ADD_ARTISTS&USERNAME=ann&PWD=secret2&ARTISTS=Simon+and+Garfunkel"
                              "@@Beck@@@@Norah+Jones"),
              "<OK>\n");
    EXPECT_EQ(get(kExchange + "ADD_ARTISTS&USERNAME=ann&PWD=secret2&ARTISTS=Beck"), "<OK>\n");
    EXPECT_EQ(storage_->phoneArtists("ann"),
              (std::vector<std::string>{"Beck", "Norah Jones", "Simon and Garfunkel"}));
}

} // namespace
} // namespace service_test
