// The feeds command line: see feed_commands.h.
#include "feed_commands.h"

#include "feed_refresh.h"
#include "text.h"

#include <cstdio>
#include <ctime>

namespace service {
namespace {

int misuse(const char* message) {
    std::fprintf(stderr, "stagebeacon-service: %s\n", message);
    return 2;
}

std::string whenText(int64_t time) {
    if (time == 0) return "never";
    const std::time_t t = static_cast<std::time_t>(time);
    std::tm parts{};
    gmtime_r(&t, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M UTC", &parts);
    return text;
}

bool isWebAddress(const std::string& url) {
    return url.compare(0, 7, "http://") == 0 || url.compare(0, 8, "https://") == 0;
}

int add(Storage& storage, const FeedCommand& command) {
    Feed feed;
    long site = 0;
    if (command.words.size() != 1 || !isWebAddress(command.words[0]))
        return misuse("feeds add needs one http:// or https:// address");
    if (!parseInt(command.site, 1, 1L << 30, site)) return misuse("feeds add needs --site N");
    if (!parseInterval(command.every, feed.everySeconds) || feed.everySeconds < 60)
        return misuse("--every takes a time of a minute or more: 30m, 6h, 1d");
    if (!command.format.empty() && command.format != "ics" && command.format != "jsonld" &&
        command.format != "csv")
        return misuse("--format is ics, jsonld or csv");
    feed.url = command.words[0];
    feed.siteId = site;
    feed.format = command.format;
    const int64_t id = storage.addFeed(feed);
    if (id == 0) {
        std::fprintf(stderr, "stagebeacon-service: there is no site %ld\n", site);
        return 1;
    }
    std::printf("added feed %lld for site %ld, refreshed every %s\n", static_cast<long long>(id),
                site, intervalText(feed.everySeconds).c_str());
    return 0;
}

int list(Storage& storage) {
    std::printf("%-4s %-5s %-6s %-7s %-21s %-10s %7s  %s\n", "ID", "SITE", "EVERY", "FORMAT",
                "LAST REFRESH", "RESULT", "EVENTS", "URL");
    for (const Feed& feed : storage.feeds()) {
        std::printf("%-4lld %-5lld %-6s %-7s %-21s %-10s %7lld  %s\n",
                    static_cast<long long>(feed.id), static_cast<long long>(feed.siteId),
                    intervalText(feed.everySeconds).c_str(),
                    feed.format.empty() ? "any" : feed.format.c_str(),
                    whenText(feed.lastRefresh).c_str(),
                    feed.lastResult.empty() ? "-" : feed.lastResult.c_str(),
                    static_cast<long long>(feed.eventCount), feed.url.c_str());
        if (!feed.lastError.empty()) std::printf("     last error: %s\n", feed.lastError.c_str());
    }
    return 0;
}

bool readId(const FeedCommand& command, long& id) {
    return command.words.size() == 1 && parseInt(command.words[0], 1, 1L << 40, id);
}

int refresh(Storage& storage, const FeedCommand& command) {
    std::vector<Feed> chosen;
    long id = 0;
    if (!command.words.empty() && !readId(command, id)) return misuse("feeds refresh [ID]");
    for (Feed& feed : storage.feeds())
        if (command.words.empty() || feed.id == id) chosen.push_back(std::move(feed));
    if (chosen.empty() && !command.words.empty()) {
        std::fprintf(stderr, "stagebeacon-service: there is no feed %ld\n", id);
        return 1;
    }
    FeedSettings settings;
    long workers = 4;
    if (!command.workers.empty() && !parseInt(command.workers, 1, 64, workers))
        return misuse("--feed-workers takes 1 to 64");
    settings.workers = static_cast<int>(workers);
    std::vector<FeedOutcome> outcomes = refreshFeeds(storage, chosen, settings);
    int status = 0;
    for (Feed& feed : storage.feeds()) {
        for (size_t i = 0; i < chosen.size(); ++i) {
            if (chosen[i].id != feed.id) continue;
            if (outcomes[i].result == "failed") {
                std::printf("feed %lld: failed: %s (keeps %lld events)\n",
                            static_cast<long long>(feed.id), outcomes[i].error.c_str(),
                            static_cast<long long>(feed.eventCount));
                status = 1;
            } else {
                std::printf("feed %lld: %s, %lld events\n", static_cast<long long>(feed.id),
                            outcomes[i].result.c_str(), static_cast<long long>(feed.eventCount));
            }
        }
    }
    return status;
}

} // namespace

int runFeedCommand(Storage& storage, const FeedCommand& command) {
    if (command.verb == "add") return add(storage, command);
    if (command.verb == "list") return list(storage);
    if (command.verb == "refresh") return refresh(storage, command);
    if (command.verb == "remove") {
        long id = 0;
        if (!readId(command, id)) return misuse("feeds remove ID");
        if (!storage.removeFeed(id)) {
            std::fprintf(stderr, "stagebeacon-service: there is no feed %ld\n", id);
            return 1;
        }
        std::printf("removed feed %ld and its events\n", id);
        return 0;
    }
    return misuse("feeds takes add, list, remove or refresh");
}
} // namespace service
