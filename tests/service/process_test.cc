// The real binary: started with one command on a fresh database it serves
// the demo, and a SIGKILL right after an acknowledged write loses nothing.
#include "service_fixture.h"
#include "service_process.h"


namespace service_test {
namespace {

// A GET through cpp-httplib, the body or "(no reply)".
std::string get(const ServiceProcess& service, const std::string& target) {
    httplib::Client client("127.0.0.1", service.port());
    client.set_url_encode(false);
    client.set_read_timeout(10);
    auto result = client.Get(target.c_str());
    return result ? result->body : std::string("(no reply)");
}

TEST(ServiceProcess, FreshDatabaseServesTheDemoAndSurvivesSigkill) {
    TempFolder folder;
    const std::string db = folder.path() + "/fresh.db";
    {
        ServiceProcess first(STAGEBEACON_SERVICE_BINARY, db);
        ASSERT_GT(first.port(), 0);
        EXPECT_NE(get(first, "/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Boston&STATE=MA")
                      .find("<LAT>42.36"),
                  std::string::npos);
        EXPECT_NE(get(first, "/datasources/datasources.php?TODO=GETSITES&CITY=Boston&STATE=MA"
                            "&RADIUS=50&VERSION=2.9")
                      .find("ticket=1>"),
                  std::string::npos);
        ASSERT_EQ(get(first, "/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=kim&UUID=K1"
                            "&CITY=Boston&STATE=MA&FIRSTNAME=Kim&LASTNAME=Lo"),
                  "<OK>\n");
        ASSERT_EQ(get(first, "/iphone/exchange.php?TODO=INITIALIZE_USER&USERNAME=kim&UUID=K1"
                            "&PWD=pw1"),
                  "<OK>\n");
        first.kill(); // no chance to flush anything after the replies
    }
    ServiceProcess second(STAGEBEACON_SERVICE_BINARY, db);
    ASSERT_GT(second.port(), 0);
    EXPECT_NE(get(second, "/sharing/sharing.php?TODO=GETLOCALUSERS&CITY=Boston&STATE=MA")
                  .find("<USERNAME>kim</USERNAME>"),
              std::string::npos);
    EXPECT_EQ(get(second, "/iphone/exchange.php?TODO=ADD_ARTISTS&USERNAME=kim&PWD=pw1&ARTISTS=Beck"),
              "<OK>\n");
}

} // namespace
} // namespace service_test
