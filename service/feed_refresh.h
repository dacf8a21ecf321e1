// Refreshing feeds: fetch, parse, map, store, and the record of how it went.
//
// Keeping it true: a good refresh replaces the feed's events in one
// transaction, so events gone from the feed go with it. Anything else
// (network, time-out, too large, HTTP error, parse error, a reply with no
// events where there were some) leaves the events as they were and records
// the error in plain words; a 304 reply records "unchanged".
//
// Thread contract: any thread. refreshFeeds runs its feeds on up to
// `workers` threads of its own and returns when all have ended.
#pragma once

#include "feed_event.h"
#include "feed_fetch.h"
#include "storage.h"

#include <cstdint>
#include <vector>

namespace service {

struct FeedSettings {
    FetchLimits fetch;
    size_t maxEvents = 100000;
    int workers = 4;
    // Background refreshes run below the server's priority, so replies
    // keep their speed while a large feed is parsed.
    bool lowPriority = false;
};

// True when the feed has never been refreshed or its interval has passed.
bool isDue(const Feed& feed, int64_t now);

// Refreshes one feed now and records the outcome, which it also returns.
// Never throws: a failing database is reported in the outcome's error.
FeedOutcome refreshFeed(Storage& storage, const Feed& feed, const FeedSettings& settings);

// Refreshes every feed given, at most `settings.workers` at once; the
// outcomes come back in the feeds' order.
std::vector<FeedOutcome> refreshFeeds(Storage& storage, const std::vector<Feed>& feeds,
                                      const FeedSettings& settings);

// "6h", "30m", "2d", "90s" or plain seconds; false when unreadable.
bool parseInterval(const std::string& text, int64_t& seconds);
// 21600 -> "6h", 90 -> "90s".
std::string intervalText(int64_t seconds);

} // namespace service
