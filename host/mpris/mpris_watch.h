// MprisWatch: the session-bus side of following players. Watches every
// org.mpris.MediaPlayer2.* name, reads each player's PlaybackStatus and
// Metadata when it appears, listens to its PropertiesChanged signals, and
// reports all of it to an MprisChoice, which decides what the plug-in hears.
//
// Every call is asynchronous with a time-out, so a player that never
// answers costs nothing but a log line; nothing here blocks the main loop.
// A missing session bus is logged and the app runs on without players.
//
// Threads: the main loop of the default GLib context only.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <map>
#include <string>

#include "mpris_choice.h"

class MprisWatch {
  public:
    using Log = std::function<void(const std::string&)>;
    // How long any one call to a player or the bus may take.
    static constexpr int kCallTimeoutMs = 1500;

    MprisWatch(MprisChoice& choice, Log log) : choice(choice), log(std::move(log)) {}
    ~MprisWatch();
    MprisWatch(const MprisWatch&) = delete;
    MprisWatch& operator=(const MprisWatch&) = delete;

    // Connects to the session bus in the background and starts watching.
    void start();

  private:
    struct Pending;

    static void onBus(GObject* source, GAsyncResult* result, gpointer data);
    static void onListNames(GObject* source, GAsyncResult* result, gpointer data);
    static void onNameOwner(GObject* source, GAsyncResult* result, gpointer data);
    static void onGetAll(GObject* source, GAsyncResult* result, gpointer data);
    static void onGet(GObject* source, GAsyncResult* result, gpointer data);
    static void onOwnerChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                               const gchar*, GVariant* parameters, gpointer data);
    static void onPropertiesChanged(GDBusConnection*, const gchar* sender, const gchar*,
                                    const gchar*, const gchar*, GVariant* parameters,
                                    gpointer data);

    void watch();
    void ownerKnown(const std::string& name, const std::string& owner);
    void ownerGone(const std::string& name, const std::string& owner);
    // Applies one property (Metadata or PlaybackStatus) of a player.
    void apply(const std::string& player, const char* property, GVariant* value);
    // The same, taken from a dictionary of properties; false when it lacks
    // the property.
    bool applyFrom(const std::string& player, GVariant* properties, const char* property);
    // Calls an org.freedesktop.DBus.Properties method of the player at
    // `owner`; `done` gets a Pending holding the owner and `what` was asked.
    void askPlayer(const std::string& owner, const char* method, GVariant* parameters,
                   const char* replyType, GAsyncReadyCallback done, const std::string& what);
    // The reply to askPlayer while it still matters, with the player's
    // well-known name in `player`; null when the call was cancelled (the
    // watch may be gone), the player left meanwhile, or it failed (logged).
    static GVariant* playerAnswer(GObject* source, GAsyncResult* result, const Pending& pending,
                                  std::string& player);
    // The well-known name followed for a unique owner; empty when unknown.
    std::string playerOf(const std::string& owner) const;

    MprisChoice& choice;
    Log log;
    GCancellable* cancellable = nullptr;
    GDBusConnection* bus = nullptr;
    guint ownerSubscription = 0;
    guint propertiesSubscription = 0;
    std::map<std::string, std::string> players; // unique owner -> well-known name
};
