// PluginHost: the player as the plug-in sees it through its callback (the
// appCookie of every message). It keeps the plug-in's registration and
// its mouse monitors, answers the request for its own file, and delivers mouse
// events to the monitors that asked for their kind.
//
// Threads: the plug-in calls the callback from the main thread, where all
// messages are sent; every member is main-thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "player_api.h"

struct MouseMonitor {
    uintptr_t id; // handed out as monitorRef
    PlayerMouseMonitorProc handler;
    std::vector<PlayerEventTypeSpec> types;
    void* userData;
};

class PluginHost {
  public:
    std::string pluginPath;
    bool registered = false;
    PlayerRegisterVisualPluginInfo registration{};
    std::vector<MouseMonitor> monitors;
    uintptr_t nextMonitorId = 1;

    // Hands event to every installed monitor listing its class and kind,
    // once per monitor however often the kind is listed. The monitors'
    // answers are ignored: they never consume an event.
    void deliverMouseEvent(const PlayerMouseEvent& event);
};

// The PlayerProc given to the plug-in: appCookie is the PluginHost.
// Register (kept, the last one wins), its own file (the library's path),
// install and remove mouse monitor; other calls answer
// kPlayerUnimplementedMessage.
PlayerStatus playerHostCallback(void* appCookie, uint32_t message, PlayerMessageInfo* messageInfo);
