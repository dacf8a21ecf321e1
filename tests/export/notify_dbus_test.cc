// The desktop notifier's D-Bus route, against a private session bus started
// for the test and a small notification service of the test's own that owns
// org.freedesktop.Notifications and records every Notify call.
#include <gio/gio.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "export/applescript.h"
#include "export/growl_notify.h"
#include "platform/desktop_notifier.h"
#include "platform/resources_folder.h"
#include "private_bus.h"

namespace {

constexpr int kWaitMs = 3000;

struct NotifyCall {
    std::string appName, icon, summary, body, imagePathHint;
};

constexpr const char* kIntrospection =
    "<node><interface name='org.freedesktop.Notifications'>"
    "<method name='Notify'>"
    "<arg type='s' direction='in'/><arg type='u' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='as' direction='in'/>"
    "<arg type='a{sv}' direction='in'/><arg type='i' direction='in'/>"
    "<arg type='u' direction='out'/>"
    "</method></interface></node>";

// The notification service. Its calls are dispatched on a main context of
// its own, which the test iterates while it waits: no thread of ours.
class NotificationListener {
  public:
    explicit NotificationListener(const std::string& address) {
        context = g_main_context_new();
        g_main_context_push_thread_default(context);
        connect(address);
        g_main_context_pop_thread_default(context);
    }
    ~NotificationListener() {
        if (connection) {
            if (registration) g_dbus_connection_unregister_object(connection, registration);
            g_dbus_connection_close_sync(connection, nullptr, nullptr);
            g_object_unref(connection);
        }
        if (nodeInfo) g_dbus_node_info_unref(nodeInfo);
        // Let the context hand back what the connection left on it.
        while (g_main_context_iteration(context, FALSE)) {
        }
        g_main_context_unref(context);
    }
    NotificationListener(const NotificationListener&) = delete;
    NotificationListener& operator=(const NotificationListener&) = delete;

    bool ownsName() const { return owner; }

    // Waits until a call has arrived, at most kWaitMs.
    bool waitForCall() {
        auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kWaitMs);
        while (calls.empty() && std::chrono::steady_clock::now() < deadline) {
            if (!g_main_context_iteration(context, FALSE))
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return !calls.empty();
    }

    std::vector<NotifyCall> calls;

  private:
    GMainContext* context = nullptr;
    GDBusConnection* connection = nullptr;
    GDBusNodeInfo* nodeInfo = nullptr;
    guint registration = 0;
    bool owner = false;

    void connect(const std::string& address) {
        auto flags =
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        connection = g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr,
                                                            nullptr, nullptr);
        if (!connection) return;
        nodeInfo = g_dbus_node_info_new_for_xml(kIntrospection, nullptr);
        static const GDBusInterfaceVTable vtable = {onMethodCall, nullptr, nullptr, {}};
        registration = g_dbus_connection_register_object(
            connection, "/org/freedesktop/Notifications", nodeInfo->interfaces[0], &vtable, this,
            nullptr, nullptr);
        GVariant* reply = g_dbus_connection_call_sync(
            connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", g_variant_new("(su)", "org.freedesktop.Notifications", 4u),
            G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, kWaitMs, nullptr, nullptr);
        if (reply) {
            guint32 result = 0;
            g_variant_get(reply, "(u)", &result);
            owner = result == 1; // the primary owner
            g_variant_unref(reply);
        }
    }

    static void onMethodCall(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                             const gchar* method, GVariant* parameters,
                             GDBusMethodInvocation* invocation, gpointer data) {
        auto* self = static_cast<NotificationListener*>(data);
        if (g_strcmp0(method, "Notify") == 0) {
            const gchar *appName, *icon, *summary, *body;
            guint32 replaces = 0;
            gint32 timeout = 0;
            GVariant* actions = nullptr;
            GVariant* hints = nullptr;
            g_variant_get(parameters, "(&su&s&s&s@as@a{sv}i)", &appName, &replaces, &icon, &summary,
                          &body, &actions, &hints, &timeout);
            NotifyCall call{appName, icon, summary, body, ""};
            const gchar* imagePath = nullptr;
            if (g_variant_lookup(hints, "image-path", "&s", &imagePath))
                call.imagePathHint = imagePath;
            g_variant_unref(actions);
            g_variant_unref(hints);
            self->calls.push_back(call);
        }
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", 1u));
    }
};

class DbusNotifier : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { setenv("STAGEBEACON_RESOURCES", STAGEBEACON_TEST_RESOURCES, 1); }
    void TearDown() override {
        setDesktopNotifierBackend(nullptr);
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
};

// First: once a bus has been used, its connection is kept.
TEST_F(DbusNotifier, NoSessionBusIsAFailedDelivery) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/stagebeacon-bus", 1);
    EXPECT_FALSE(showDesktopNotificationDbus(DesktopNotification{"Stagebeacon", "t", "b", ""}));
}

TEST_F(DbusNotifier, NotificationScriptArrivesAtTheService) {
    PrivateBus bus;
    ASSERT_FALSE(bus.address().empty()) << "dbus-daemon did not start";
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    NotificationListener listener(bus.address());
    ASSERT_TRUE(listener.ownsName());

    setDesktopNotifierBackend(showDesktopNotificationDbus);
    char script[kGrowlScriptSize];
    buildGrowlNotifyScript(script, "Upcoming Album Release", "Artist:", "Wilco",
                           "Album:", "The Whole Love", "Date:", "Sep 27, 2011",
                           "Stagebeacon_icon_purple.png");
    EXPECT_EQ(SimpleRunAppleScript(script), 0);
    ASSERT_TRUE(listener.waitForCall());
    ASSERT_EQ(listener.calls.size(), 1u);
    const NotifyCall& call = listener.calls[0];
    EXPECT_EQ(call.appName, "Stagebeacon");
    EXPECT_EQ(call.summary, "Upcoming Album Release");
    EXPECT_EQ(call.body, "Artist: Wilco\nAlbum: The Whole Love\nDate: Sep 27, 2011");
    EXPECT_EQ(call.icon, resourcePath("Stagebeacon_icon_purple.png"));
    EXPECT_EQ(call.imagePathHint, call.icon);
}

} // namespace
