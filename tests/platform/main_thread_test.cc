// The hand-over to the main thread: calls queued from other threads run
// only when the main thread drains, in order, and never on the caller.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/headless.h"
#include "platform/main_thread.h"

namespace {

class MainThread : public ::testing::Test {
  protected:
    void SetUp() override {
        (void)drainMainThreadQueue();
        resetHeadless();
    }
    void TearDown() override {
        setMainThreadPoster(nullptr);
        (void)drainMainThreadQueue();
        resetHeadless();
    }
};

TEST_F(MainThread, CallsRunOnTheDrainingThreadInOrder) {
    std::vector<int> ran;
    std::vector<std::thread::id> where;
    std::thread worker([&] {
        for (int i = 0; i < 3; ++i)
            runOnMainThread([&ran, &where, i] {
                ran.push_back(i);
                where.push_back(std::this_thread::get_id());
            });
    });
    worker.join();
    EXPECT_TRUE(ran.empty());
    EXPECT_EQ(drainMainThreadQueue(), 3u);
    EXPECT_EQ(ran, (std::vector<int>{0, 1, 2}));
    for (std::thread::id id : where)
        EXPECT_EQ(id, std::this_thread::get_id());
    EXPECT_EQ(drainMainThreadQueue(), 0u);
}

TEST_F(MainThread, CallQueuedDuringADrainWaitsForTheNext) {
    int second = 0;
    runOnMainThread([&] { runOnMainThread([&] { ++second; }); });
    EXPECT_EQ(drainMainThreadQueue(), 1u);
    EXPECT_EQ(second, 0);
    EXPECT_EQ(drainMainThreadQueue(), 1u);
    EXPECT_EQ(second, 1);
}

TEST_F(MainThread, QueueDropsTheOldestPastItsLimit) {
    std::vector<size_t> ran;
    for (size_t i = 0; i < kMainThreadQueueLimit + 2; ++i)
        runOnMainThread([&ran, i] { ran.push_back(i); });
    EXPECT_EQ(drainMainThreadQueue(), kMainThreadQueueLimit);
    EXPECT_EQ(ran.front(), 2u);
    EXPECT_EQ(ran.back(), kMainThreadQueueLimit + 1);
}

std::atomic<int> posted{0};
void countingPoster(std::function<void()> call) {
    ++posted;
    call();
}

TEST_F(MainThread, PosterTakesCallsInsteadOfTheQueue) {
    posted = 0;
    setMainThreadPoster(countingPoster);
    postAlert({"Title.", "Text.", "OK", ""});
    EXPECT_EQ(posted.load(), 1);
    EXPECT_EQ(drainMainThreadQueue(), 0u);
    ASSERT_EQ(headlessLogLines().size(), 1u);
    EXPECT_EQ(headlessLogLines()[0], "alert: Title. | Text. | OK");
}

} // namespace
