// The background refresher: see feed_scheduler.h.
#include "feed_scheduler.h"

#include "geo.h"

#include <cstdio>
#include <ctime>

namespace service {

FeedScheduler::FeedScheduler(Storage& storage, FeedSettings settings,
                             std::chrono::milliseconds checkEvery)
    : storage_(storage), settings_(std::move(settings)), checkEvery_(checkEvery) {
    settings_.fetch.cancel = &stopping_;
    settings_.lowPriority = true;
}

FeedScheduler::~FeedScheduler() { stop(); }

void FeedScheduler::start() {
    stopping_ = false;
    thread_ = std::thread([this] { run(); });
}

void FeedScheduler::stop() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void FeedScheduler::pass() {
    const int64_t now = static_cast<int64_t>(std::time(nullptr));
    std::vector<Feed> due;
    for (Feed& feed : storage_.feeds())
        if (isDue(feed, now)) due.push_back(std::move(feed));
    if (!due.empty()) (void)refreshFeeds(storage_, due, settings_);
    storage_.pruneEventsBefore(isoDateFromToday(0));
}

void FeedScheduler::run() {
    while (!stopping_) {
        try {
            pass();
        } catch (const std::exception& error) {
            // The database failed; the next pass tries again.
            std::fprintf(stderr, "stagebeacon-service: feed refresh: %s\n", error.what());
        }
        ++passes_;
        std::unique_lock<std::mutex> lock(mutex_);
        wake_.wait_for(lock, checkEvery_, [this] { return stopping_.load(); });
    }
}

} // namespace service
