// VisualSession: one loaded plug-in and the messages the player sends it.
//
// start() opens the library, sends the entry point its init (the plug-in
// registers its visual handler through the player's callback) and the
// handler its init; from then on each member sends one message, or one
// mouse event to the monitors, with the refCon the handler returned.
// quit() ends the session (hide when shown, handler cleanup, entry
// cleanup); every call after it does nothing, so a window closing or a
// failing script can always call it.
//
// Threads: main thread only. The plug-in's frameReady calls, from any
// thread, go to the DisplayBuffer.
#pragma once

#include <memory>
#include <string>

#include "display_buffer.h"
#include "host_calls.h"
#include "player_api.h"
#include "plugin_loader.h"

class VisualSession {
  public:
    VisualSession() = default;
    ~VisualSession();
    VisualSession(const VisualSession&) = delete;
    VisualSession& operator=(const VisualSession&) = delete;

    // Loads and initialises the plug-in. false with one line in error
    // (without the program name) when it cannot be loaded, its init fails
    // or it registers no visual handler.
    [[nodiscard]] bool start(const std::string& pluginPath, const PlayerHostServices* services,
                             std::string& error);

    // A new black port of (x + width) x (y + height) and show (or set
    // window) with the rectangle at (x, y). Sizes past kMaxPortSide, or
    // empty, send nothing.
    void show(int x, int y, int width, int height);
    void resize(int x, int y, int width, int height);
    void hide();
    void idle();
    void update();
    void configure();
    void pause();
    void unpause();
    // Change track (message kVisualPluginChangeTrackMessage) or play
    // (kVisualPluginPlayMessage) with a track record of artist, album and
    // title (the album stands in for a missing title).
    void changeTrack(uint32_t message, const std::string& artist, const std::string& album,
                     const std::string& title = std::string());
    void stop();
    // A key-down event record with code in the message's low byte.
    void key(unsigned char code);
    // The event record of a mouse down at (x, y); no monitor event.
    void mouseDownRecord(int x, int y);
    // One mouse event for the monitors.
    void mouseEvent(uint32_t kind, int x, int y, uint16_t button, uint32_t modifiers,
                    int32_t wheelDelta);
    void quit();

    bool shown() const { return isShown; }
    bool running() const { return started && !finished; }

    // The plug-in's optional script hooks; null when it gave none.
    int32_t (*backgroundWorkRunning() const)(void) { return init.backgroundWorkRunning; }
    int32_t (*scriptCommand() const)(const char*, const char*, char*, size_t) {
        return init.scriptCommand;
    }

    DisplayBuffer& display() { return frames; }
    const PlayerRegisterVisualPluginInfo& registration() const { return host.registration; }

  private:
    PlayerStatus send(uint32_t message, VisualPluginMessageInfo& info);
    // A message with nothing in its record.
    void sendBare(uint32_t message);
    void sendWindow(uint32_t message, int x, int y, int width, int height);

    PluginLibrary library;
    PluginHost host;
    PluginInitMessage init{};
    void* refCon = nullptr;
    DisplayBuffer frames;
    std::unique_ptr<HostPort> port;
    bool started = false;
    bool finished = false;
    bool isShown = false;
};
