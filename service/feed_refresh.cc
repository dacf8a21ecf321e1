// Feed refreshes: see feed_refresh.h.
#include "feed_refresh.h"

#include "feed_map.h"
#include "geo.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <ctime>
#include <thread>

namespace service {
namespace {

FeedOutcome failed(const std::string& error) {
    FeedOutcome outcome;
    outcome.time = static_cast<int64_t>(std::time(nullptr));
    outcome.result = "failed";
    outcome.error = error;
    return outcome;
}

// Fetches, parses and stores; throws nothing the caller must know beyond
// the outcome.
FeedOutcome attempt(Storage& storage, const Feed& feed, const FeedSettings& settings) {
    auto site = storage.site(feed.siteId);
    if (!site) return failed("its site " + std::to_string(feed.siteId) + " no longer exists");
    FetchResult fetched = fetchFeed(feed.url, feed.etag, feed.lastModified, settings.fetch);
    FeedOutcome outcome;
    outcome.time = static_cast<int64_t>(std::time(nullptr));
    if (fetched.status == FetchResult::Status::Failed) return failed(fetched.error);
    if (fetched.status == FetchResult::Status::NotModified) {
        outcome.result = "unchanged";
        outcome.etag = fetched.etag;
        outcome.lastModified = fetched.lastModified;
        storage.recordFeedOutcome(feed.id, outcome);
        return outcome;
    }
    ParseLimits limits;
    limits.maxEvents = settings.maxEvents;
    limits.windowStart = isoDateFromToday(0);
    std::vector<FeedEvent> parsed = parseFeed(fetched.body, feed.format, limits);
    // An empty reply is far more often a broken export than a venue that
    // cancelled everything; keep what we have until events come back.
    if (parsed.empty() && feed.eventCount > 0)
        return failed("the feed came back without events; keeping the " +
                      std::to_string(feed.eventCount) + " it had");
    MapCounts counts;
    std::vector<Event> events = eventsFromFeed(parsed, *site, storage, limits.windowStart, counts);
    outcome.result = "ok";
    outcome.etag = fetched.etag;
    outcome.lastModified = fetched.lastModified;
    if (!storage.replaceFeedEvents(feed.id, events, outcome)) return failed("the feed was removed");
    return outcome;
}

void lowerThreadPriority() {
    // On Linux the nice value is per thread; raising it needs no privilege.
    (void)setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), 10);
}

} // namespace

bool isDue(const Feed& feed, int64_t now) {
    return feed.lastRefresh == 0 || now >= feed.lastRefresh + feed.everySeconds;
}

FeedOutcome refreshFeed(Storage& storage, const Feed& feed, const FeedSettings& settings) {
    FeedOutcome outcome;
    try {
        outcome = attempt(storage, feed, settings);
    } catch (const std::bad_alloc&) {
        outcome = failed("out of memory while reading the feed");
    } catch (const std::exception& error) {
        outcome = failed(error.what());
    }
    if (outcome.result != "failed") return outcome;
    std::fprintf(stderr, "stagebeacon-service: feed %lld (%s): %s\n",
                 static_cast<long long>(feed.id), feed.url.c_str(), outcome.error.c_str());
    try {
        storage.recordFeedOutcome(feed.id, outcome);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "stagebeacon-service: feed %lld: cannot record the failure: %s\n",
                     static_cast<long long>(feed.id), error.what());
    }
    return outcome;
}

std::vector<FeedOutcome> refreshFeeds(Storage& storage, const std::vector<Feed>& feeds,
                                      const FeedSettings& settings) {
    std::vector<FeedOutcome> outcomes(feeds.size());
    std::atomic<size_t> next{0};
    auto work = [&] {
        if (settings.lowPriority) lowerThreadPriority();
        for (size_t i = next++; i < feeds.size(); i = next++)
            outcomes[i] = refreshFeed(storage, feeds[i], settings);
    };
    const size_t workers =
        std::min(feeds.size(), static_cast<size_t>(settings.workers > 0 ? settings.workers : 1));
    std::vector<std::thread> threads;
    for (size_t i = 0; i < workers; ++i) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
    return outcomes;
}

bool parseInterval(const std::string& text, int64_t& seconds) {
    if (text.empty()) return false;
    int64_t unit = 1;
    std::string digits = text;
    switch (text.back()) {
    case 's': unit = 1; digits.pop_back(); break;
    case 'm': unit = 60; digits.pop_back(); break;
    case 'h': unit = 3600; digits.pop_back(); break;
    case 'd': unit = 86400; digits.pop_back(); break;
    default: break;
    }
    if (digits.empty() || digits.size() > 9 ||
        digits.find_first_not_of("0123456789") != std::string::npos)
        return false;
    seconds = std::stoll(digits) * unit;
    return seconds > 0;
}

std::string intervalText(int64_t seconds) {
    if (seconds % 86400 == 0) return std::to_string(seconds / 86400) + "d";
    if (seconds % 3600 == 0) return std::to_string(seconds / 3600) + "h";
    if (seconds % 60 == 0) return std::to_string(seconds / 60) + "m";
    return std::to_string(seconds) + "s";
}

} // namespace service
