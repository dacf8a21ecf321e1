// The follower against a real player: Audacious, headless (-H), with its
// own MPRIS 2 plug-in, on a private session bus, in a temporary home. It
// plays two silent tracks the test writes (WAV files whose INFO chunk
// carries artist, album and title) through SDL's dummy audio driver, which
// plays in real time with no sound card. The test skips, saying why, when
// Audacious or its SDL output is not installed.
//
// Audacious keeps which plug-ins are enabled in its plug-in registry, which
// it writes on its first start; so it is started once and quit, its
// registry is edited to make the SDL output the only output, and then it is
// started again with the tracks.
#include <fcntl.h>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "fake_mpris_player.h"
#include "mpris_choice.h"
#include "mpris_watch.h"
#include "private_bus.h"
#include "temp_home.h"

namespace {

const char kName[] = "org.mpris.MediaPlayer2.audacious";

bool onPath(const char* program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (!folder.empty() && access((folder + "/" + program).c_str(), X_OK) == 0) return true;
    return false;
}

// One minute of 8 kHz mono silence with a RIFF INFO chunk (IART, IPRD,
// INAM: artist, album, title), which Audacious reads as the track's tags.
void writeTaggedSilence(const std::string& path, const std::string& artist,
                        const std::string& album, const std::string& title) {
    auto u32 = [](uint32_t v) { return std::string(reinterpret_cast<const char*>(&v), 4); };
    auto u16 = [](uint16_t v) { return std::string(reinterpret_cast<const char*>(&v), 2); };
    auto chunk = [&](const char* id, std::string body) {
        if (body.size() % 2) body += '\0';
        return std::string(id, 4) + u32(uint32_t(body.size())) + body;
    };
    const uint32_t rate = 8000;
    std::string format = u16(1) + u16(1) + u32(rate) + u32(rate * 2) + u16(2) + u16(16);
    std::string info = "INFO" + chunk("IART", artist + '\0') + chunk("IPRD", album + '\0') +
                       chunk("INAM", title + '\0');
    std::string body = "WAVE" + chunk("fmt ", format) + chunk("LIST", info) +
                       chunk("data", std::string(rate * 2 * 60, '\0'));
    writeText(path, "RIFF" + u32(uint32_t(body.size())) + body);
}

// Audacious in the test's home on the test's bus; stopped by its PID.
class Audacious {
  public:
    Audacious(const std::string& home, const std::string& bus, std::vector<std::string> files)
        : log(home + "/audacious.log") {
        std::vector<std::string> env = {"HOME=" + home,
                                        "XDG_CONFIG_HOME=" + home + "/config",
                                        "XDG_CACHE_HOME=" + home + "/cache",
                                        "XDG_DATA_HOME=" + home + "/data",
                                        "DBUS_SESSION_BUS_ADDRESS=" + bus,
                                        "SDL_AUDIODRIVER=dummy",
                                        "PATH=" + std::string(std::getenv("PATH"))};
        std::vector<std::string> args = {"audacious", "--headless"};
        args.insert(args.end(), files.begin(), files.end());
        std::vector<char*> argv, envp;
        for (std::string& a : args) argv.push_back(a.data());
        for (std::string& e : env) envp.push_back(e.data());
        argv.push_back(nullptr);
        envp.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
        if (posix_spawnp(&pid, "audacious", &actions, nullptr, argv.data(), envp.data()) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Audacious() {
        if (pid <= 0) return;
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
    Audacious(const Audacious&) = delete;
    Audacious& operator=(const Audacious&) = delete;

    bool started() const { return pid > 0; }
    // Waits (iterating the main context) until it has ended by itself.
    bool ended(double seconds) {
        bool gone = waitFor([&] { return waitpid(pid, nullptr, WNOHANG) == pid; }, seconds);
        if (gone) pid = -1;
        return gone;
    }
    std::string output() const { return exists(log) ? readText(log) : "no output"; }

  private:
    pid_t pid = -1;
    std::string log;
};

// The test's own connection to the bus, to see the player and drive it.
class Remote {
  public:
    explicit Remote(const std::string& address) {
        connection = g_dbus_connection_new_for_address_sync(
            address.c_str(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                 G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
    }
    ~Remote() {
        if (connection) g_object_unref(connection);
    }
    Remote(const Remote&) = delete;
    Remote& operator=(const Remote&) = delete;

    bool playerPresent(double seconds) {
        return waitFor(
            [&] {
                GVariant* reply = call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "NameHasOwner",
                                       g_variant_new("(s)", kName));
                gboolean has = FALSE;
                if (reply) g_variant_get(reply, "(b)", &has);
                if (reply) g_variant_unref(reply);
                return has == TRUE;
            },
            seconds);
    }
    // A method of the player (interface org.mpris.MediaPlayer2 or its .Player).
    bool tell(const char* interface, const char* method) {
        GVariant* reply = call(kName, "/org/mpris/MediaPlayer2", interface, method, nullptr);
        if (reply) g_variant_unref(reply);
        return reply != nullptr;
    }

  private:
    GVariant* call(const char* to, const char* path, const char* interface, const char* method,
                   GVariant* parameters) {
        return g_dbus_connection_call_sync(connection, to, path, interface, method, parameters,
                                           nullptr, G_DBUS_CALL_FLAGS_NONE, 5000, nullptr,
                                           nullptr);
    }
    GDBusConnection* connection = nullptr;
};

// Makes the SDL output the only enabled output and keeps the MPRIS plug-in
// enabled, in the registry text of Audacious 4 ("output PATH" opens an
// output's block, "enabled N" is one of its lines). false when the registry
// names no SDL output.
bool enableSdlOutput(std::string& registry) {
    std::istringstream in(registry);
    std::string out, block;
    bool sdl = false;
    for (std::string line; std::getline(in, line);) {
        size_t blank = line.find(' ');
        std::string key = line.substr(0, blank);
        if (key == "output" || key == "general" || key == "input" || key == "effect" ||
            key == "transport" || key == "playlist" || key == "vis" || key == "iface") {
            block = line;
            sdl = sdl || line.find("/sdlout.so") != std::string::npos;
        }
        if (key == "enabled" && block.rfind("output ", 0) == 0)
            line = block.find("/sdlout.so") != std::string::npos ? "enabled 1" : "enabled 0";
        if (key == "enabled" && block.find("/mpris2.so") != std::string::npos) line = "enabled 1";
        out += line + "\n";
    }
    registry = out;
    return sdl;
}

TEST(MprisAudacious, FollowsARealPlayerThroughPlayNextPauseAndQuit) {
    if (!onPath("audacious")) GTEST_SKIP() << "audacious is not installed (scripts/setup)";
    TempHome home;
    PrivateBus bus;
    ASSERT_FALSE(bus.address().empty()) << "dbus-daemon did not start";
    Remote remote(bus.address());

    // First start: Audacious writes its plug-in registry; MPRIS Quit ends it.
    {
        Audacious first(home.path(), bus.address(), {});
        ASSERT_TRUE(first.started());
        ASSERT_TRUE(remote.playerPresent(30)) << first.output();
        // Its name may come before its object: asked again until it answers.
        EXPECT_TRUE(waitFor([&] { return remote.tell("org.mpris.MediaPlayer2", "Quit"); }, 30));
        ASSERT_TRUE(first.ended(30)) << first.output();
    }
    const std::string registryPath = home.path() + "/config/audacious/plugin-registry";
    ASSERT_TRUE(exists(registryPath)) << "Audacious wrote no plug-in registry";
    std::string registry = readText(registryPath);
    if (!enableSdlOutput(registry))
        GTEST_SKIP() << "Audacious has no SDL output plug-in (audacious-plugins)";
    writeText(registryPath, registry);

    const std::string one = home.path() + "/airbag.wav", two = home.path() + "/lullaby.wav";
    writeTaggedSilence(one, "Radiohead", "OK Computer", "Airbag");
    writeTaggedSilence(two, "Low", "Double Negative", "Quorum");

    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    std::vector<std::string> seen, log;
    MprisChoice choice([&](const MprisMessage& m) { seen.push_back(describeMprisMessage(m)); });
    MprisWatch watch(choice, [&](const std::string& line) { log.push_back(line); });
    watch.start();

    Audacious player(home.path(), bus.address(), {one, two});
    ASSERT_TRUE(player.started());
    const std::string tail = std::string(" (") + kName + ")";
    std::vector<std::string> expected{"play Radiohead | OK Computer | Airbag" + tail};
    auto expect = [&](const char* step) {
        bool arrived = waitFor([&] { return seen.size() >= expected.size(); }, 30);
        EXPECT_TRUE(arrived) << step << "\n" << player.output();
        EXPECT_EQ(seen, expected) << step << "\n" << ::testing::PrintToString(log);
        return arrived && seen == expected;
    };
    if (!expect("playing")) return;
    EXPECT_TRUE(remote.tell("org.mpris.MediaPlayer2.Player", "Next"));
    expected.push_back("track Low | Double Negative | Quorum" + tail);
    if (!expect("next")) return;
    EXPECT_TRUE(remote.tell("org.mpris.MediaPlayer2.Player", "Pause"));
    expected.push_back("pause" + tail);
    if (!expect("pause")) return;
    EXPECT_TRUE(remote.tell("org.mpris.MediaPlayer2", "Quit"));
    expected.push_back("stop" + tail);
    expect("quit");
    EXPECT_TRUE(player.ended(30)) << player.output();
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace
