// Requests nobody well-meaning sends: missing keys, huge values, quotes,
// NUL bytes, SQL text, garbage request lines. Each gets a clear refusal or
// an ordinary answer, and the service keeps answering afterwards.
#include "service_fixture.h"

#include <chrono>

namespace service_test {
namespace {

using HostileHttp = ServiceTest;


TEST_F(HostileHttp, MissingKeysGetAReadableRefusal) {
    for (const char* target :
         {"/zipcodes/zipcodes.php", "/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Origin",
          "/datasources/datasources.php?TODO=GETSITES&CITY=Origin&STATE=ZZ",
          "/events/events.php?site=1", "/sharing/sharing.php", "/sharing/sharing.php?TODO=",
          "/sharing/sharing.php?TODO=USER_EXISTS", "/iphone/exchange.php?TODO=ADD_ARTISTS",
          "/zipcodes/zipcodes.php?TODO=DROP&CITY=a&STATE=b"}) {
        int status = 0;
        std::string body = get(target, &status);
        EXPECT_EQ(status, 400) << target;
        EXPECT_EQ(body.rfind("Error: ", 0), 0u) << target << ": " << body;
    }
    int status = 0;
    get("/no/such/page.php", &status);
    EXPECT_EQ(status, 404);
}

TEST_F(HostileHttp, OversizedValuesAreRefusedWithoutHarm) {
    const std::string big(100 * 1024, 'x');
    auto result = getResult("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=" + big + "&STATE=ZZ");
    ASSERT_TRUE(result);
    EXPECT_GE(result->status, 400);
    // Under the library's line limit but over ours.
    const std::string long1500(1500, 'y');
    int status = 0;
    std::string body = get("/sharing/sharing.php?TODO=USER_EXISTS&USERNAME=" + long1500, &status);
    EXPECT_EQ(status, 400);
    EXPECT_EQ(body.rfind("Error: value longer than", 0), 0u);
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Origin&STATE=ZZ"),
              "<LAT>0.000000</LAT><LON>0.000000</LON>\n");
}

TEST_F(HostileHttp, QuotesAndSqlTextAreJustText) {
    const std::string injected = "x'+OR+'1'='1\";--+DROP+TABLE+sharing_users;--";
    EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=" + injected + "&STATE=ZZ"),
              "<NOTFOUND>\n");
    EXPECT_NE(get("/sharing/sharing.php?TODO=USER_EXISTS&USERNAME=" + injected).find("Error"),
              std::string::npos);
    EXPECT_NE(get("/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=" + injected)
                  .find("StagebeaconError"),
              std::string::npos);
    ASSERT_EQ(get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=" + injected +
                  "&CITY=O'Brien&STATE=ZZ&FIRSTNAME=%27&LASTNAME=%00"),
              "<OK>\n");
    EXPECT_TRUE(storage_->sharingUserOwnedBy("ann", "x' OR '1'='1\";-- DROP TABLE sharing_users;--"));
    EXPECT_NE(get("/sharing/sharing.php?TODO=GETLOCALUSERS&CITY=O'Brien&STATE=ZZ")
                  .find("<FIRSTNAME>%27</FIRSTNAME><LASTNAME>%00</LASTNAME>"),
              std::string::npos);
}

TEST_F(HostileHttp, ControlBytesAndGarbageLinesNeverStopTheService) {
    const std::string withNul("GET /zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Or\0igin&STATE=ZZ "
                              "HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n",
                              101);
    std::string answer = rawExchange(withNul);
    EXPECT_EQ(answer.find("<LAT>"), std::string::npos);
    EXPECT_NE(answer.rfind("HTTP/1.1 4", 0), std::string::npos) << answer;
    for (const std::string& garbage :
         {std::string("\r\n\r\n"), std::string("GET\r\n\r\n"), std::string(20000, 'A'),
          std::string("GET / HTTP/9.9\r\n\r\n"), std::string("POST / HTTP/1.1\r\nContent-Length: "
                                                              "99999999999\r\n\r\nabc"),
          std::string("GET /zipcodes/zipcodes.php?CITY=\x01\x02&TODO=GETLATLON&STATE=ZZ "
                      "HTTP/1.1\r\nConnection: close\r\n\r\n"),
          std::string("\xff\xfe\x00\x01", 4)}) {
        rawExchange(garbage, 200);
        EXPECT_EQ(get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Origin&STATE=ZZ"),
                  "<LAT>0.000000</LAT><LON>0.000000</LON>\n")
            << garbage.substr(0, 40);
    }
}

TEST_F(HostileHttp, PlugInStyleRequestsAreAnsweredAndClosedAtOnce) {
    ASSERT_EQ(get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=ann&UUID=U&CITY=a&STATE=b"
                  "&FIRSTNAME=c&LASTNAME=d"),
              "<OK>\n");
    // What the plug-in's client writes: one request, Connection: Close, read to the end.
    std::string answer = rawExchange(
        "GET /sharing/sharing.php?TODO=ADD_SHOW&USERNAME=ann&UUID=U&YEAR=2031&MONTH=1&DAY=2"
        "&TICKETSAVAILABLE=0&ARTIST=A&VENUE=V&LOCATION=L&URL=http://s.example/e?id=3&OTHERARTISTS="
        " HTTP/1.1\r\nHost: 127.0.0.1\r\nReferer: \r\nUser-Agent: \r\nConnection: Close\r\n\r\n");
    EXPECT_EQ(answer.rfind("HTTP/1.1 200", 0), 0u) << answer;
    EXPECT_NE(answer.find("<OK>"), std::string::npos);
    EXPECT_EQ(answer.find("Error"), std::string::npos) << answer;
    EXPECT_NE(answer.find("Connection: close"), std::string::npos);
    EXPECT_NE(get("/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=ann")
                  .find("@@http://s.example/e?id=3@@"),
              std::string::npos);
}

TEST_F(HostileHttp, CloseInAnySpellingEndsTheConnectionAndKeepAliveServesMore) {
    using Clock = std::chrono::steady_clock;
    for (const char* token : {"Close", "close", "CLOSE"}) {
        Clock::time_point start = Clock::now();
        std::string answer = rawExchange(
            std::string("GET /events/events.php?site=1&city=Nowhere&state=ZZ&radius=5 HTTP/1.1\r\n"
                        "Host: x\r\nConnection: ") + token + "\r\n\r\n",
            3000);
        EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500)) << token;
        EXPECT_EQ(answer.rfind("HTTP/1.1 200", 0), 0u) << answer;
    }
    // Without the token the connection stays for the next request.
    RawConnection connection(service_->port());
    for (int i = 0; i < 3; ++i) {
        connection.send("GET /health HTTP/1.1\r\nHost: x\r\n\r\n");
        EXPECT_NE(connection.receive("\r\n\r\nOK\n", 2000).find("\r\n\r\nOK\n"),
                  std::string::npos)
            << i;
        EXPECT_FALSE(connection.closedByPeer());
    }
}

} // namespace
} // namespace service_test
