// The plug-in's side of the player interface (player_api.h): the exported
// entry point, the visual handler that receives every host message, the
// drawing surface it keeps per instance, the mouse monitor and the keys.
//
// Threads: the host calls all of these on its main thread.
#pragma once

#include "player_api.h"

struct VisualPluginData;

extern "C" __attribute__((visibility("default"))) PlayerStatus
iTunesPluginMainMachO(uint32_t message, PluginMessageInfo* messageInfo, void* refCon);

// Registers VisualPluginHandler with the host (name, options, version,
// sizes and channels). The host's status.
PlayerStatus RegisterVisualPlugin(PluginMessageInfo* messageInfo);

PlayerStatus VisualPluginHandler(uint32_t message, VisualPluginMessageInfo* messageInfo,
                                 void* refCon);

// Takes the host's port and rectangle (port null: hidden). Makes a new
// black offscreen image unless one of the same rectangle exists. 0, or the
// failure status when no image could be made (the port then counts as absent).
PlayerStatus ChangeVisualPort(VisualPluginData* data, PlayerPort* port, const PlayerRect* rect);

// The mouse monitor: stores the pointer in the view and calls the mouse
// handlers. Always answers kPlayerEventNotHandled so the host sees every event.
PlayerStatus MonitorHandler(void* handlerCall, const PlayerMouseEvent* event, void* data);
// Installs MonitorHandler for the six mouse events; removes it again.
void installMouseMonitor(VisualPluginData* data);
void removeMouseMonitor(VisualPluginData* data);
// The pointer's y in view coordinates from the port's y: player versions
// from 8.1 to below 10.0 report points 22 pixels too high.
int monitorMouseY(int portY, int destTop, float playerVersion);

// The event message: key presses edit the location fields or navigate;
// a mouse down only stores the point. 0 when handled, else -4.
PlayerStatus handleEventMessage(const PlayerEventRecord* event);

// True when a file at `path` can be opened for reading.
bool emptyFileExists(const char* path);
// Deletes the first-run marker in the user's support folder; true when
// there was one.
bool consumeFirstRunMarker();
