// CalGetData::runStartupWork: what start-up leaves to the update thread.
// Each job runs at most once to its end; a job stopped half-way (a new
// update or the unload asked for a stop) stays owed, and the next update
// thread runs it again from the start.
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

int CalGetData::runStartupWork() {
    if (startupWork.load() & kStartupLibraryScan) {
        if (parseXML([this] { return stopRequested(); }) < 0) return 1;
        startupWork &= ~kStartupLibraryScan;
    }
    return 0;
}
