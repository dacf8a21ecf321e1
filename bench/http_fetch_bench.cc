// Download speed of http_fetch against curl, in the same run and from the
// same loopback server: a 20 MB body of known length, several rounds each,
// median of each side. curl is timed as a process (that is how a user would
// run it), so its start-up is also measured on an empty body and reported
// apart, for a transfer-only comparison.
//
// Usage: http_fetch_bench [rounds]   (default 9)
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "loopback_server.h"
#include "net/http_fetch.h"

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
constexpr size_t kBodyBytes = 20u * 1000u * 1000u;

double seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Seconds for one http_fetch of `url`, or a negative value on failure. With
// `keep` false the body is dropped as it arrives, like curl's /dev/null.
double timeFetch(const std::string& url, size_t expected, bool keep = true) {
    char* page = nullptr;
    auto start = Clock::now();
    int length = http_fetch(url.c_str(), keep ? &page : nullptr);
    double taken = seconds(start);
    free(page);
    if (length < 0 || static_cast<size_t>(length) != expected) {
        fprintf(stderr, "http_fetch failed: %s\n", length < 0 ? http_strerror() : "short body");
        return -1.0;
    }
    return taken;
}

// Seconds for one `curl` run on `url` (no config file, no proxy), or negative.
double timeCurl(const std::string& url) {
    std::vector<std::string> args = {"curl",      "-q",        "-s", "-f", "-o",
                                     "/dev/null", "--noproxy", "*",  url};
    std::vector<char*> argv;
    for (std::string& arg : args)
        argv.push_back(&arg[0]);
    argv.push_back(nullptr);
    auto start = Clock::now();
    pid_t pid = 0;
    if (posix_spawnp(&pid, "curl", nullptr, nullptr, argv.data(), environ) != 0) return -1.0;
    int status = 0;
    if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return -1.0;
    }
    return seconds(start);
}

double megabytesPerSecond(double secondsTaken) {
    return kBodyBytes / 1e6 / secondsTaken;
}

} // namespace

int main(int argc, char** argv) {
    int rounds = argc > 1 ? atoi(argv[1]) : 9;
    if (rounds < 1 || rounds > 100) rounds = 9;
    http_setTimeout(30);

    std::string body(kBodyBytes, '\0');
    for (size_t i = 0; i < body.size(); ++i)
        body[i] = static_cast<char>('a' + i % 26);
    LoopbackServer server;
    server.onPath("/known", ScriptedReply::ok(body));
    server.onPath("/unknown", ScriptedReply::status(200, "OK", "", body));
    server.onPath("/empty", ScriptedReply::ok(""));

    std::vector<double> fetchKnown, fetchUnknown, fetchDropped, curlKnown, curlTransfer;
    for (int round = 0; round < rounds; ++round) {
        double a = timeFetch(server.url("/known"), body.size());
        double b = timeCurl(server.url("/known"));
        double c = timeFetch(server.url("/unknown"), body.size());
        double d = timeCurl(server.url("/empty"));
        double e = timeFetch(server.url("/known"), body.size(), false);
        if (a < 0 || b < 0 || c < 0 || d < 0 || e < 0) {
            fprintf(stderr, "http_fetch_bench: a download failed (is curl installed?)\n");
            return 1;
        }
        fetchKnown.push_back(a);
        curlKnown.push_back(b);
        fetchUnknown.push_back(c);
        fetchDropped.push_back(e);
        curlTransfer.push_back(std::max(b - d, 1e-6)); // paired: same moment, same load
    }

    double fetchSeconds = median(fetchKnown);
    double curlSeconds = median(curlKnown);
    double curlTransferSeconds = median(curlTransfer);
    printf("http_fetch_bench: 20 MB body from a loopback server, median of %d rounds\n", rounds);
    printf("  http_fetch, Content-Length given  %8.1f MB/s\n", megabytesPerSecond(fetchSeconds));
    printf("  http_fetch, read to close         %8.1f MB/s\n",
           megabytesPerSecond(median(fetchUnknown)));
    printf("  http_fetch, body dropped          %8.1f MB/s\n",
           megabytesPerSecond(median(fetchDropped)));
    printf("  curl -s -o /dev/null (process)    %8.1f MB/s\n", megabytesPerSecond(curlSeconds));
    printf("  curl minus its run on an empty body %6.1f MB/s  (transfer-only estimate)\n",
           megabytesPerSecond(curlTransferSeconds));
    printf("  ratio http_fetch / curl                 %.2f  (goal >= 1.00)\n",
           curlSeconds / fetchSeconds);
    printf("  ratio http_fetch / curl transfer-only   %.2f\n", curlTransferSeconds / fetchSeconds);
    printf("  ratio dropped http_fetch / curl transfer-only  %.2f  (both discard the body)\n",
           curlTransferSeconds / median(fetchDropped));
    return 0;
}
