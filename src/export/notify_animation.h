// NotifyAnimation: where a notification window is and how opaque it is, as a
// function of the timer ticks since it opened.
//
// A window slides down from above the top edge of the screen for
// `slideInTime` seconds while it fades in, to 22 pixels below the top (under
// a menu bar); a release window opened while a concert window is up slides
// one window height further, plus 10 pixels, so the two stack. It then holds,
// opaque, for `holdTime` seconds and fades out over `fadeOutTime` seconds:
// gone about 7 s after it appeared. Hovering after the slide sets the clock
// back to the end of the slide, which restarts the hold.
//
// Everything is computed from `tick` (elapsed = tick x tickInterval), so the
// animation is the same whatever the timer's real pace, and tests step it
// without a clock.
//
// Threads: plain arithmetic; the main thread's timers call it.
#pragma once

#include <cstdint>

struct NotifyWindow;

struct NotifyAnimation {
    float slideInTime = 1.0f;
    float holdTime = 4.0f;
    float fadeOutTime = 2.0f;
    float tickInterval = 0.01f;
    float alpha = 0.0f;
    float elapsed = 0.0f;
    int32_t tick = 0;
    int32_t windowTop = 0;
    int32_t windowLeft = 0;
    int32_t screenHeight = 0;
    int32_t screenWidth = 0;
    int32_t windowWidth = 0;
    int32_t windowHeight = 0;
    int32_t stackIndex = 0;
    char url[256] = {};
    // The kind's window global; null once the window is hidden.
    NotifyWindow** window = nullptr;
};

// One timer tick: sets `elapsed` from `tick`, then `windowTop` and `alpha`
// for this moment, and advances `tick`. Returns true when the window has
// faded out and should be hidden.
bool advanceNotifyAnimation(NotifyAnimation* animation);

// The pointer is over the window: after the slide, back to its end.
void restartNotifyHold(NotifyAnimation* animation);
