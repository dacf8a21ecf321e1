// The port the plug-in paints into, and the player's copy of its last
// finished frame.
//
// HostPort owns a PlayerPort and its cairo ARGB32 image surface, painted
// black when made. The plug-in draws into the surface and calls
// frameReady from whichever thread drew the frame; frameReady copies the
// pixels into the DisplayBuffer under the buffer's mutex and asks for a
// redraw (windowed: a g_idle_add onto the main loop). The window paints,
// and a headless snapshot saves, the DisplayBuffer under the same mutex,
// never the port itself, which the plug-in's threads may be drawing into.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "player_api.h"

typedef struct _cairo cairo_t;

// The largest port side the player makes (a 256 MB image); the API's
// int16 rectangle would allow 32767.
const int kMaxPortSide = 8192;

class DisplayBuffer {
  public:
    using RedrawRequest = void (*)(void* data);

    // Called after each frame copied, from the thread that called
    // frameReady. Set once, before any port exists.
    void setRedrawRequest(RedrawRequest request, void* data);

    // Makes port the one whose frames are shown and clears the buffer to
    // black at its size. Frames from any other (older) port are dropped.
    void setCurrentPort(const PlayerPort* port, int width, int height);

    // frameReady's work: copy the port's surface. Any thread.
    void takeFrame(PlayerPort* port);

    // Saves the buffer as PNG. false with a reason when it cannot.
    [[nodiscard]] bool savePng(const std::string& path, std::string& error);

    // Paints the buffer at (0,0) into cr. Main thread (draw handler).
    void paint(cairo_t* cr);

  private:
    std::mutex mutex;
    const PlayerPort* current = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0;
    std::vector<unsigned char> pixels;
    RedrawRequest redraw = nullptr;
    void* redrawData = nullptr;
};

class HostPort {
  public:
    // A black width x height port whose frames go to display.
    HostPort(int width, int height, DisplayBuffer& display);
    ~HostPort();
    HostPort(const HostPort&) = delete;
    HostPort& operator=(const HostPort&) = delete;

    PlayerPort* port() { return &record; }
    bool valid() const;

  private:
    PlayerPort record{};
};
