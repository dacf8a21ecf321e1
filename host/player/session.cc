#include "session.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace {

// The player version we announce: 9.2 final.
const PlayerNumVersion kAppVersion = {9, 0x20, kPlayerVersionFinal, 0};

// Length-prefixed copy, truncated to what the array holds (at most 255).
void setLengthPrefixed(uint8_t* target, size_t capacity, const std::string& text) {
    size_t length = std::min(text.size(), std::min<size_t>(capacity - 1, 255));
    target[0] = static_cast<uint8_t>(length);
    std::memcpy(target + 1, text.data(), length);
}

// Ticks (1/60 s) since the first event, as event records carry them.
uint32_t ticksNow() {
    static const auto start = std::chrono::steady_clock::now();
    auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    return static_cast<uint32_t>(elapsed.count() * 60 / 1000);
}

PlayerPoint pointAt(int x, int y) {
    PlayerPoint point;
    point.v = static_cast<int16_t>(y);
    point.h = static_cast<int16_t>(x);
    return point;
}

} // namespace

VisualSession::~VisualSession() {
    quit();
}

bool VisualSession::start(const std::string& pluginPath, const PlayerHostServices* services,
                          std::string& error) {
    if (!openPluginLibrary(pluginPath, library, error)) return false;
    host.pluginPath = library.path;

    PluginMessageInfo entryInfo;
    std::memset(&entryInfo, 0, sizeof entryInfo);
    PluginInitMessage& request = entryInfo.u.initMessage;
    request.majorVersion = 1;
    request.minorVersion = 0;
    request.appVersion = kAppVersion;
    request.appCookie = &host;
    request.appProc = playerHostCallback;
    request.services = services;
    PlayerStatus status = library.entry(kPlayerInitMessage, &entryInfo, nullptr);
    init = request;
    if (status != kPlayerNoErr) {
        error = pluginPath + ": init failed with status " + std::to_string(status);
        return false;
    }
    if (!host.registered || !host.registration.handler) {
        error = pluginPath + " registered no visual handler at init (status " +
                std::to_string(status) + ")";
        (void)library.entry(kPlayerCleanupMessage, &entryInfo, nullptr);
        return false;
    }

    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    info.u.initMessage.messageMajorVersion = 1;
    info.u.initMessage.messageMinorVersion = 0;
    info.u.initMessage.appVersion = kAppVersion;
    info.u.initMessage.appCookie = &host;
    info.u.initMessage.appProc = playerHostCallback;
    status = host.registration.handler(kVisualPluginInitMessage, &info,
                                       host.registration.registerRefCon);
    if (status != kPlayerNoErr) {
        error =
            pluginPath + ": the visual handler's init failed with status " + std::to_string(status);
        (void)library.entry(kPlayerCleanupMessage, &entryInfo, nullptr);
        return false;
    }
    refCon = info.u.initMessage.refCon;
    started = true;
    return true;
}

PlayerStatus VisualSession::send(uint32_t message, VisualPluginMessageInfo& info) {
    if (!running()) return kPlayerNoErr;
    return host.registration.handler(message, &info, refCon);
}

void VisualSession::sendBare(uint32_t message) {
    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    (void)send(message, info);
}

void VisualSession::sendWindow(uint32_t message, int x, int y, int width, int height) {
    if (!running() || x < 0 || y < 0 || width < 1 || height < 1 || x + width > kMaxPortSide ||
        y + height > kMaxPortSide)
        return;
    // The old port stays alive until the plug-in has taken the new one.
    std::unique_ptr<HostPort> previous = std::move(port);
    port.reset(new HostPort(x + width, y + height, frames));
    frames.setCurrentPort(port->port(), x + width, y + height);

    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    PlayerRect rect;
    rect.top = static_cast<int16_t>(y);
    rect.left = static_cast<int16_t>(x);
    rect.bottom = static_cast<int16_t>(y + height);
    rect.right = static_cast<int16_t>(x + width);
    // show and set window carry the same fields.
    info.u.showWindowMessage.port = port->port();
    info.u.showWindowMessage.drawRect = rect;
    (void)send(message, info);
}

void VisualSession::show(int x, int y, int width, int height) {
    sendWindow(kVisualPluginShowWindowMessage, x, y, width, height);
    isShown = running();
}

void VisualSession::resize(int x, int y, int width, int height) {
    sendWindow(kVisualPluginSetWindowMessage, x, y, width, height);
}

void VisualSession::hide() {
    sendBare(kVisualPluginHideWindowMessage);
    isShown = false;
}

void VisualSession::idle() {
    sendBare(kVisualPluginIdleMessage);
}

void VisualSession::update() {
    sendBare(kVisualPluginUpdateMessage);
}

void VisualSession::configure() {
    sendBare(kVisualPluginConfigureMessage);
}

void VisualSession::pause() {
    sendBare(kVisualPluginPauseMessage);
}

void VisualSession::unpause() {
    sendBare(kVisualPluginUnpauseMessage);
}

void VisualSession::stop() {
    sendBare(kVisualPluginStopMessage);
}

void VisualSession::changeTrack(uint32_t message, const std::string& artist,
                                const std::string& album, const std::string& title) {
    PlayerTrackInfo track;
    std::memset(&track, 0, sizeof track);
    track.recordLength = sizeof track;
    setLengthPrefixed(track.name, sizeof track.name, title.empty() ? album : title);
    setLengthPrefixed(track.artist, sizeof track.artist, artist);
    setLengthPrefixed(track.album, sizeof track.album, album);
    PlayerStreamInfo stream;
    std::memset(&stream, 0, sizeof stream);
    stream.recordLength = sizeof stream;

    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    if (message == kVisualPluginPlayMessage) {
        info.u.playMessage.trackInfo = &track;
        info.u.playMessage.streamInfo = &stream;
        info.u.playMessage.volume = 100;
    } else {
        info.u.changeTrackMessage.trackInfo = &track;
        info.u.changeTrackMessage.streamInfo = &stream;
    }
    (void)send(message, info);
}

void VisualSession::key(unsigned char code) {
    PlayerEventRecord event;
    std::memset(&event, 0, sizeof event);
    event.what = kPlayerKeyDownEvent;
    event.message = code;
    event.when = ticksNow();
    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    info.u.eventMessage.event = &event;
    (void)send(kVisualPluginEventMessage, info);
}

void VisualSession::mouseDownRecord(int x, int y) {
    PlayerEventRecord event;
    std::memset(&event, 0, sizeof event);
    event.what = kPlayerMouseDownEvent;
    event.when = ticksNow();
    event.where = pointAt(x, y);
    VisualPluginMessageInfo info;
    std::memset(&info, 0, sizeof info);
    info.u.eventMessage.event = &event;
    (void)send(kVisualPluginEventMessage, info);
}

void VisualSession::mouseEvent(uint32_t kind, int x, int y, uint16_t button, uint32_t modifiers,
                               int32_t wheelDelta) {
    if (!running()) return;
    PlayerMouseEvent event;
    std::memset(&event, 0, sizeof event);
    event.eventClass = kPlayerEventClassMouse;
    event.kind = kind;
    event.where = pointAt(x, y);
    event.modifiers = modifiers;
    event.button = button;
    event.wheelDelta = wheelDelta;
    host.deliverMouseEvent(event);
}

void VisualSession::quit() {
    if (!running()) return;
    if (isShown) hide();
    sendBare(kVisualPluginCleanupMessage);
    finished = true;
    PluginMessageInfo entryInfo;
    std::memset(&entryInfo, 0, sizeof entryInfo);
    (void)library.entry(kPlayerCleanupMessage, &entryInfo, nullptr);
}
