// CalGetData::runStartupWork: what start-up leaves to the update thread.
// Each job runs at most once to its end; a job stopped half-way (a new
// update or the unload asked for a stop) stays owed, and the next update
// thread runs it again from the start.
#include <chrono>
#include <thread>

#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

namespace {

// How long start-up's work waits for the first frame: a host that shows
// the view draws it within this; one that does not is not kept waiting long.
constexpr auto kFirstFrameWait = std::chrono::milliseconds(100);

} // namespace

int CalGetData::runStartupWork() {
    // The first frame goes first: on a busy machine the scan would take the
    // time it needs. A stop asked meanwhile ends the wait.
    auto until = std::chrono::steady_clock::now() + kFirstFrameWait;
    while (startupWork.load() != 0 && !app->firstFrameShown() && !stopRequested() &&
           std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    if (startupWork.load() & kStartupLibraryScan) {
        if (parseXML([this] { return stopRequested(); }) < 0) return 1;
        startupWork &= ~kStartupLibraryScan;
    }
    if (startupWork.load() & kStartupVersionCheck) {
        // A check cut short by the stop (its fetch failed) is asked again.
        if (versionCheck() != 0 && stopRequested()) return 1;
        startupWork &= ~kStartupVersionCheck;
    }
    return 0;
}
