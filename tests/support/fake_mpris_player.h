// FakeMprisPlayer: an MPRIS player for tests, on its own connection to a
// (private) session bus. It owns org.mpris.MediaPlayer2.<name>, answers
// property reads of org.mpris.MediaPlayer2.Player from what it was told
// last, and announces changes with PropertiesChanged, including malformed
// ones on request. Calls are answered on the default main context, which the
// test iterates while it waits (waitFor).
//
// Threads: the test's thread.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <string>
#include <vector>

class FakeMprisPlayer {
  public:
    // silent: property reads are never answered (a hung player).
    FakeMprisPlayer(const std::string& busAddress, const std::string& name, bool silent = false);
    ~FakeMprisPlayer();
    FakeMprisPlayer(const FakeMprisPlayer&) = delete;
    FakeMprisPlayer& operator=(const FakeMprisPlayer&) = delete;

    bool ready() const { return connection != nullptr; }
    // Sets and announces PlaybackStatus and/or Metadata, each in GVariant
    // text form ("'Playing'", "{'xesam:artist': <['A']>}"); an empty text
    // leaves that property alone.
    void announce(const std::string& status, const std::string& metadata);
    // Sends PropertiesChanged with exactly these parameters (GVariant text).
    void announceRaw(const std::string& parameters);
    // Leaves the bus, as a player that quits.
    void vanish();

  private:
    static void onMethodCall(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                             const gchar* method, GVariant* parameters,
                             GDBusMethodInvocation* invocation, gpointer data);
    GVariant* properties() const;

    GDBusConnection* connection = nullptr;
    guint registration = 0;
    bool silent;
    std::string status = "Stopped";
    std::string metadata = "@a{sv} {}";
    std::vector<GDBusMethodInvocation*> unanswered;
};

// Iterates the default main context until `done` or `seconds` pass.
bool waitFor(const std::function<bool()>& done, double seconds);
