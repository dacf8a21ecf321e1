// The HTTP client against a scripted loopback peer: the request it sends,
// how it judges status lines and redirects, its header and body limits, its
// time-outs, and that no path leaves a socket open.
#include "net/http_fetch.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include "client_state.h"
#include "loopback_server.h"

namespace {

int openDescriptors() {
    int count = 0;
    DIR* dir = opendir("/proc/self/fd");
    if (!dir) return -1;
    while (readdir(dir))
        ++count;
    closedir(dir);
    return count;
}

// A fetch that keeps its page in a std::string and frees the block.
struct Fetched {
    int result = -1;
    std::string body;
    bool terminated = false;
};

Fetched fetch(const std::string& url) {
    Fetched out;
    char* page = nullptr;
    out.result = http_fetch(url.c_str(), &page);
    if (page) {
        out.body.assign(page, out.result > 0 ? static_cast<size_t>(out.result) : 0);
        out.terminated = page[out.result > 0 ? out.result : 0] == '\0';
        free(page);
    }
    return out;
}

class HttpFetch : public ::testing::Test {
  protected:
    void SetUp() override {
        resetHttpClient();
        http_setTimeout(5);
    }
    void TearDown() override {
        resetHttpClient();
        server.stop();
        EXPECT_EQ(openDescriptors(), descriptorsBefore) << "a socket was left open";
    }

    void expectClientError(int index, int number) {
        EXPECT_EQ(errorSource, 0);
        EXPECT_EQ(http_errno, index);
        EXPECT_EQ(errorInt, number);
    }

    // Counted before the server opens its own descriptors; TearDown stops
    // the server, so any difference is the client's.
    int descriptorsBefore = openDescriptors();
    LoopbackServer server;
};

TEST_F(HttpFetch, BareHostWithPortAsksForRootAndSendsWholeHost) {
    server.enqueue(ScriptedReply::ok("hi"));
    Fetched got = fetch(server.hostPort()); // no "://", no "/"
    EXPECT_EQ(got.result, 2);
    EXPECT_EQ(got.body, "hi");
    EXPECT_TRUE(got.terminated);
    auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].requestLine, "GET / HTTP/1.1");
    std::string host;
    ASSERT_TRUE(requests[0].header("Host", &host));
    EXPECT_EQ(host, server.hostPort());
}

TEST_F(HttpFetch, SendsHeaderFieldsInOrderAndThePathUnescaped) {
    ASSERT_EQ(http_setReferer("http://ref/"), 0);
    ASSERT_EQ(http_setUserAgent("agent 1"), 0);
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(fetch(server.url("/a b?x=1&y=a+b")).result, 0);
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].raw, "GET /a b?x=1&y=a+b HTTP/1.1\r\n"
                                        "Host: " +
                                            server.hostPort() +
                                            "\r\n"
                                            "Referer: http://ref/\r\n"
                                            "User-Agent: agent 1\r\n"
                                            "Connection: Close\r\n\r\n");
}

TEST_F(HttpFetch, AgentAndRefererLinesFollowTheSettings) {
    // Never set: the default agent, no referer.
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(fetch(server.url("/")).result, 0);
    // Empty texts still give their lines, with empty values.
    ASSERT_EQ(http_setUserAgent(""), 0);
    ASSERT_EQ(http_setReferer(""), 0);
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(fetch(server.url("/")).result, 0);
    // Null hides both; the copy made before does not depend on the caller.
    char agent[] = "mine";
    ASSERT_EQ(http_setUserAgent(agent), 0);
    agent[0] = 'X';
    ASSERT_EQ(http_setReferer(nullptr), 0);
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(fetch(server.url("/")).result, 0);
    ASSERT_EQ(http_setUserAgent(nullptr), 0);
    server.enqueue(ScriptedReply::ok(""));
    ASSERT_EQ(fetch(server.url("/")).result, 0);

    auto requests = server.requests();
    ASSERT_EQ(requests.size(), 4u);
    std::string value;
    EXPECT_TRUE(requests[0].header("User-Agent", &value));
    EXPECT_EQ(value, "HTTP Fetcher/0.1");
    EXPECT_FALSE(requests[0].header("Referer"));
    EXPECT_NE(requests[1].raw.find("\r\nUser-Agent: \r\n"), std::string::npos);
    EXPECT_NE(requests[1].raw.find("\r\nReferer: \r\n"), std::string::npos);
    EXPECT_TRUE(requests[2].header("User-Agent", &value));
    EXPECT_EQ(value, "mine");
    EXPECT_FALSE(requests[2].header("Referer"));
    EXPECT_FALSE(requests[3].header("User-Agent"));
}

