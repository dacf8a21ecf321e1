// CalGetData::getURL: the settings it gives the client for each request, the
// version-check agent, and what it records in the store.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "client_state.h"
#include "loopback_server.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/http_fetch.h"

namespace {

class GetUrl : public ::testing::Test {
  protected:
    void SetUp() override {
        resetHttpClient();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("STAGEBEACON_SERVICE");
        resetHttpClient();
    }

    int get(const std::string& url) {
        snprintf(engine().requestUrl, sizeof engine().requestUrl, "%s", url.c_str());
        return engine().getURL();
    }
    CalGetData& engine() { return app.calGetData; }
    std::string lastAgent() {
        std::string agent;
        EXPECT_TRUE(server.requests().back().header("User-Agent", &agent));
        return agent;
    }

    LoopbackServer server;
    StagebeaconClass app;
};

TEST_F(GetUrl, OrdinaryRequestsCarryEmptyAgentAndReferer) {
    server.enqueue(ScriptedReply::ok("<page>"));
    app.protectedData.setValid_internet_connection(false);
    ASSERT_EQ(get(server.url("/datasources/datasources.php?TODO=GETSITES")), 0);
    EXPECT_STREQ(engine().fetchBuffer.get(), "<page>");
    EXPECT_EQ(engine().fetchBuffer.size(), 6u);
    EXPECT_TRUE(app.protectedData.getValid_internet_connection());
    EXPECT_EQ(timeout, 60);
    EXPECT_EQ(followRedirects, 3);
    const std::string raw = server.requests()[0].raw;
    EXPECT_NE(raw.find("\r\nReferer: \r\nUser-Agent: \r\nConnection: Close\r\n"), std::string::npos)
        << raw;
}

TEST_F(GetUrl, VersionCheckIdentifiesReleaseAndUser) {
    app.protectedData.setUUID("0F2A-77");
    server.enqueue(ScriptedReply::ok("<current>"));
    ASSERT_EQ(get(server.url("/current_version.php?VERSION=2.9&OS=MAC")), 0);
    EXPECT_EQ(lastAgent(), "version:2.9 uuid:0F2A-77");

    // The agent is cut to 127 characters.
    app.protectedData.setUUID(std::string(127, 'U').c_str());
    server.enqueue(ScriptedReply::ok("<current>"));
    ASSERT_EQ(get(server.url("/current_version.php")), 0);
    EXPECT_EQ(lastAgent(), ("version:2.9 uuid:" + std::string(127, 'U')).substr(0, 127));

    // Any other path is an ordinary request.
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(get("http://" + server.hostPort() + "//current_version.php"), 0);
    EXPECT_EQ(lastAgent(), "");
}

TEST_F(GetUrl, VersionPageDoesNotVouchForTheConnection) {
    app.protectedData.setValid_internet_connection(false);
    server.enqueue(ScriptedReply::ok("x"));
    ASSERT_EQ(get(server.url("/current_version.html")), 0);
    EXPECT_FALSE(app.protectedData.getValid_internet_connection());
}

TEST_F(GetUrl, FailureIsReportedAndRecorded) {
    server.enqueue(ScriptedReply::ok("first"));
    ASSERT_EQ(get(server.url("/one")), 0);
    server.enqueue(ScriptedReply::status(404, "Not Found", "Content-Length: 0\r\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(get(server.url("/two")), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Request returned a status code of 404\n");
    EXPECT_FALSE(app.protectedData.getValid_internet_connection());
    EXPECT_STREQ(engine().fetchBuffer.get(), "first") << "a failure stores nothing";

    server.enqueue(ScriptedReply::status(200, "OK", "", "second"));
    ASSERT_EQ(get(server.url("/three")), 0);
    EXPECT_STREQ(engine().fetchBuffer.get(), "second");
    EXPECT_TRUE(app.protectedData.getValid_internet_connection());
}

TEST_F(GetUrl, UnterminatedRequestUrlIsCutAtItsLastByte) {
    std::string url = server.url("/") + std::string(2000, 'a');
    memcpy(engine().requestUrl, url.data(), sizeof engine().requestUrl);
    server.enqueue(ScriptedReply::ok("ok"));
    ASSERT_EQ(engine().getURL(), 0);
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].target.size(), 1023u - server.url("").size());
}

} // namespace
