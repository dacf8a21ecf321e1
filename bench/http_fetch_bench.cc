// Download speed of the plug-in's HTTP client against curl: both as whole
// processes (http_get, a small program that fetches with http_fetch, and
// `curl -s -o /dev/null`), each writing the body to /dev/null, on the same
// 20 MB body from the same loopback server, alternating, median of the
// rounds in the same run. The floor is curl.
//
// Goal: http_get within 1.2x of curl.
//
// Usage: http_fetch_bench [rounds]   (default 9)
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench_support.h"
#include "loopback_server.h"

namespace {

constexpr size_t kBodyBytes = 20u * 1000u * 1000u;

} // namespace

int main(int argc, char** argv) {
    int rounds = argc > 1 ? atoi(argv[1]) : 9;
    if (rounds < 1 || rounds > 100) rounds = 9;

    std::string body(kBodyBytes, '\0');
    for (size_t i = 0; i < body.size(); ++i) body[i] = static_cast<char>('a' + i % 26);
    LoopbackServer server;
    server.onPath("/body", ScriptedReply::ok(body));
    std::string url = server.url("/body");

    std::vector<double> ours, curl;
    for (int round = 0; round < rounds; ++round) {
        ProcessRun a = runProcess({HTTP_GET_PROGRAM, url});
        ProcessRun b = runProcess({"curl", "-q", "-s", "-f", "-o", "/dev/null", "--noproxy", "*", url});
        if (!a.ok || !b.ok) {
            fprintf(stderr, "http_fetch_bench: a download failed (is curl installed?)\n");
            return 1;
        }
        ours.push_back(a.seconds);
        curl.push_back(b.seconds);
    }
    double oursSeconds = median(ours), curlSeconds = median(curl);
    printf("http client: 20 MB body from a loopback server, whole processes, median of %d\n",
           rounds);
    printf("  http_get (http_fetch)   %8.1f ms  %7.1f MB/s\n", oursSeconds * 1e3,
           kBodyBytes / 1e6 / oursSeconds);
    printf("  curl (floor)            %8.1f ms  %7.1f MB/s\n", curlSeconds * 1e3,
           kBodyBytes / 1e6 / curlSeconds);
    printf("  ratio                   %8.2f\n", oursSeconds / curlSeconds);
    return reportGoal("http_get within 1.2x of curl", oursSeconds <= curlSeconds * 1.2) ? 0 : 1;
}