TEST_F(HttpFetch, StatusOutsideTheAcceptedRangeFails) {
    for (int code : {404, 308, 199, 500}) {
        server.enqueue(ScriptedReply::status(code, "No", "Content-Length: 0\r\n"));
        EXPECT_EQ(fetch(server.url("/")).result, -1) << code;
        expectClientError(7, code);
        EXPECT_EQ(std::string(http_strerror()),
                  "Request returned a status code of " + std::to_string(code));
    }
}

TEST_F(HttpFetch, UnreadableStatusLinesFail) {
    ScriptedReply noHttp;
    noHttp.head = "ICY 200 OK\r\n\r\n";
    server.enqueue(noHttp);
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(5, errorInt);
    EXPECT_STREQ(http_strerror(), "Couldn't find return code in HTTP response");

    for (const char* head : {"HTTP/1.1 abc\r\n\r\n", "HTTP/1.1\r\n\r\n"}) {
        ScriptedReply bad;
        bad.head = head;
        server.enqueue(bad);
        EXPECT_EQ(fetch(server.url("/")).result, -1) << head;
        EXPECT_EQ(http_errno, 6);
    }
    // A peer that hangs up without a word.
    ScriptedReply silent;
    server.enqueue(silent);
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    EXPECT_EQ(http_errno, 5);
}

TEST_F(HttpFetch, RedirectWithoutUsableLocationFails) {
    server.enqueue(ScriptedReply::status(302, "Found", "Content-Length: 0\r\n"));
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(10, 302);
    EXPECT_STREQ(http_strerror(), "Status code of 302 but no Location: field");

    server.enqueue(ScriptedReply::status(301, "Moved", "Location:   "));
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(10, 301);
}

