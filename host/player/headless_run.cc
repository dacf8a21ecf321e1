#include "headless_run.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include "script.h"

namespace {

// Longer lines are not a script anyone wrote by hand.
const size_t kMaxLineLength = 64 * 1024;

// How often wait-updates ticks, as the windowed player does.
const std::chrono::milliseconds kIdleInterval(30);

class ScriptRunner {
  public:
    ScriptRunner(VisualSession& session, HostServices& services, PlayerLog& log)
        : session(session), services(services), log(log) {}

    // Runs one command. false with a reason in error when it failed.
    bool run(const ScriptCommand& command, std::string& error);

  private:
    bool snapshot(const std::string& path, std::string& error);
    bool waitUpdates(double seconds, std::string& error);
    bool pluginCommand(const ScriptCommand& command, std::string& error);

    VisualSession& session;
    HostServices& services;
    PlayerLog& log;
};

bool ScriptRunner::run(const ScriptCommand& command, std::string& error) {
    const std::vector<long>& n = command.numbers;
    switch (command.verb) {
    case ScriptVerb::Show:
        session.show(n[0], n[1], n[2], n[3]);
        return true;
    case ScriptVerb::Resize:
        session.resize(n[0], n[1], n[2], n[3]);
        return true;
    case ScriptVerb::Hide:
        session.hide();
        return true;
    case ScriptVerb::Idle:
        for (long i = 0; i < n[0]; ++i)
            session.idle();
        return true;
    case ScriptVerb::Down:
        session.mouseDownRecord(n[0], n[1]);
        session.mouseEvent(kPlayerMouseDown, n[0], n[1], kPlayerPrimaryButton, 0, 0);
        return true;
    case ScriptVerb::Up:
        session.mouseEvent(kPlayerMouseUp, n[0], n[1], kPlayerPrimaryButton, 0, 0);
        return true;
    case ScriptVerb::CtrlUp:
        session.mouseEvent(kPlayerMouseUp, n[0], n[1], kPlayerPrimaryButton,
                           kPlayerControlKeyModifier, 0);
        return true;
    case ScriptVerb::Right:
        session.mouseEvent(kPlayerMouseDown, n[0], n[1], kPlayerSecondaryButton, 0, 0);
        session.mouseEvent(kPlayerMouseUp, n[0], n[1], kPlayerSecondaryButton, 0, 0);
        return true;
    case ScriptVerb::Move:
        session.mouseEvent(kPlayerMouseMoved, n[0], n[1], 0, 0, 0);
        return true;
    case ScriptVerb::Wheel:
        session.mouseEvent(kPlayerMouseWheelMoved, n[0], n[1], 0, 0, static_cast<int32_t>(n[2]));
        return true;
    case ScriptVerb::Key:
        session.key(static_cast<unsigned char>(n[0]));
        return true;
    case ScriptVerb::Type:
        for (char c : command.texts[0])
            session.key(static_cast<unsigned char>(c));
        return true;
    case ScriptVerb::Track:
        session.changeTrack(kVisualPluginChangeTrackMessage, command.texts[0], command.texts[1]);
        return true;
    case ScriptVerb::Play:
        session.changeTrack(kVisualPluginPlayMessage, command.texts[0], command.texts[1]);
        return true;
    case ScriptVerb::Pause:
        session.pause();
        return true;
    case ScriptVerb::Unpause:
        session.unpause();
        return true;
    case ScriptVerb::Configure:
        session.configure();
        return true;
    case ScriptVerb::Snapshot:
        return snapshot(command.texts[0], error);
    case ScriptVerb::WaitUpdates:
        return waitUpdates(command.seconds, error);
    case ScriptVerb::Answer:
        services.queueAlertAnswer(static_cast<int32_t>(n[0]));
        return true;
    case ScriptVerb::Choose:
        services.queueFileChoice(true, command.texts[0]);
        return true;
    case ScriptVerb::ChooseCancel:
        services.queueFileChoice(false, std::string());
        return true;
    case ScriptVerb::Sleep:
        std::this_thread::sleep_for(std::chrono::milliseconds(n[0]));
        return true;
    case ScriptVerb::Quit:
        session.quit();
        return true;
    case ScriptVerb::PluginCommand:
        return pluginCommand(command, error);
    }
    return true;
}

bool ScriptRunner::snapshot(const std::string& path, std::string& error) {
    if (!session.shown()) {
        error = "snapshot: no window is shown";
        return false;
    }
    session.update();
    std::string reason;
    if (!session.display().savePng(path, reason)) {
        error = "snapshot: " + reason;
        return false;
    }
    log.writeLine("snapshot: " + path);
    return true;
}

bool ScriptRunner::waitUpdates(double seconds, std::string& error) {
    auto busy = session.backgroundWorkRunning();
    if (!busy) {
        error = "wait-updates: the plug-in reports no background work";
        return false;
    }
    auto deadline = std::chrono::steady_clock::now() +
                    std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                        std::chrono::duration<double>(seconds));
    while (busy() != 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            char text[96];
            std::snprintf(text, sizeof text, "wait-updates: timed out after %g s", seconds);
            log.writeLine(text);
            error = text;
            return false;
        }
        session.idle();
        std::this_thread::sleep_for(kIdleInterval);
    }
    return true;
}

bool ScriptRunner::pluginCommand(const ScriptCommand& command, std::string& error) {
    auto hook = session.scriptCommand();
    char reason[512] = "";
    int32_t result =
        hook ? hook(command.name.c_str(), command.rest.c_str(), reason, sizeof reason) : -1;
    if (result == 0) return true;
    if (result == -1) {
        error = "unknown command " + command.name;
        return false;
    }
    reason[sizeof reason - 1] = '\0';
    error = command.name + ": " + (reason[0] ? reason : "failed");
    return false;
}

} // namespace

int runHeadless(VisualSession& session, HostServices& services, PlayerLog& log,
                std::istream& script, const std::string& scriptName) {
    ScriptRunner runner(session, services, log);
    std::string line;
    int lineNumber = 0;
    int status = 0;
    while (session.running() && std::getline(script, line)) {
        ++lineNumber;
        ScriptCommand command;
        std::string error;
        bool ok;
        if (line.size() > kMaxLineLength) {
            error = "line longer than " + std::to_string(kMaxLineLength) + " characters";
            ok = false;
        } else {
            ParseResult parsed = parseScriptCommand(line, command, error);
            ok = parsed != ParseResult::Error &&
                 (parsed == ParseResult::Empty || runner.run(command, error));
        }
        if (!ok) {
            std::fprintf(stderr, "%s:%d: %s\n", scriptName.c_str(), lineNumber, error.c_str());
            status = 1;
            break;
        }
    }
    session.quit();
    return status;
}
