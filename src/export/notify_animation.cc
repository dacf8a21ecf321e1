// The notification animation as a function of ticks (see notify_animation.h).
#include "export/notify_animation.h"

namespace {

// The top edge the window settles at: under the menu bar, or stacked under
// the first window with a 10-pixel gap.
int32_t topMargin(const NotifyAnimation& a) {
    return a.stackIndex > 0 ? 32 : 22;
}

} // namespace

bool advanceNotifyAnimation(NotifyAnimation* a) {
    a->elapsed = static_cast<float>(a->tick) * a->tickInterval;
    if (a->elapsed < a->slideInTime) {
        float travel = static_cast<float>((a->stackIndex + 1) * a->windowHeight);
        a->windowTop = static_cast<int32_t>(a->elapsed * travel / a->slideInTime) -
                       a->windowHeight + topMargin(*a);
        a->alpha += a->tickInterval / a->slideInTime;
        if (a->alpha > 1.0f) a->alpha = 1.0f;
    } else if (a->elapsed < a->slideInTime + a->holdTime) {
        a->windowTop = a->stackIndex * a->windowHeight + topMargin(*a);
        a->alpha = 1.0f;
    } else {
        a->alpha -= a->tickInterval / a->fadeOutTime;
        if (a->alpha < 0.0f) a->alpha = 0.0f;
    }
    bool finished = a->elapsed > a->slideInTime + a->holdTime && a->alpha <= 0.0f;
    a->tick += 1;
    return finished;
}

void restartNotifyHold(NotifyAnimation* a) {
    if (a->elapsed < a->slideInTime) return;
    a->elapsed = a->slideInTime;
    a->tick = static_cast<int32_t>(a->slideInTime / a->tickInterval);
}
