// The exported entry point and the registration of the visual handler.
#include "plugin/plugin_entry.h"

#include <cstring>

#include "plugin/host_services.h"

namespace {

void copyPascal(const char* text, uint8_t* out, size_t capacity) {
    size_t n = strlen(text);
    if (n > capacity - 1) n = capacity - 1;
    if (n > 255) n = 255;
    out[0] = static_cast<uint8_t>(n);
    memcpy(out + 1, text, n);
}

PlayerNumVersion SetNumVersion(uint8_t major, uint8_t minorAndBug, uint8_t stage,
                               uint8_t nonRelease) {
    return PlayerNumVersion{major, minorAndBug, stage, nonRelease};
}

PlayerStatus PlayerRegisterVisualPlugin(void* appCookie, PlayerProc appProc,
                                        const PlayerRegisterVisualPluginInfo& info) {
    if (!appProc) return kPlayerUnimplementedMessage;
    PlayerMessageInfo message{};
    message.u.registerVisualPlugin = info;
    return appProc(appCookie, kPlayerRegisterVisualPluginMessage, &message);
}

} // namespace

PlayerStatus RegisterVisualPlugin(PluginMessageInfo* messageInfo) {
    PluginInitMessage& init = messageInfo->u.initMessage;
    PlayerRegisterVisualPluginInfo info{};
    copyPascal("Stagebeacon", info.name, sizeof info.name);
    info.options = kVisualWantsIdleMessages | kVisualWantsConfigure;
    info.creator = PLAYER_FOURCC('?', '?', '?', '?');
    info.pluginVersion = SetNumVersion(2, 9, kPlayerVersionFinal, 0);
    info.handler = VisualPluginHandler;
    info.registerRefCon = nullptr;
    info.timeBetweenDataInMS = 1000000;
    info.numWaveformChannels = 2;
    info.numSpectrumChannels = 2;
    info.minWidth = 64;
    info.minHeight = 64;
    info.maxWidth = 32767;
    info.maxHeight = 32767;
    info.minFullScreenBitDepth = 0;
    info.maxFullScreenBitDepth = 0;
    info.windowAlignmentInBytes = 0;
    return PlayerRegisterVisualPlugin(init.appCookie, init.appProc, info);
}

extern "C" PlayerStatus iTunesPluginMainMachO(uint32_t message, PluginMessageInfo* messageInfo,
                                              void* /*refCon*/) {
    switch (message) {
    case kPlayerInitMessage:
        if (!messageInfo) return kPlayerUnimplementedMessage;
        useHostServices(&messageInfo->u.initMessage);
        return RegisterVisualPlugin(messageInfo);
    case kPlayerCleanupMessage:
        return kPlayerNoErr;
    default:
        return kPlayerUnimplementedMessage;
    }
}
