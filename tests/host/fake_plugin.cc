// A visual plug-in for the player's tests. It registers a handler, writes
// every message and mouse event it receives to the player's log (one line
// each, "handler CODE ..." / "monitor KIND ..."), installs a mouse monitor
// at show and removes it at hide, and offers script commands:
//   kinds K...  the mouse kinds the next monitor asks for (default: down,
//               up, moved, moved again, dragged, wheel)
//   busy MS     background work for MS ms, painting the port red and
//               calling frameReady from its own thread every 2 ms
//   alert       take an alert answer from the services and log it
//   file        take a file choice from the services and log it
//   fail        fail with the reason "it broke"
// The update message paints the port blue and calls frameReady.
// FAKE_PLUGIN_MODE=no-register registers nothing; =init-fails answers -50.
#include <cairo.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "player_api.h"

namespace {

struct Fake {
    void* cookie = nullptr;
    PlayerProc appProc = nullptr;
    const PlayerHostServices* services = nullptr;
    std::vector<PlayerEventTypeSpec> kinds;
    void* monitorRef = nullptr;
    std::mutex portMutex;
    PlayerPort* port = nullptr;
    std::thread worker;
    std::atomic<bool> busy{false};
};

Fake fake;

void logLine(const std::string& line) {
    if (fake.services && fake.services->log)
        fake.services->log(fake.services->hostData, line.c_str());
}

std::string code(uint32_t message) {
    char text[5] = {char(message >> 24), char(message >> 16), char(message >> 8), char(message), 0};
    return text;
}

std::string pascal(const uint8_t* text) {
    return std::string(reinterpret_cast<const char*>(text + 1), text[0]);
}

// Paints the whole port and hands the frame to the player.
void paintPort(double red, double green, double blue) {
    std::lock_guard<std::mutex> guard(fake.portMutex);
    if (!fake.port) return;
    cairo_t* cr = cairo_create(fake.port->surface);
    cairo_set_source_rgb(cr, red, green, blue);
    cairo_paint(cr);
    cairo_destroy(cr);
    if (fake.port->frameReady) fake.port->frameReady(fake.port);
}

void setPort(PlayerPort* port) {
    std::lock_guard<std::mutex> guard(fake.portMutex);
    fake.port = port;
}

void stopWorker() {
    if (fake.worker.joinable()) fake.worker.join();
}

PlayerStatus monitor(void*, const PlayerMouseEvent* event, void*) {
    std::ostringstream line;
    line << "monitor " << event->kind << " " << event->where.h << " " << event->where.v
         << " button " << event->button << " mods " << event->modifiers << " delta "
         << event->wheelDelta;
    logLine(line.str());
    return kPlayerEventNotHandled;
}

void installMonitor() {
    PlayerMessageInfo info;
    std::memset(&info, 0, sizeof info);
    info.u.installMouseMonitor.handler = monitor;
    info.u.installMouseMonitor.types = fake.kinds.data();
    info.u.installMouseMonitor.numTypes = static_cast<uint32_t>(fake.kinds.size());
    fake.appProc(fake.cookie, kPlayerInstallMouseMonitorMessage, &info);
    fake.monitorRef = info.u.installMouseMonitor.monitorRef;
}

void removeMonitor() {
    PlayerMessageInfo info;
    std::memset(&info, 0, sizeof info);
    info.u.removeMouseMonitor.monitorRef = fake.monitorRef;
    fake.appProc(fake.cookie, kPlayerRemoveMouseMonitorMessage, &info);
}

PlayerStatus handler(uint32_t message, VisualPluginMessageInfo* info, void* refCon) {
    std::ostringstream line;
    line << "handler " << code(message);
    if (message != kVisualPluginInitMessage && refCon != &fake) line << " WRONG-REFCON";
    switch (message) {
    case kVisualPluginInitMessage:
        info->u.initMessage.refCon = &fake;
        break;
    case kVisualPluginShowWindowMessage:
    case kVisualPluginSetWindowMessage: {
        const PlayerRect& r = info->u.showWindowMessage.drawRect;
        cairo_surface_t* surface = info->u.showWindowMessage.port->surface;
        line << " " << r.top << " " << r.left << " " << r.bottom << " " << r.right << " port "
             << cairo_image_surface_get_width(surface) << "x"
             << cairo_image_surface_get_height(surface);
        setPort(info->u.showWindowMessage.port);
        if (message == kVisualPluginShowWindowMessage) installMonitor();
        break;
    }
    case kVisualPluginHideWindowMessage:
        setPort(nullptr);
        removeMonitor();
        break;
    case kVisualPluginChangeTrackMessage:
    case kVisualPluginPlayMessage: {
        const PlayerTrackInfo* track = info->u.changeTrackMessage.trackInfo;
        line << " [" << pascal(track->artist) << "] [" << pascal(track->album) << "] name ["
             << pascal(track->name) << "]"
             << (track->recordLength == sizeof *track ? "" : " BAD-LENGTH")
             << (info->u.changeTrackMessage.streamInfo->streamTitle[0] == 0 ? "" : " BAD-STREAM");
        break;
    }
    case kVisualPluginEventMessage: {
        const PlayerEventRecord* event = info->u.eventMessage.event;
        if (event->what == kPlayerKeyDownEvent)
            line << " key " << (event->message & 0xFF);
        else
            line << " what " << event->what << " " << event->where.h << " " << event->where.v;
        break;
    }
    case kVisualPluginUpdateMessage:
        paintPort(0, 0, 1);
        break;
    case kVisualPluginCleanupMessage:
        stopWorker();
        break;
    }
    logLine(line.str());
    return kPlayerNoErr;
}

int32_t backgroundWorkRunning() {
    return fake.busy ? 1 : 0;
}

int32_t scriptCommand(const char* verb, const char* arguments, char* error, size_t errorSize) {
    std::istringstream words(arguments);
    if (std::strcmp(verb, "kinds") == 0) {
        fake.kinds.clear();
        uint32_t kind;
        while (words >> kind)
            fake.kinds.push_back({kPlayerEventClassMouse, kind});
    } else if (std::strcmp(verb, "busy") == 0) {
        int ms = 0;
        words >> ms;
        stopWorker();
        fake.busy = true;
        fake.worker = std::thread([ms] {
            auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
            while (std::chrono::steady_clock::now() < end) {
                paintPort(1, 0, 0);
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
            fake.busy = false;
        });
    } else if (std::strcmp(verb, "alert") == 0) {
        logLine("alert answer " +
                std::to_string(fake.services->takeAlertAnswer(fake.services->hostData)));
    } else if (std::strcmp(verb, "file") == 0) {
        char path[64] = "";
        int32_t answer = fake.services->takeFileChoice(fake.services->hostData, path, sizeof path);
        logLine("file answer " + std::to_string(answer) + " [" + path + "]");
    } else if (std::strcmp(verb, "fail") == 0) {
        std::snprintf(error, errorSize, "it broke");
        return -2;
    } else {
        return -1;
    }
    return 0;
}

} // namespace

extern "C" __attribute__((visibility("default"))) PlayerStatus
iTunesPluginMainMachO(uint32_t message, PluginMessageInfo* info, void*) {
    if (message == kPlayerCleanupMessage) {
        logLine("entry clr ");
        return kPlayerNoErr;
    }
    if (message != kPlayerInitMessage) return kPlayerUnimplementedMessage;
    PluginInitMessage& init = info->u.initMessage;
    fake.cookie = init.appCookie;
    fake.appProc = init.appProc;
    fake.services = init.services;
    fake.kinds = {{kPlayerEventClassMouse, kPlayerMouseDown},
                  {kPlayerEventClassMouse, kPlayerMouseUp},
                  {kPlayerEventClassMouse, kPlayerMouseMoved},
                  {kPlayerEventClassMouse, kPlayerMouseMoved},
                  {kPlayerEventClassMouse, kPlayerMouseDragged},
                  {kPlayerEventClassMouse, kPlayerMouseWheelMoved}};
    const char* mode = std::getenv("FAKE_PLUGIN_MODE");
    mode = mode ? mode : "";
    if (std::strcmp(mode, "init-fails") == 0) return -50;
    init.backgroundWorkRunning = backgroundWorkRunning;
    init.scriptCommand = scriptCommand;

    PlayerMessageInfo fileRequest;
    std::memset(&fileRequest, 0, sizeof fileRequest);
    init.appProc(init.appCookie, kPlayerGetPluginFileSpecMessage, &fileRequest);
    std::ostringstream line;
    line << "entry init version " << int(init.appVersion.majorRev) << "." << std::hex
         << int(init.appVersion.minorAndBugRev) << std::dec << " headless "
         << init.services->headless << " file " << fileRequest.u.getPluginFileSpec.path;
    logLine(line.str());
    if (std::strcmp(mode, "no-register") == 0) return kPlayerNoErr;

    PlayerMessageInfo reg;
    std::memset(&reg, 0, sizeof reg);
    reg.u.registerVisualPlugin.name[0] = 4;
    std::memcpy(reg.u.registerVisualPlugin.name + 1, "Fake", 4);
    reg.u.registerVisualPlugin.options = kVisualWantsIdleMessages | kVisualWantsConfigure;
    reg.u.registerVisualPlugin.handler = handler;
    return init.appProc(init.appCookie, kPlayerRegisterVisualPluginMessage, &reg);
}
