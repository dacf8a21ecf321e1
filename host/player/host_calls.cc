#include "host_calls.h"

#include <cstdio>

namespace {

// A monitor asking for more kinds than exist is a broken plug-in, not a
// reason to copy an unbounded list.
const uint32_t kMaxMonitorTypes = 256;

bool listsKind(const MouseMonitor& monitor, uint32_t eventClass, uint32_t kind) {
    for (const PlayerEventTypeSpec& type : monitor.types)
        if (type.eventClass == eventClass && type.eventKind == kind) return true;
    return false;
}

PlayerStatus installMonitor(PluginHost& host, PlayerMessageInfo& info) {
    auto& request = info.u.installMouseMonitor;
    if (!request.handler || (request.numTypes > 0 && !request.types) ||
        request.numTypes > kMaxMonitorTypes)
        return kPlayerMemoryFull;
    MouseMonitor monitor;
    monitor.id = host.nextMonitorId++;
    monitor.handler = request.handler;
    monitor.types.assign(request.types, request.types + request.numTypes);
    monitor.userData = request.userData;
    host.monitors.push_back(monitor);
    request.monitorRef = reinterpret_cast<void*>(monitor.id);
    return kPlayerNoErr;
}

PlayerStatus removeMonitor(PluginHost& host, const PlayerMessageInfo& info) {
    uintptr_t id = reinterpret_cast<uintptr_t>(info.u.removeMouseMonitor.monitorRef);
    for (auto it = host.monitors.begin(); it != host.monitors.end(); ++it) {
        if (it->id == id) {
            host.monitors.erase(it);
            return kPlayerNoErr;
        }
    }
    return kPlayerNoErr;
}

} // namespace

void PluginHost::deliverMouseEvent(const PlayerMouseEvent& event) {
    // A monitor may remove itself (or another) while it runs.
    std::vector<MouseMonitor> current = monitors;
    for (const MouseMonitor& monitor : current)
        if (listsKind(monitor, event.eventClass, event.kind))
            (void)monitor.handler(reinterpret_cast<void*>(monitor.id), &event, monitor.userData);
}

PlayerStatus playerHostCallback(void* appCookie, uint32_t message, PlayerMessageInfo* messageInfo) {
    PluginHost* host = static_cast<PluginHost*>(appCookie);
    if (!host || !messageInfo) return kPlayerUnimplementedMessage;
    switch (message) {
    case kPlayerRegisterVisualPluginMessage:
        host->registration = messageInfo->u.registerVisualPlugin;
        host->registered = true;
        return kPlayerNoErr;
    case kPlayerGetPluginFileSpecMessage:
        std::snprintf(messageInfo->u.getPluginFileSpec.path,
                      sizeof messageInfo->u.getPluginFileSpec.path, "%s", host->pluginPath.c_str());
        return kPlayerNoErr;
    case kPlayerInstallMouseMonitorMessage:
        return installMonitor(*host, *messageInfo);
    case kPlayerRemoveMouseMonitorMessage:
        return removeMonitor(*host, *messageInfo);
    default:
        return kPlayerUnimplementedMessage;
    }
}
