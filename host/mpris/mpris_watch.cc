#include "mpris_watch.h"

#include <cstring>
#include <memory>

#include "mpris_metadata.h"

namespace {

const char kPrefix[] = "org.mpris.MediaPlayer2.";
const char kPath[] = "/org/mpris/MediaPlayer2";
const char kPlayerInterface[] = "org.mpris.MediaPlayer2.Player";
// What the app follows of a player; the track first, so that a player found
// playing starts with its track.
const char* const kFollowedProperties[] = {"Metadata", "PlaybackStatus"};

bool isPlayerName(const char* name) {
    return std::strncmp(name, kPrefix, sizeof kPrefix - 1) == 0 && name[sizeof kPrefix - 1];
}

// The reply of an asynchronous call; null (error logged unless cancelled,
// in which case `cancelled` is set and the watch may be gone).
GVariant* finishCall(GObject* source, GAsyncResult* result, bool& cancelled, std::string& error) {
    GError* failure = nullptr;
    GVariant* reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure);
    cancelled = failure && g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED);
    if (failure) {
        error = failure->message;
        g_error_free(failure);
    }
    return reply;
}

} // namespace

// What an answer needs to know besides the watch. Freed by the callback.
struct MprisWatch::Pending {
    MprisWatch* watch;
    std::string owner;
    std::string name; // the well-known name, or what was asked of a player
};

MprisWatch::~MprisWatch() {
    if (cancellable) {
        g_cancellable_cancel(cancellable);
        g_object_unref(cancellable);
    }
    if (bus) {
        if (ownerSubscription) g_dbus_connection_signal_unsubscribe(bus, ownerSubscription);
        if (propertiesSubscription)
            g_dbus_connection_signal_unsubscribe(bus, propertiesSubscription);
        g_object_unref(bus);
    }
}

void MprisWatch::start() {
    if (cancellable) return;
    cancellable = g_cancellable_new();
    g_bus_get(G_BUS_TYPE_SESSION, cancellable, onBus, this);
}

void MprisWatch::onBus(GObject*, GAsyncResult* result, gpointer data) {
    GError* failure = nullptr;
    GDBusConnection* connection = g_bus_get_finish(result, &failure);
    if (!connection) {
        if (!g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            static_cast<MprisWatch*>(data)->log(
                std::string("mpris: no session bus, so no players to follow: ") +
                failure->message);
        g_error_free(failure);
        return;
    }
    MprisWatch* self = static_cast<MprisWatch*>(data);
    self->bus = connection;
    // The bus going away must not take the app with it.
    g_dbus_connection_set_exit_on_close(connection, FALSE);
    self->watch();
}

void MprisWatch::watch() {
    ownerSubscription = g_dbus_connection_signal_subscribe(
        bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", "org.mpris.MediaPlayer2",
        G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE, onOwnerChanged, this, nullptr);
    propertiesSubscription = g_dbus_connection_signal_subscribe(
        bus, nullptr, "org.freedesktop.DBus.Properties", "PropertiesChanged", kPath,
        kPlayerInterface, G_DBUS_SIGNAL_FLAGS_NONE, onPropertiesChanged, this, nullptr);
    g_dbus_connection_call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "ListNames", nullptr, G_VARIANT_TYPE("(as)"),
                           G_DBUS_CALL_FLAGS_NONE, kCallTimeoutMs, cancellable, onListNames, this);
}

void MprisWatch::onListNames(GObject* source, GAsyncResult* result, gpointer data) {
    bool cancelled = false;
    std::string error;
    GVariant* reply = finishCall(source, result, cancelled, error);
    if (cancelled) return;
    MprisWatch* self = static_cast<MprisWatch*>(data);
    if (!reply) {
        self->log("mpris: cannot list the bus's names: " + error);
        return;
    }
    GVariantIter* names = nullptr;
    g_variant_get(reply, "(as)", &names);
    const gchar* name = nullptr;
    while (g_variant_iter_loop(names, "&s", &name)) {
        if (!isPlayerName(name)) continue;
        g_dbus_connection_call(self->bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "GetNameOwner", g_variant_new("(s)", name),
                               G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, kCallTimeoutMs,
                               self->cancellable, onNameOwner,
                               new Pending{self, std::string(), name});
    }
    g_variant_iter_free(names);
    g_variant_unref(reply);
}

void MprisWatch::onNameOwner(GObject* source, GAsyncResult* result, gpointer data) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    bool cancelled = false;
    std::string error;
    GVariant* reply = finishCall(source, result, cancelled, error);
    if (cancelled) return;
    if (!reply) return; // gone between the list and the question: nothing to follow
    const gchar* owner = nullptr;
    g_variant_get(reply, "(&s)", &owner);
    pending->watch->ownerKnown(pending->name, owner);
    g_variant_unref(reply);
}

