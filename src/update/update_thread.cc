// The update engine's thread and scheduling.
//
// All network work runs on one background thread at a time. The host thread
// asks for work only through suggestUpdateShowList, which decides whether an
// update is due (forced, the location on screen changed, or the weekly
// refresh), stops the running update and starts a new thread that runs the
// requested tasks once (performUpdate) and ends. There is no loop and no
// timer here: a due refresh is noticed the next time the view is shown or
// the user asks for something.
//
// Stopping is cooperative. suggestUpdateShowList and shutDown set one of the
// store's two stop flags (forceUpdate, shutingDown), cancel the download
// under way (fetch_cancel.h) and join; every task checks the flags after
// each download and before each record it files, and gives up with 1 (or -1
// inside the parsers), which skips the remaining tasks. So a join waits for
// no download: the cancelled fetch returns within milliseconds.
//
// The engine talks to the rest only through the store and the lists; the
// view learns of progress through the application's renderView (CalVis::Render,
// wired by the plug-in entry), which may be called from this thread.
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/location.h"

namespace {

// Reads the radius text as a number; text without one reads as 0.
int radiusOf(const char* text) {
    int radius = 0;
    return sscanf(text, "%d", &radius) == 1 ? radius : 0;
}

// The location typed on screen differs from the one last searched, once
// both are cleaned the way a search would send them.
bool locationChanged(ProtectedData& store) {
    char city[256], cityDisplay[256], state[256], stateDisplay[256], radius[256];
    store.getCurCity(city);
    store.getCurCityDisplay(cityDisplay);
    store.getCurState(state);
    store.getCurStateDisplay(stateDisplay);
    store.getCurSearchRadiusDisplay(radius);
    cleanCity(city);
    cleanCity(cityDisplay);
    latLongStateAbbrev(state);
    latLongStateAbbrev(stateDisplay);
    return strcmp(city, cityDisplay) != 0 || strcmp(state, stateDisplay) != 0 ||
           store.getCurSearchRadius() != radiusOf(radius);
}

// The update thread works in the background: on a busy machine the main
// thread (the first frame, the player's own work) goes first. Linux keeps a
// nice value per thread; failing to set it changes nothing else.
void yieldToTheMainThread() {
    constexpr int kUpdateNice = 10;
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), kUpdateNice) != 0)
        fprintf(stderr, "Stagebeacon: the update thread keeps its priority: %s\n", strerror(errno));
}

} // namespace

void CalGetData::requestStop(bool shuttingDown) {
    if (shuttingDown)
        app->protectedData.setShutingDown(true);
    else
        app->protectedData.setForceUpdate(true);
    fetchCancel.request();
}

bool CalGetData::stopRequested() {
    return app->protectedData.getForceUpdate() || app->protectedData.getShutingDown();
}

int CalGetData::suggestUpdateShowList(unsigned long tasks, bool force) {
    ProtectedData& store = app->protectedData;
    if (!force) {
        bool changed = locationChanged(store);
        int32_t now = static_cast<int32_t>(time(nullptr));
        if (nextRefresh != 0 && now > nextRefresh) {
            nextRefresh = now + kRefreshInterval;
        } else if (!changed) {
            // Nothing due; start-up's work still needs a thread, unless a
            // running one will do it.
            if (startupWork.load() == 0 || updateRunning()) return 0;
            tasks = 0;
        }
    }

    requestStop(false);
    if (updateStarted()) {
        store.setRestartingSearch(true);
        app->renderView();
        updateThreadHandle.join();
    }
    fetchCancel.reset();
    store.setRestartingSearch(false);
    app->renderView();
    store.setForceUpdate(false);

    running = true;
    updateThreadHandle = std::thread([this, tasks] {
        yieldToTheMainThread();
        performUpdate(tasks);
        running = false;
    });
    return 0;
}

void CalGetData::performUpdate(unsigned long tasks) {
    ProtectedData& store = app->protectedData;
    store.setForceUpdate(false);
    store.setValid_internet_connection(true);
    if (store.getShutingDown()) return;
    if (runStartupWork() != 0 || tasks == 0) return;
    failedSources = 0;
    store.setSourceNote("");

    // The tasks in the order they run. The phone sync comes after them and
    // does not end the run.
    struct Task {
        unsigned long bit;
        int (CalGetData::*run)();
        void (ProtectedData::*setRunning)(bool);
    };
    const Task tasksInOrder[] = {
        {kTaskConcerts, &CalGetData::UpdateConcerts, &ProtectedData::setUpdatingConcerts},
        {kTaskAlbums, &CalGetData::UpdateAlbums, &ProtectedData::setUpdatingAlbums},
        {kTaskFriends, &CalGetData::UpdateFriends, &ProtectedData::setUpdatingFriends},
        {kTaskShared, &CalGetData::UpdateShared, &ProtectedData::setUpdatingShared},
    };
    for (const Task& task : tasksInOrder) {
        if (!(tasks & task.bit)) continue;
        if ((this->*task.run)() != 0) {
            (store.*task.setRunning)(false);
            app->renderView();
            return;
        }
    }

    if ((tasks & kTaskiPhone) && UpdateiPhone() != 0) {
        store.setUpdatingiPhone(false);
        app->renderView();
    }

    // A source that failed had its shows kept from the last good list; the
    // file keeps that list whole (and its date) until an update reaches
    // every source.
    if (store.getValid_internet_connection() && failedSources == 0) genPref();
}

void CalGetData::shutDown() {
    requestStop(true);
    if (hooks.closeNotifications) hooks.closeNotifications();
    if (updateStarted()) updateThreadHandle.join();
}