TEST_F(HttpFetch, EmptyLocationMakesTheRedirectTheAnswer) {
    server.enqueue(ScriptedReply::status(302, "Found", "Location:\r\nServer: x\r\n", "moved body"));
    Fetched got = fetch(server.url("/"));
    EXPECT_EQ(got.result, 10);
    EXPECT_EQ(got.body, "moved body");
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST_F(HttpFetch, FollowsThreeRedirectsKeepingEachAnsweredConnectionOpen) {
    for (int i = 1; i <= 3; ++i) {
        ScriptedReply hop = ScriptedReply::redirect(300 + i + (i == 3 ? 4 : 0),
                                                    server.url("/hop" + std::to_string(i)));
        hop.holdOpen = true;
        server.onPath(i == 1 ? "/start" : "/hop" + std::to_string(i - 1), hop);
    }
    server.onPath("/hop3", ScriptedReply::ok("arrived"));
    Fetched got = fetch(server.url("/start"));
    EXPECT_EQ(got.result, 7);
    EXPECT_EQ(got.body, "arrived");
    auto requests = server.requests();
    ASSERT_EQ(requests.size(), 4u);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(requests[i].earlierConnectionsOpen, i) << i;
    EXPECT_EQ(requests[3].requestLine, "GET /hop3 HTTP/1.1");
    EXPECT_EQ(server.openHeldConnections(), 0) << "closed once the fetch is over";
}

TEST_F(HttpFetch, FourthRedirectFailsAndClosesEveryConnection) {
    for (int i = 0; i < 5; ++i) {
        ScriptedReply hop = ScriptedReply::redirect(302, server.url("/loop"));
        hop.holdOpen = true;
        server.enqueue(hop);
    }
    EXPECT_EQ(fetch(server.url("/loop")).result, -1);
    expectClientError(11, 3);
    EXPECT_STREQ(http_strerror(), "Followed the maximum number of redirects (3)");
    EXPECT_EQ(server.requestCount(), 4u);
    EXPECT_EQ(server.openHeldConnections(), 0);
}

TEST_F(HttpFetch, RedirectLimitFollowsTheSetting) {
    http_setRedirects(0);
    server.enqueue(ScriptedReply::redirect(301, server.url("/next")));
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(11, 0);

    http_setRedirects(-1); // no limit
    for (int i = 0; i < 6; ++i)
        server.enqueue(ScriptedReply::redirect(307, server.url("/again")));
    server.enqueue(ScriptedReply::ok("done"));
    EXPECT_EQ(fetch(server.url("/")).body, "done");
}

TEST_F(HttpFetch, RelativeLocationFailsAtResolution) {
    server.enqueue(ScriptedReply::redirect(302, "/elsewhere"));
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    EXPECT_EQ(errorSource, 2);
    EXPECT_STREQ(http_strerror(), "Network error (description unavailable)");
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST_F(HttpFetch, HeaderBeyond1024BytesSpillsIntoTheBody) {
    std::string head = "HTTP/1.1 200 OK\r\nX-Pad: " + std::string(1500, 'p') + "\r\n\r\n";
    ScriptedReply reply;
    reply.head = head;
    reply.body = "tail";
    server.enqueue(reply);
    Fetched got = fetch(server.url("/"));
    std::string expected = (head + "tail").substr(1024);
    EXPECT_EQ(got.result, static_cast<int>(expected.size()));
    EXPECT_EQ(got.body, expected);
}

TEST_F(HttpFetch, LengthFieldIsOnlyAReadSizeInItsTwoSpellings) {
    // A length of 0 means reads of 0 bytes: the first read ends the body.
    server.enqueue(ScriptedReply::status(200, "OK", "Content-Length: 0\r\n", "ignored"));
    Fetched got = fetch(server.url("/"));
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(got.body, "");
    EXPECT_TRUE(got.terminated);

    server.enqueue(ScriptedReply::status(200, "OK", "Content-length: 0\r\n", "ignored"));
    EXPECT_EQ(fetch(server.url("/")).result, 0);

    // All lower case is not recognised: read to the close.
    server.enqueue(ScriptedReply::status(200, "OK", "content-length: 0\r\n", "kept"));
    EXPECT_EQ(fetch(server.url("/")).body, "kept");

    // A length shorter than the body: still read until the peer closes.
    server.enqueue(ScriptedReply::status(200, "OK", "Content-Length: 3\r\n", "abcdef"));
    EXPECT_EQ(fetch(server.url("/")).body, "abcdef");
}

TEST_F(HttpFetch, UnreadableOrOversizedLengthFails) {
    for (const char* field :
         {"Content-Length: abc\r\n", "Content-Length: -5\r\n", "Content-Length:7\r\n"}) {
        server.enqueue(ScriptedReply::status(200, "OK", field, "1234567"));
        EXPECT_EQ(fetch(server.url("/")).result, -1) << field;
        EXPECT_EQ(http_errno, 8);
        EXPECT_EQ(errorSource, 0);
    }
    EXPECT_STREQ(http_strerror(), "Couldn't convert Content-Length to integer");

    server.enqueue(ScriptedReply::status(200, "OK", "Content-Length: 2000000000\r\n", "x"));
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    EXPECT_EQ(errorSource, 1);
    EXPECT_EQ(errno, EFBIG);
}

TEST_F(HttpFetch, TimesOutWaitingForTheHeader) {
    http_setTimeout(1);
    ScriptedReply late = ScriptedReply::ok("late");
    late.delayBeforeHeadMs = 3000;
    server.enqueue(late);
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(3, 1);
    testing::internal::CaptureStderr();
    http_perror("http_fetch");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Timed out, no metadata for 1 seconds\n");
}

TEST_F(HttpFetch, TimesOutWaitingForTheBodyButNotForASlowOne) {
    http_setTimeout(1);
    ScriptedReply stalled = ScriptedReply::status(200, "OK", "Content-Length: 10\r\n");
    stalled.holdOpen = true;
    server.enqueue(stalled);
    EXPECT_EQ(fetch(server.url("/")).result, -1);
    expectClientError(4, 1);
    EXPECT_STREQ(http_strerror(), "Timed out, no data for 1 seconds");

    ScriptedReply slow = ScriptedReply::ok("slow");
    slow.delayBeforeHeadMs = 300;
    slow.delayBeforeBodyMs = 300;
    server.enqueue(slow);
    EXPECT_EQ(fetch(server.url("/")).body, "slow");
}

TEST_F(HttpFetch, PeerClosingMidBodyEndsTheBody) {
    ScriptedReply cut = ScriptedReply::ok(std::string(100, 'b'));
    cut.bodyBytesBeforeClose = 40;
    server.enqueue(cut);
    EXPECT_EQ(fetch(server.url("/")).body, std::string(40, 'b'));
}

TEST_F(HttpFetch, BinaryBodyArrivesByteForByte) {
    std::string bytes;
    for (int round = 0; round < 3; ++round) {
        for (int b = 0; b < 256; ++b)
            bytes += static_cast<char>(b);
    }
    server.enqueue(ScriptedReply::ok(bytes));
    Fetched got = fetch(server.url("/"));
    EXPECT_EQ(got.result, 768);
    EXPECT_EQ(got.body, bytes);
    EXPECT_TRUE(got.terminated);
}

TEST_F(HttpFetch, TenMegabyteBodiesWithAndWithoutLength) {
    std::string big(10 * 1024 * 1024, '\0');
    for (size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<char>(i * 7 + i / 4096);
    server.enqueue(ScriptedReply::ok(big));
    Fetched known = fetch(server.url("/"));
    EXPECT_EQ(known.result, static_cast<int>(big.size()));
    EXPECT_TRUE(known.body == big);

    server.enqueue(ScriptedReply::status(200, "OK", "", big));
    Fetched unknown = fetch(server.url("/"));
    EXPECT_EQ(unknown.result, static_cast<int>(big.size()));
    EXPECT_TRUE(unknown.body == big);

    // Without a page pointer the body is read and dropped, and counted.
    server.enqueue(ScriptedReply::ok(big));
    EXPECT_EQ(http_fetch(server.url("/").c_str(), nullptr), static_cast<int>(big.size()));
}

TEST_F(HttpFetch, RefusedConnectionIsASystemError) {
    int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ASSERT_EQ(bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(getsockname(probe, reinterpret_cast<sockaddr*>(&address), &length), 0);
    close(probe); // bound, never listening: nothing answers on this port now
    std::string url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";

    char* page = reinterpret_cast<char*>(0x1);
    EXPECT_EQ(http_fetch(url.c_str(), &page), -1);
    EXPECT_EQ(page, reinterpret_cast<char*>(0x1)) << "nothing is stored on failure";
    EXPECT_EQ(errorSource, 1);
    EXPECT_EQ(errno, ECONNREFUSED);
    EXPECT_STREQ(http_strerror(), strerror(ECONNREFUSED));
    testing::internal::CaptureStderr();
    http_perror("http_fetch");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              std::string("http_fetch: ") + strerror(ECONNREFUSED) + "\n");
}

TEST_F(HttpFetch, BadPortsAndNullUrlFailWithoutConnecting) {
    EXPECT_EQ(http_fetch(nullptr, nullptr), -1);
    expectClientError(2, errorInt);
    EXPECT_STREQ(http_strerror(), "Got NULL url");
    testing::internal::CaptureStderr();
    http_perror("http_fetch");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "http_fetch: Got NULL url\n");

    EXPECT_EQ(http_fetch("http://127.0.0.1:99999/", nullptr), -1);
    EXPECT_EQ(errorSource, 1);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST(HttpErrors, UnknownSourceAndIndexGiveTheInternalText) {
    errorSource = 7;
    EXPECT_STREQ(http_strerror(), "Internal Error. What the hell?!");
    errorSource = 0;
    http_errno = 99;
    EXPECT_STREQ(http_strerror(), "Internal Error. What the hell?!");
    http_errno = 0;
    EXPECT_STREQ(http_strerror(), "Success");
}

TEST(HttpParseFilename, TakesTheTextAfterTheLastSlash) {
    char* name = nullptr;
    ASSERT_EQ(http_parseFilename("http://host/dir/page.html", &name), 0);
    EXPECT_STREQ(name, "page.html");
    free(name);
    name = nullptr;
    EXPECT_EQ(http_parseFilename("http://host/dir/", &name), 1);
    EXPECT_EQ(http_parseFilename("nohost", &name), 1);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(http_parseFilename(nullptr, &name), -1);
    EXPECT_EQ(errorSource, 0);
    EXPECT_EQ(http_errno, 2);
}

} // namespace
