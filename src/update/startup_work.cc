// CalGetData::runStartupWork: what start-up leaves to the update thread.
// Each job runs at most once to its end; a job stopped half-way (a new
// update or the unload asked for a stop) stays owed, and the next update
// thread runs it again from the start.
#include "plugin/stagebeacon_class.h"
#include "update/cal_get_data.h"

int CalGetData::runStartupWork() {
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