void MprisWatch::onOwnerChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                                const gchar*, GVariant* parameters, gpointer data) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sss)"))) return;
    const gchar *name, *before, *after;
    g_variant_get(parameters, "(&s&s&s)", &name, &before, &after);
    if (!isPlayerName(name)) return;
    MprisWatch* self = static_cast<MprisWatch*>(data);
    if (*before) self->ownerGone(name, before);
    if (*after) self->ownerKnown(name, after);
}

void MprisWatch::ownerKnown(const std::string& name, const std::string& owner) {
    // A second name of the same process is the same player.
    if (players.count(owner)) return;
    players[owner] = name;
    log("mpris: player " + name + " appeared");
    choice.appeared(name);
    askPlayer(owner, "GetAll", g_variant_new("(s)", kPlayerInterface), "(a{sv})", onGetAll,
              "its properties");
}

void MprisWatch::ownerGone(const std::string& name, const std::string& owner) {
    auto it = players.find(owner);
    if (it == players.end() || it->second != name) return;
    players.erase(it);
    log("mpris: player " + name + " vanished");
    choice.vanished(name);
}

std::string MprisWatch::playerOf(const std::string& owner) const {
    auto it = players.find(owner);
    return it == players.end() ? std::string() : it->second;
}

void MprisWatch::askPlayer(const std::string& owner, const char* method, GVariant* parameters,
                           const char* replyType, GAsyncReadyCallback done,
                           const std::string& what) {
    g_dbus_connection_call(bus, owner.c_str(), kPath, "org.freedesktop.DBus.Properties", method,
                           parameters, G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE,
                           kCallTimeoutMs, cancellable, done, new Pending{this, owner, what});
}

GVariant* MprisWatch::playerAnswer(GObject* source, GAsyncResult* result, const Pending& pending,
                                   std::string& player) {
    bool cancelled = false;
    std::string error;
    GVariant* reply = finishCall(source, result, cancelled, error);
    if (cancelled) return nullptr; // the watch may be gone
    player = pending.watch->playerOf(pending.owner);
    if (player.empty()) { // it left meanwhile
        if (reply) g_variant_unref(reply);
        return nullptr;
    }
    if (!reply)
        pending.watch->log("mpris: " + player + " did not answer for " + pending.name + ": " +
                           error);
    return reply;
}

void MprisWatch::onGetAll(GObject* source, GAsyncResult* result, gpointer data) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    std::string player;
    GVariant* reply = playerAnswer(source, result, *pending, player);
    if (!reply) return;
    GVariant* properties = g_variant_get_child_value(reply, 0);
    for (const char* name : kFollowedProperties)
        (void)pending->watch->applyFrom(player, properties, name);
    g_variant_unref(properties);
    g_variant_unref(reply);
}

void MprisWatch::onPropertiesChanged(GDBusConnection*, const gchar* sender, const gchar*,
                                     const gchar*, const gchar*, GVariant* parameters,
                                     gpointer data) {
    MprisWatch* self = static_cast<MprisWatch*>(data);
    std::string player = self->playerOf(sender ? sender : "");
    if (player.empty()) return;
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)"))) {
        self->log("mpris: " + player + " sent a malformed PropertiesChanged (" +
                  g_variant_get_type_string(parameters) + ")");
        return;
    }
    GVariant* changed = g_variant_get_child_value(parameters, 1);
    GVariant* invalidated = g_variant_get_child_value(parameters, 2);
    for (const char* name : kFollowedProperties) {
        if (self->applyFrom(player, changed, name)) continue;
        gsize count = 0;
        const gchar** names = g_variant_get_strv(invalidated, &count);
        for (gsize i = 0; i < count; ++i)
            if (std::strcmp(names[i], name) == 0)
                self->askPlayer(sender, "Get", g_variant_new("(ss)", kPlayerInterface, name),
                                "(v)", onGet, name);
        g_free(names);
    }
    g_variant_unref(invalidated);
    g_variant_unref(changed);
}

void MprisWatch::onGet(GObject* source, GAsyncResult* result, gpointer data) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    std::string player;
    GVariant* reply = playerAnswer(source, result, *pending, player);
    if (!reply) return;
    GVariant* value = g_variant_get_child_value(reply, 0);
    pending->watch->apply(player, pending->name.c_str(), value);
    g_variant_unref(value);
    g_variant_unref(reply);
}

bool MprisWatch::applyFrom(const std::string& player, GVariant* properties,
                           const char* property) {
    GVariant* value = g_variant_lookup_value(properties, property, nullptr);
    if (!value) return false;
    apply(player, property, value);
    g_variant_unref(value);
    return true;
}

void MprisWatch::apply(const std::string& player, const char* property, GVariant* value) {
    if (std::strcmp(property, "PlaybackStatus") == 0) {
        MprisStatus status;
        if (mprisStatusFromVariant(value, status))
            choice.statusChanged(player, status);
        else
            log("mpris: " + player + " sent an unknown PlaybackStatus, skipped");
        return;
    }
    MprisTrack track;
    std::string problems;
    bool read = mprisTrackFromMetadata(value, track, problems);
    if (!problems.empty()) log("mpris: " + player + ": " + problems + ", skipped");
    if (read) choice.trackChanged(player, track);
}
