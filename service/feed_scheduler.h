// The serving process's background refresher: a thread of its own that
// looks for due feeds every `checkEvery`, refreshes them (at most
// `settings.workers` at once, at low priority), and prunes past events.
// It shares only the Storage with the HTTP side, whose readers SQLite's WAL
// never blocks, so replies go on while a refresh runs.
//
// Thread contract: construct, start and stop from one controlling thread.
// stop() ends transfers under way within a moment and joins.
#pragma once

#include "feed_refresh.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace service {

class FeedScheduler {
public:
    FeedScheduler(Storage& storage, FeedSettings settings, std::chrono::milliseconds checkEvery);
    ~FeedScheduler(); // stops
    FeedScheduler(const FeedScheduler&) = delete;
    FeedScheduler& operator=(const FeedScheduler&) = delete;

    void start();
    void stop();
    // Completed passes over the feed list (tests wait on it).
    int passes() const { return passes_; }

private:
    void run();
    void pass();

    Storage& storage_;
    FeedSettings settings_;
    const std::chrono::milliseconds checkEvery_;
    std::atomic<bool> stopping_{false};
    std::atomic<int> passes_{0};
    std::mutex mutex_;
    std::condition_variable wake_;
    std::thread thread_;
};

} // namespace service
