// Notifications through org.freedesktop.Notifications on the session bus.
//
// The call is sent without asking for a reply: the notifier runs on the main
// thread, and a slow or missing notification service must never hold up the
// player. The connection is GIO's shared session-bus connection, told not to
// end the process when the bus goes away (GIO's default for it), which would
// take the host down with a plug-in.
#include <gio/gio.h>

#include <mutex>

#include "platform/desktop_notifier.h"

namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kObjectPath = "/org/freedesktop/Notifications";
constexpr const char* kInterface = "org.freedesktop.Notifications";
// Milliseconds on screen; -1 lets the service choose.
constexpr gint32 kExpireTimeout = -1;
constexpr int kCallTimeoutMs = 3000;

// The session-bus connection, kept for the process: GIO holds its shared
// connection only weakly, and a connection finalised right after a call may
// drop the unsent message. A closed one (the bus went away) is replaced.
// Returns a new reference, or null without a session bus.
GDBusConnection* sessionBus() {
    static std::mutex mutex;
    static GDBusConnection* kept = nullptr;
    std::lock_guard<std::mutex> guard(mutex);
    if (kept && g_dbus_connection_is_closed(kept)) g_clear_object(&kept);
    if (!kept) {
        GError* error = nullptr;
        kept = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
        if (!kept) {
            g_clear_error(&error);
            return nullptr;
        }
        g_dbus_connection_set_exit_on_close(kept, FALSE);
    }
    return G_DBUS_CONNECTION(g_object_ref(kept));
}

} // namespace

bool showDesktopNotificationDbus(const DesktopNotification& notification) {
    GDBusConnection* bus = sessionBus();
    if (!bus) return false;
    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
    if (!notification.iconPath.empty())
        g_variant_builder_add(&hints, "{sv}", "image-path",
                              g_variant_new_string(notification.iconPath.c_str()));
    GVariant* parameters = g_variant_new(
        "(susssasa{sv}i)", notification.appName.c_str(), 0u, notification.iconPath.c_str(),
        notification.title.c_str(), notification.body.c_str(), &actions, &hints, kExpireTimeout);
    // No callback: GIO sends the call flagged as expecting no reply.
    g_dbus_connection_call(bus, kService, kObjectPath, kInterface, "Notify", parameters, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, kCallTimeoutMs, nullptr, nullptr, nullptr);
    g_object_unref(bus);
    return true;
}
