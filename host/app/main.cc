// stagebeacon: the concert calendar beside whatever player is playing. It
// loads the plug-in like the player does, shows the calendar in a window of
// its own (or headless), and turns the MPRIS players' track changes into the
// plug-in's track messages, so the show notifications come with any player.
//
// Exit status: 0 done, 1 failure (plug-in, display, log), 2 usage.
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <gtk/gtk.h>

#include "app_options.h"
#include "app_window.h"
#include "host_services.h"
#include "log.h"
#include "mpris_choice.h"
#include "mpris_watch.h"
#include "session.h"

namespace {

int fail(const std::string& message) {
    std::fprintf(stderr, "stagebeacon: %s\n", message.c_str());
    return 1;
}

std::string programPath(const char* argv0) {
    char path[PATH_MAX];
    ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) return argv0;
    path[length] = '\0';
    return path;
}

// The host messages a player's change means for the plug-in.
void deliver(VisualSession& session, const MprisMessage& message) {
    switch (message.kind) {
    case MprisMessageKind::Play:
        session.changeTrack(kVisualPluginPlayMessage, message.track.artist, message.track.album,
                            message.track.title);
        break;
    case MprisMessageKind::ChangeTrack:
        session.changeTrack(kVisualPluginChangeTrackMessage, message.track.artist,
                            message.track.album, message.track.title);
        break;
    case MprisMessageKind::Pause:
        session.pause();
        break;
    case MprisMessageKind::Unpause:
        session.unpause();
        break;
    case MprisMessageKind::Stop:
        session.stop();
        break;
    }
}

} // namespace

int main(int argc, char** argv) {
    AppOptions options;
    std::string error;
    switch (parseAppOptions(argc, argv, options, error)) {
    case AppOptionsResult::Help:
        std::fputs(appUsage(), stdout);
        return 0;
    case AppOptionsResult::UsageError:
        std::fprintf(stderr, "stagebeacon: %s (see --help)\n", error.c_str());
        return 2;
    case AppOptionsResult::Run:
        break;
    }
    // The calendar is drawn with cairo into an image; nothing here uses
    // OpenGL. Left alone, GTK probes GLX when it opens the display, which
    // loads the Mesa driver (and with it LLVM): a third of the start-up on
    // a machine without a GPU. A user's own GDK_GL still wins.
    setenv("GDK_GL", "disable", 0);
    if (!options.headless && !gtk_init_check(&argc, &argv))
        return fail("cannot open a display; run it with --headless instead");
    PlayerLog log;
    if (!log.open(options.logPath, error)) return fail(error);
    if (options.bareWindow) return runBareWindow(log, options);
    if (options.pluginPath.empty()) options.pluginPath = pluginBesideProgram(programPath(argv[0]));
    if (options.pluginPath.empty())
        return fail("cannot find the plug-in (lib/stagebeacon/libstagebeacon.so beside the "
                    "program); give one with --plugin");

    HostServices services(log, options.headless);
    VisualSession session;
    if (!session.start(options.pluginPath, services.record(), error)) return fail(error);

    MprisChoice choice([&](const MprisMessage& message) {
        log.writeLine("mpris: " + describeMprisMessage(message));
        deliver(session, message);
    });
    MprisWatch watch(choice, [&](const std::string& line) { log.writeLine(line); });
    // The players are looked for once the calendar is up, so the first frame
    // waits for nothing on the bus; or after a second at the latest, for a
    // window that starts hidden and draws nothing.
    struct Deferred {
        MprisWatch& watch;
        guint fallback = 0;
        void start() {
            if (fallback) g_source_remove(fallback);
            fallback = 0;
            watch.start();
        }
    } deferred{watch};
    deferred.fallback = g_timeout_add(
        1000,
        [](gpointer data) {
            Deferred* self = static_cast<Deferred*>(data);
            self->fallback = 0;
            self->watch.start();
            return G_SOURCE_REMOVE;
        },
        &deferred);
    auto firstFrame = [&deferred] { deferred.start(); };

    int status = options.headless ? runAppHeadless(session, log, options, firstFrame)
                                  : runAppWindow(session, log, options, firstFrame);
    if (deferred.fallback) g_source_remove(deferred.fallback);
    return status;
}
