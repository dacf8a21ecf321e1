// The queue behind runOnMainThread when no main loop takes the calls.
#include "platform/main_thread.h"

#include <atomic>
#include <deque>
#include <mutex>

namespace {

std::atomic<MainThreadPoster> chosenPoster{nullptr};
std::mutex queueMutex;
std::deque<std::function<void()>> queued;

} // namespace

void setMainThreadPoster(MainThreadPoster poster) {
    chosenPoster.store(poster);
}

void runOnMainThread(std::function<void()> call) {
    if (!call) return;
    MainThreadPoster poster = chosenPoster.load();
    if (poster) {
        poster(std::move(call));
        return;
    }
    std::lock_guard<std::mutex> guard(queueMutex);
    if (queued.size() >= kMainThreadQueueLimit) queued.pop_front();
    queued.push_back(std::move(call));
}

size_t drainMainThreadQueue() {
    std::deque<std::function<void()>> due;
    {
        std::lock_guard<std::mutex> guard(queueMutex);
        due.swap(queued);
    }
    // Run without the lock: a call may queue another.
    for (std::function<void()>& call : due)
        call();
    return due.size();
}

void postAlert(const AlertRequest& request) {
    runOnMainThread([request] { (void)runAlert(request); });
}
