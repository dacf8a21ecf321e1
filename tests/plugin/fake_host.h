// FakeHost: the player's side of the interface for the plug-in tests. It
// answers the plug-in's calls (registration, the plug-in's path, mouse monitor) and
// sends messages the way the player does, with a temporary home and a
// loopback service so that the update thread started at init stays local.
#pragma once

#include <gtest/gtest.h>

#include <cairo.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "client_state.h"
#include "loopback_server.h"
#include "platform/headless.h"
#include "platform/main_thread.h"
#include "plugin/plugin_entry.h"
#include "model/stagebeacon_class.h"
#include "view/cal_vis.h"
#include "update/cal_get_data.h"
#include "view/visual_plugin_data.h"
#include "temp_home.h"

class FakeHost : public ::testing::Test {
  protected:
    TempHome home;
    LoopbackServer server;
    PlayerHostServices services{};
    PluginInitMessage entryInit{};
    PlayerRegisterVisualPluginInfo registered{};
    int registrations = 0;
    PlayerStatus fileSpecStatus = kPlayerNoErr;
    PlayerMouseMonitorProc monitor = nullptr;
    std::vector<PlayerEventTypeSpec> monitorTypes;
    int monitorInstalls = 0;
    void* instance = nullptr;
    std::vector<cairo_surface_t*> surfaces;
    std::vector<std::unique_ptr<PlayerPort>> ports;

    void SetUp() override {
        resetHttpClient();
        resetHeadless();
        setenv("STAGEBEACON_SERVICE", server.url("").c_str(), 1);
        services.recordLength = sizeof services;
        services.headless = 1;
    }
    void TearDown() override {
        if (instance) (void)send(kVisualPluginCleanupMessage);
        // The application object lives for the process in the player; each
        // test here starts from none.
        delete Stagebeacon;
        Stagebeacon = nullptr;
        for (cairo_surface_t* s : surfaces) cairo_surface_destroy(s);
        (void)drainMainThreadQueue();
        unsetenv("STAGEBEACON_SERVICE");
        resetHeadless();
        resetHttpClient();
    }

    static PlayerStatus appProc(void* cookie, uint32_t message, PlayerMessageInfo* info) {
        auto* host = static_cast<FakeHost*>(cookie);
        switch (message) {
        case kPlayerRegisterVisualPluginMessage:
            host->registered = info->u.registerVisualPlugin;
            ++host->registrations;
            return kPlayerNoErr;
        case kPlayerGetPluginFileSpecMessage:
            snprintf(info->u.getPluginFileSpec.path, sizeof info->u.getPluginFileSpec.path, "%s",
                     "/plugins/libstagebeacon.so");
            return host->fileSpecStatus;
        case kPlayerInstallMouseMonitorMessage:
            host->monitor = info->u.installMouseMonitor.handler;
            host->monitorTypes.assign(info->u.installMouseMonitor.types,
                                      info->u.installMouseMonitor.types +
                                          info->u.installMouseMonitor.numTypes);
            info->u.installMouseMonitor.monitorRef = host;
            ++host->monitorInstalls;
            return kPlayerNoErr;
        case kPlayerRemoveMouseMonitorMessage:
            host->monitor = nullptr;
            return kPlayerNoErr;
        default:
            return kPlayerUnimplementedMessage;
        }
    }

    PlayerStatus startEntry() {
        PluginMessageInfo info{};
        info.u.initMessage.appCookie = this;
        info.u.initMessage.appProc = appProc;
        info.u.initMessage.services = &services;
        PlayerStatus status = iTunesPluginMainMachO(kPlayerInitMessage, &info, nullptr);
        entryInit = info.u.initMessage;
        return status;
    }

    PlayerStatus startInstance() {
        EXPECT_EQ(startEntry(), kPlayerNoErr);
        VisualPluginMessageInfo info{};
        info.u.initMessage.appCookie = this;
        info.u.initMessage.appProc = appProc;
        PlayerStatus status = registered.handler(kVisualPluginInitMessage, &info, nullptr);
        instance = info.u.initMessage.refCon;
        return status;
    }

    // Waits for the update the init message started, so tests begin idle.
    void settle() {
        if (Stagebeacon) Stagebeacon->calGetData.shutDown();
        if (Stagebeacon) Stagebeacon->protectedData.setShutingDown(false);
    }

    PlayerStatus send(uint32_t message, VisualPluginMessageInfo* info = nullptr) {
        VisualPluginMessageInfo empty{};
        PlayerStatus status = registered.handler(message, info ? info : &empty, instance);
        if (message == kVisualPluginCleanupMessage) instance = nullptr;
        return status;
    }

    PlayerPort* newPort(int width, int height) {
        cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
        surfaces.push_back(s);
        ports.push_back(std::make_unique<PlayerPort>(PlayerPort{s, nullptr, nullptr}));
        return ports.back().get();
    }

    PlayerStatus show(PlayerPort* port, int top, int left, int bottom, int right) {
        VisualPluginMessageInfo info{};
        info.u.showWindowMessage.port = port;
        info.u.showWindowMessage.drawRect = PlayerRect{int16_t(top), int16_t(left),
                                                       int16_t(bottom), int16_t(right)};
        return send(kVisualPluginShowWindowMessage, &info);
    }

    PlayerStatus key(char c) {
        PlayerEventRecord event{};
        event.what = kPlayerKeyDownEvent;
        event.message = static_cast<uint8_t>(c);
        VisualPluginMessageInfo info{};
        info.u.eventMessage.event = &event;
        return send(kVisualPluginEventMessage, &info);
    }

    PlayerStatus type(const std::string& text) {
        PlayerStatus last = kPlayerNoErr;
        for (char c : text) last = key(c);
        return last;
    }

    // The installer's empty first-run marker.
    std::string writeFirstRunMarker() {
        std::filesystem::create_directories(home.support());
        std::string marker = home.support() + "FirstRun";
        writeText(marker, "");
        return marker;
    }

    VisualPluginData* data() const { return static_cast<VisualPluginData*>(instance); }
    ProtectedData& store() { return Stagebeacon->protectedData; }
    std::string text(void (ProtectedData::*get)(char*)) {
        char buffer[1024] = {};
        (store().*get)(buffer);
        return buffer;
    }
};
