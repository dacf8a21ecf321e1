#include "fake_mpris_player.h"

#include <chrono>
#include <cstring>
#include <thread>

namespace {

const char kIntrospection[] =
    "<node><interface name='org.mpris.MediaPlayer2.Player'>"
    "<property name='PlaybackStatus' type='s' access='read'/>"
    "<property name='Metadata' type='a{sv}' access='read'/>"
    "</interface></node>";

GVariant* parse(const std::string& text, const char* type) {
    GError* error = nullptr;
    GVariant* value = g_variant_parse(type ? G_VARIANT_TYPE(type) : nullptr, text.c_str(),
                                      nullptr, nullptr, &error);
    if (!value) {
        g_printerr("fake player: cannot parse %s: %s\n", text.c_str(), error->message);
        g_error_free(error);
    }
    return value;
}

} // namespace

FakeMprisPlayer::FakeMprisPlayer(const std::string& busAddress, const std::string& name,
                                 bool hung)
    : silent(hung) {
    GError* error = nullptr;
    connection = g_dbus_connection_new_for_address_sync(
        busAddress.c_str(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    if (!connection) {
        g_printerr("fake player: %s\n", error->message);
        g_error_free(error);
        return;
    }
    g_dbus_connection_set_exit_on_close(connection, FALSE);
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kIntrospection, nullptr);
    // No property getter: property reads come to onMethodCall, which may
    // keep them unanswered.
    static const GDBusInterfaceVTable vtable = {onMethodCall, nullptr, nullptr, {}};
    registration = g_dbus_connection_register_object(connection, "/org/mpris/MediaPlayer2",
                                                     node->interfaces[0], &vtable, this, nullptr,
                                                     nullptr);
    g_dbus_node_info_unref(node);
    std::string busName = "org.mpris.MediaPlayer2." + name;
    GVariant* reply = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", busName.c_str(), 4u), nullptr,
        G_DBUS_CALL_FLAGS_NONE, 2000, nullptr, nullptr);
    if (reply) g_variant_unref(reply);
}

FakeMprisPlayer::~FakeMprisPlayer() {
    vanish();
}

void FakeMprisPlayer::vanish() {
    if (!connection) return;
    for (GDBusMethodInvocation* call : unanswered)
        g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.DBus.Error.Failed",
                                                   "going away");
    unanswered.clear();
    g_dbus_connection_unregister_object(connection, registration);
    g_dbus_connection_close_sync(connection, nullptr, nullptr);
    g_object_unref(connection);
    connection = nullptr;
}

GVariant* FakeMprisPlayer::properties() const {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&builder, "{sv}", "PlaybackStatus", g_variant_new_string(status.c_str()));
    GVariant* meta = parse(metadata, nullptr);
    if (meta) g_variant_builder_add(&builder, "{sv}", "Metadata", meta);
    return g_variant_builder_end(&builder);
}

void FakeMprisPlayer::onMethodCall(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                                   const gchar* method, GVariant* parameters,
                                   GDBusMethodInvocation* invocation, gpointer data) {
    FakeMprisPlayer* self = static_cast<FakeMprisPlayer*>(data);
    if (self->silent) {
        self->unanswered.push_back(invocation);
        return;
    }
    GVariant* all = self->properties();
    if (std::strcmp(method, "GetAll") == 0) {
        g_dbus_method_invocation_return_value(invocation, g_variant_new_tuple(&all, 1));
        return;
    }
    const gchar* property = "";
    if (std::strcmp(method, "Get") == 0) g_variant_get(parameters, "(&s&s)", nullptr, &property);
    GVariant* value = g_variant_lookup_value(all, property, nullptr);
    g_variant_unref(g_variant_ref_sink(all));
    if (value)
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", value));
    else
        g_dbus_method_invocation_return_dbus_error(
            invocation, "org.freedesktop.DBus.Error.UnknownProperty", property);
    if (value) g_variant_unref(value);
}

void FakeMprisPlayer::announce(const std::string& newStatus, const std::string& newMetadata) {
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
    if (!newMetadata.empty()) {
        metadata = newMetadata;
        if (GVariant* meta = parse(metadata, nullptr))
            g_variant_builder_add(&changed, "{sv}", "Metadata", meta);
    }
    if (!newStatus.empty()) {
        GVariant* text = parse(newStatus, "s");
        if (!text) return;
        status = g_variant_get_string(text, nullptr);
        g_variant_unref(g_variant_ref_sink(text));
        g_variant_builder_add(&changed, "{sv}", "PlaybackStatus",
                              g_variant_new_string(status.c_str()));
    }
    GVariant* parameters = g_variant_new("(sa{sv}as)", "org.mpris.MediaPlayer2.Player", &changed,
                                         nullptr);
    g_dbus_connection_emit_signal(connection, nullptr, "/org/mpris/MediaPlayer2",
                                  "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                  parameters, nullptr);
}

void FakeMprisPlayer::announceRaw(const std::string& parameters) {
    if (GVariant* value = parse(parameters, nullptr))
        g_dbus_connection_emit_signal(connection, nullptr, "/org/mpris/MediaPlayer2",
                                      "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                      value, nullptr);
}

bool waitFor(const std::function<bool()>& done, double seconds) {
    auto deadline = std::chrono::steady_clock::now() +
                    std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                        std::chrono::duration<double>(seconds));
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        if (!g_main_context_iteration(nullptr, FALSE))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
