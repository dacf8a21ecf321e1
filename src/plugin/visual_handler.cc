// VisualPluginHandler: every message the host sends after registration.
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>

#include "export/notify.h"
#include "platform/main_thread.h"
#include "plugin/plugin_entry.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "view/cal_vis.h"
#include "view/visual_plugin_data.h"
#include "prefs/preferences_window.h"

namespace {

PlayerStatus PlayerGetPluginITFileSpec(void* appCookie, PlayerProc appProc, char* path,
                                       size_t size) {
    if (!appProc) return kPlayerUnimplementedMessage;
    PlayerMessageInfo message{};
    PlayerStatus status = appProc(appCookie, kPlayerGetPluginFileSpecMessage, &message);
    snprintf(path, size, "%s", message.u.getPluginFileSpec.path);
    return status;
}

void render() {
    if (Stagebeacon) Stagebeacon->calVis.Render();
}

void suggestUpdate(bool force) {
    if (Stagebeacon)
        (void)Stagebeacon->calGetData.suggestUpdateShowList(CalGetData::kTaskAll, force);
}

PlayerStatus initInstance(VisualPluginMessageInfo* info) {
    auto* data = new (std::nothrow) VisualPluginData();
    if (!data) return kPlayerMemoryFull;
    data->appCookie = info->u.initMessage.appCookie;
    data->appProc = info->u.initMessage.appProc;
    PlayerStatus status = PlayerGetPluginITFileSpec(data->appCookie, data->appProc,
                                                    data->pluginPath, sizeof data->pluginPath);
    info->u.initMessage.refCon = data;
    CalVis::visualPluginData.store(data);

    bool firstRun = consumeFirstRunMarker();
    // One application object per load, however many instances the host makes.
    if (!Stagebeacon) Stagebeacon = new StagebeaconClass(StagebeaconClass::LoadSettings{});
    if (firstRun) Stagebeacon->protectedData.setStagebeacon_version_update(false);
    suggestUpdate(firstRun);
    return status;
}

PlayerStatus cleanupInstance(VisualPluginData* data) {
    if (Stagebeacon) Stagebeacon->calGetData.shutDown();
    removeMouseMonitor(data);
    std::lock_guard<std::mutex> serialised(CalVis::renderMutex);
    CalVis::visualPluginData.store(nullptr);
    delete data;
    return kPlayerNoErr;
}

void copyTrack(VisualPluginData* data, const PlayerTrackInfo* track,
               const PlayerStreamInfo* stream) {
    data->trackInfo = track ? *track : PlayerTrackInfo{};
    data->streamInfo = stream ? *stream : PlayerStreamInfo{};
}

// The track record's length-prefixed text as a C string.
void pascalToC(const uint8_t* text, char* out, size_t size) {
    snprintf(out, size, "%.*s", static_cast<int>(text[0]), reinterpret_cast<const char*>(text + 1));
}

void trackChanged(VisualPluginData* data, const PlayerTrackInfo* track,
                  const PlayerStreamInfo* stream) {
    copyTrack(data, track, stream);
    if (!Stagebeacon) return;
    char artist[256];
    char album[256];
    pascalToC(data->trackInfo.artist, artist, sizeof artist);
    pascalToC(data->trackInfo.album, album, sizeof album);
    notifyUserOfUpcomingShow(Stagebeacon, artist, album);
}

} // namespace

PlayerStatus VisualPluginHandler(uint32_t message, VisualPluginMessageInfo* info, void* refCon) {
    auto* data = static_cast<VisualPluginData*>(refCon);
    CalVis::visualPluginData.store(data);
    if (message != kVisualPluginInitMessage && !data) return kPlayerUnimplementedMessage;

    switch (message) {
    case kVisualPluginInitMessage:
        return initInstance(info);
    case kVisualPluginCleanupMessage:
        return cleanupInstance(data);
    case kVisualPluginConfigureMessage:
        OpenPreferencesGUI();
        return kPlayerNoErr;
    case kVisualPluginShowWindowMessage: {
        data->destOptions = info->u.showWindowMessage.options;
        PlayerStatus status = ChangeVisualPort(data, info->u.showWindowMessage.port,
                                               &info->u.showWindowMessage.drawRect);
        if (status == kPlayerNoErr) {
            render();
            suggestUpdate(false);
        }
        installMouseMonitor(data);
        return status;
    }
    case kVisualPluginHideWindowMessage:
        (void)ChangeVisualPort(data, nullptr, nullptr);
        copyTrack(data, nullptr, nullptr);
        removeMouseMonitor(data);
        return kPlayerNoErr;
    case kVisualPluginSetWindowMessage: {
        data->destOptions = info->u.setWindowMessage.options;
        PlayerStatus status = ChangeVisualPort(data, info->u.setWindowMessage.port,
                                               &info->u.setWindowMessage.drawRect);
        if (status == kPlayerNoErr) render();
        return status;
    }
    case kVisualPluginChangeTrackMessage:
        trackChanged(data, info->u.changeTrackMessage.trackInfo,
                     info->u.changeTrackMessage.streamInfo);
        return kPlayerNoErr;
    case kVisualPluginPlayMessage:
        trackChanged(data, info->u.playMessage.trackInfo, info->u.playMessage.streamInfo);
        data->playing = true;
        return kPlayerNoErr;
    case kVisualPluginPauseMessage:
        data->playing = false;
        return kPlayerNoErr;
    case kVisualPluginUnpauseMessage:
        data->playing = true;
        return kPlayerNoErr;
    case kVisualPluginRenderMessage:
        data->renderData = info->u.renderMessage.renderData;
        render();
        return kPlayerNoErr;
    case kVisualPluginIdleMessage:
        // The update thread's alerts wait for the main thread: here.
        (void)drainMainThreadQueue();
        render();
        return kPlayerNoErr;
    case kVisualPluginUpdateMessage:
        render();
        return kPlayerNoErr;
    case kVisualPluginSetPositionMessage:
    case kVisualPluginEnableMessage:
    case kVisualPluginDisableMessage:
    case kVisualPluginStopMessage:
        return kPlayerNoErr;
    case kVisualPluginEventMessage:
        return handleEventMessage(info->u.eventMessage.event);
    default:
        return kPlayerUnimplementedMessage;
    }
}
