// The notification window's movement and opacity as a function of ticks.
#include <gtest/gtest.h>

#include "export/notify_animation.h"

namespace {

constexpr int32_t kHeight = 90;

NotifyAnimation opened(int32_t stackIndex = 0) {
    NotifyAnimation a;
    a.windowHeight = kHeight;
    a.stackIndex = stackIndex;
    return a;
}

// Runs the ticks up to and including `tick`; true when one of them finished.
bool runThrough(NotifyAnimation* a, int32_t tick) {
    bool finished = false;
    while (a->tick <= tick)
        finished = advanceNotifyAnimation(a) || finished;
    return finished;
}

// The tick whose step finishes the animation.
int32_t finishingTick(NotifyAnimation* a) {
    for (int guard = 0; guard < 5000; ++guard) {
        int32_t tick = a->tick;
        if (advanceNotifyAnimation(a)) return tick;
    }
    return -1;
}

TEST(NotifyAnimation, SlidesInHoldsAndFades) {
    NotifyAnimation a = opened();
    EXPECT_FALSE(runThrough(&a, 0));
    EXPECT_EQ(a.windowTop, -kHeight + 22) << "starts just above the screen";
    EXPECT_NEAR(a.alpha, 0.01f, 1e-6);
    EXPECT_EQ(a.tick, 1);

    runThrough(&a, 50);
    EXPECT_FLOAT_EQ(a.elapsed, 0.5f);
    EXPECT_EQ(a.windowTop, 45 - kHeight + 22);
    EXPECT_NEAR(a.alpha, 0.51f, 1e-4);

    runThrough(&a, 100);
    EXPECT_EQ(a.windowTop, 22) << "under the menu bar";
    EXPECT_EQ(a.alpha, 1.0f);
    EXPECT_FALSE(runThrough(&a, 499));
    EXPECT_EQ(a.windowTop, 22);
    EXPECT_EQ(a.alpha, 1.0f);

    runThrough(&a, 501);
    EXPECT_EQ(a.windowTop, 22) << "fades where it stands";
    EXPECT_NEAR(a.alpha, 0.99f, 1e-4) << "two fade steps";
    int32_t last = finishingTick(&a);
    EXPECT_GE(last, 699);
    EXPECT_LE(last, 701);
    EXPECT_EQ(a.alpha, 0.0f);
}

TEST(NotifyAnimation, ReleaseStacksUnderTheConcert) {
    NotifyAnimation a = opened(1);
    runThrough(&a, 0);
    EXPECT_EQ(a.windowTop, -kHeight + 32);
    runThrough(&a, 50);
    EXPECT_EQ(a.windowTop, 90 - kHeight + 32) << "travels two window heights in the slide";
    runThrough(&a, 300);
    EXPECT_EQ(a.windowTop, kHeight + 32);
}

TEST(NotifyAnimation, HoverRestartsTheHold) {
    NotifyAnimation a = opened();
    runThrough(&a, 50);
    restartNotifyHold(&a);
    EXPECT_EQ(a.tick, 51) << "no effect while sliding in";

    runThrough(&a, 550);
    ASSERT_LT(a.alpha, 1.0f);
    restartNotifyHold(&a);
    EXPECT_EQ(a.tick, 100);
    EXPECT_FLOAT_EQ(a.elapsed, 1.0f);
    runThrough(&a, 100);
    EXPECT_EQ(a.alpha, 1.0f) << "opaque again at the next tick";
    // The whole hold and fade follow again from the end of the slide.
    EXPECT_GE(finishingTick(&a), 699);
}

} // namespace
