// The plug-in as the player sees it: registration, the message table and
// its result codes, the drawing surface across show/hide, keys and the
// mouse monitor.
#include <unistd.h>

#include <chrono>
#include <thread>

#include "demo_shows.h"
#include "platform/alert.h"
#include "platform/file_dialog.h"
#include "fake_host.h"

namespace {

std::string pascal(const uint8_t* text) { return std::string(text + 1, text + 1 + text[0]); }

void setPascal(uint8_t* out, const char* text) {
    out[0] = static_cast<uint8_t>(strlen(text));
    memcpy(out + 1, text, out[0]);
}

using EntryPoint = FakeHost;

TEST_F(EntryPoint, RegistersTheHandlerWithTheDescribedValues) {
    EXPECT_EQ(startEntry(), kPlayerNoErr);
    ASSERT_EQ(registrations, 1);
    EXPECT_EQ(pascal(registered.name), "Stagebeacon");
    EXPECT_EQ(registered.options, 40u);
    EXPECT_EQ(registered.creator, PLAYER_FOURCC('?', '?', '?', '?'));
    EXPECT_EQ(registered.pluginVersion.majorRev, 2);
    EXPECT_EQ(registered.pluginVersion.minorAndBugRev, 9);
    EXPECT_EQ(registered.pluginVersion.stage, kPlayerVersionFinal);
    EXPECT_EQ(registered.pluginVersion.nonRelRev, 0);
    EXPECT_EQ(registered.handler, &VisualPluginHandler);
    EXPECT_EQ(registered.registerRefCon, nullptr);
    EXPECT_EQ(registered.timeBetweenDataInMS, 1000000u);
    EXPECT_EQ(registered.numWaveformChannels, 2u);
    EXPECT_EQ(registered.numSpectrumChannels, 2u);
    EXPECT_EQ(registered.minWidth, 64);
    EXPECT_EQ(registered.minHeight, 64);
    EXPECT_EQ(registered.maxWidth, 32767);
    EXPECT_EQ(registered.maxHeight, 32767);
    EXPECT_EQ(registered.windowAlignmentInBytes, 0);
    // A scripted host can ask whether an update runs.
    ASSERT_NE(entryInit.backgroundWorkRunning, nullptr);
}

TEST_F(EntryPoint, AnswersCleanupAndRefusesEverythingElse) {
    EXPECT_EQ(iTunesPluginMainMachO(kPlayerCleanupMessage, nullptr, nullptr), kPlayerNoErr);
    EXPECT_EQ(iTunesPluginMainMachO(PLAYER_FOURCC('w', 'h', 'a', 't'), nullptr, nullptr),
              kPlayerUnimplementedMessage);
}

TEST_F(EntryPoint, AHeadlessHostAnswersEveryDialogFromItsScript) {
    static int alertAnswers;
    static int fileAnswers;
    alertAnswers = 1;
    fileAnswers = 2;
    services.takeAlertAnswer = [](void*) -> int32_t { return alertAnswers-- > 0 ? 1 : -1; };
    services.takeFileChoice = [](void*, char* path, size_t size) -> int32_t {
        if (fileAnswers-- <= 0) return -1;
        snprintf(path, size, "/music/library.xml");
        return 1;
    };
    ASSERT_EQ(startEntry(), kPlayerNoErr);
    AlertRequest twoButtons{"Title.", "Text", "OK", "Cancel"};
    EXPECT_EQ(runAlert(twoButtons), AlertButton::Cancel);
    EXPECT_EQ(runAlert(twoButtons), AlertButton::Default); // the script had one answer
    std::string chosen;
    EXPECT_TRUE(chooseFileToOpen(FileOpenRequest{"Locate", ""}, &chosen));
    EXPECT_EQ(chosen, "/music/library.xml");
    chosen.clear();
    EXPECT_TRUE(chooseFileToSave(FileSaveRequest{"Export", "", "shows.ics"}, &chosen));
    EXPECT_EQ(chosen, "/music/library.xml");
    EXPECT_FALSE(chooseFileToSave(FileSaveRequest{"Export", "", "shows.ics"}, &chosen));
}

using Handler = FakeHost;

TEST_F(Handler, InitBuildsTheInstanceAndTheApplicationOnce) {
    fileSpecStatus = -43;
    EXPECT_EQ(startInstance(), -43); // the file-reference call's status
    ASSERT_NE(instance, nullptr);
    ASSERT_NE(Stagebeacon, nullptr);
    EXPECT_EQ(CalVis::visualPluginData.load(), data());
    EXPECT_STREQ(data()->pluginPath, "/plugins/libstagebeacon.so");
    // Start-up ran: the settings files now exist in the home folder.
    EXPECT_TRUE(exists(home.support()));

    StagebeaconClass* first = Stagebeacon;
    VisualPluginMessageInfo second{};
    second.u.initMessage.appProc = appProc;
    second.u.initMessage.appCookie = this;
    EXPECT_EQ(registered.handler(kVisualPluginInitMessage, &second, nullptr), -43);
    EXPECT_EQ(Stagebeacon, first);
    settle();
    VisualPluginMessageInfo none{};
    EXPECT_EQ(registered.handler(kVisualPluginCleanupMessage, &none, second.u.initMessage.refCon),
              kPlayerNoErr);
}

// A first run clears the saved version flag before the first update; the
// check the update thread runs before that update then has the last word.
TEST_F(Handler, FirstRunConsumesTheMarkerAndTheCheckComesAfterTheClear) {
    std::string marker = writeFirstRunMarker();
    server.onPath("/current_version.php", ScriptedReply::ok("99.0")); // newer, no message
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    EXPECT_FALSE(exists(marker));
    // The forced first update asks the service for its sites at once.
    EXPECT_TRUE(Stagebeacon->calGetData.updateStarted());
    for (int i = 0; i < 5000 && Stagebeacon->calGetData.startupWork.load() != 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(Stagebeacon->calGetData.startupWork.load(), 0u);
    EXPECT_TRUE(store().getStagebeacon_version_update());
}

TEST_F(Handler, AnswersEveryMessageWithItsResultCode) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    ASSERT_EQ(show(newPort(700, 500), 0, 0, 500, 700), kPlayerNoErr);
    settle();
    for (uint32_t message :
         {kVisualPluginConfigureMessage, kVisualPluginChangeTrackMessage, kVisualPluginPlayMessage,
          kVisualPluginPauseMessage, kVisualPluginUnpauseMessage, kVisualPluginRenderMessage,
          kVisualPluginIdleMessage, kVisualPluginUpdateMessage, kVisualPluginSetPositionMessage,
          kVisualPluginEnableMessage, kVisualPluginDisableMessage, kVisualPluginStopMessage})
        EXPECT_EQ(send(message), kPlayerNoErr) << std::hex << message;
    EXPECT_EQ(send(PLAYER_FOURCC('x', 'y', 'z', 'w')), kPlayerUnimplementedMessage);

    PlayerEventRecord keyUp{};
    keyUp.what = kPlayerKeyUpEvent;
    VisualPluginMessageInfo info{};
    info.u.eventMessage.event = &keyUp;
    EXPECT_EQ(send(kVisualPluginEventMessage, &info), kPlayerUnimplementedMessage);
    PlayerEventRecord down{};
    down.what = kPlayerMouseDownEvent;
    down.where = PlayerPoint{40, 30};
    info.u.eventMessage.event = &down;
    EXPECT_EQ(send(kVisualPluginEventMessage, &info), kPlayerUnimplementedMessage);
    EXPECT_EQ(Stagebeacon->calVis.mouseX, 30);
    EXPECT_EQ(Stagebeacon->calVis.mouseY, 40);
}

TEST_F(Handler, KeepsTrackCopiesAndThePlayState) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    PlayerTrackInfo track{};
    track.recordLength = sizeof track;
    setPascal(track.artist, "Wilco");
    setPascal(track.album, "Summerteeth");
    VisualPluginMessageInfo info{};
    info.u.playMessage.trackInfo = &track;
    EXPECT_EQ(send(kVisualPluginPlayMessage, &info), kPlayerNoErr);
    EXPECT_TRUE(data()->playing);
    EXPECT_EQ(pascal(data()->trackInfo.artist), "Wilco");
    EXPECT_EQ(data()->streamInfo.recordLength, 0u); // none given: zeroed

    EXPECT_EQ(send(kVisualPluginPauseMessage), kPlayerNoErr);
    EXPECT_FALSE(data()->playing);
    EXPECT_EQ(send(kVisualPluginUnpauseMessage), kPlayerNoErr);
    EXPECT_TRUE(data()->playing);
    EXPECT_EQ(send(kVisualPluginChangeTrackMessage), kPlayerNoErr); // no record
    EXPECT_EQ(data()->trackInfo.artist[0], 0);

    info.u.changeTrackMessage.trackInfo = &track;
    EXPECT_EQ(send(kVisualPluginChangeTrackMessage, &info), kPlayerNoErr);
    EXPECT_EQ(send(kVisualPluginHideWindowMessage), kPlayerNoErr);
    EXPECT_EQ(data()->trackInfo.artist[0], 0);
}

TEST_F(Handler, TrackChangesAndPlayTellTheNotifierTheArtist) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    store().setNotifyConcerts(true);
    store().setNotificationWindowStyle(true); // the desktop service: one log line each
    ASSERT_NE(fileDemoShow(Stagebeacon->concerts.current().get(), makeDemoShow("Wilco", 2030, 5, 1)),
              nullptr);
    PlayerTrackInfo track{};
    setPascal(track.artist, "Wilco");
    setPascal(track.album, "Summerteeth");
    VisualPluginMessageInfo info{};
    info.u.changeTrackMessage.trackInfo = &track;
    EXPECT_EQ(send(kVisualPluginChangeTrackMessage, &info), kPlayerNoErr);
    setPascal(track.artist, "Beck");
    info.u.playMessage.trackInfo = &track;
    EXPECT_EQ(send(kVisualPluginPlayMessage, &info), kPlayerNoErr);
    int notified = 0;
    for (const std::string& line : headlessLogLines())
        notified += line.rfind("notify: ", 0) == 0 && line.find("Wilco") != std::string::npos;
    EXPECT_EQ(notified, 1);
}

TEST_F(Handler, CleanupJoinsTheUpdateThread) {
    ScriptedReply slow = ScriptedReply::ok("");
    slow.delayBeforeHeadMs = 300;
    server.onPath("/current_version.php", ScriptedReply::ok("2.9"));
    server.enqueue(slow);
    writeFirstRunMarker();
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    ASSERT_TRUE(Stagebeacon->calGetData.updateStarted());
    EXPECT_EQ(send(kVisualPluginCleanupMessage), kPlayerNoErr);
    EXPECT_FALSE(Stagebeacon->calGetData.updateRunning());
    EXPECT_FALSE(Stagebeacon->calGetData.updateStarted());
    EXPECT_EQ(CalVis::visualPluginData.load(), nullptr);
}

using Surface = FakeHost;

TEST_F(Surface, ASecondShowWithTheSameRectangleKeepsTheImage) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    PlayerPort* port = newPort(820, 620);
    ASSERT_EQ(show(port, 10, 20, 610, 820), kPlayerNoErr);
    settle();
    OffscreenImage* image = data()->offscreen.get();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->width(), 800);
    EXPECT_EQ(image->height(), 600);
    // The frame went into the port inside the rectangle, nothing outside.
    EXPECT_NE(data()->destPort->pixel(400, 300), 0u);
    EXPECT_EQ(data()->destPort->pixel(5, 5), 0u);

    ASSERT_EQ(show(port, 10, 20, 610, 820), kPlayerNoErr);
    settle();
    EXPECT_EQ(data()->offscreen.get(), image);

    VisualPluginMessageInfo info{};
    info.u.setWindowMessage.port = port;
    info.u.setWindowMessage.drawRect = PlayerRect{0, 0, 400, 500};
    EXPECT_EQ(send(kVisualPluginSetWindowMessage, &info), kPlayerNoErr);
    EXPECT_EQ(data()->offscreen->width(), 500);
}

TEST_F(Surface, HideAndShowCyclesMoveThePortAndTheMonitor) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    for (int cycle = 0; cycle < 3; ++cycle) {
        PlayerPort* port = newPort(300, 200);
        ASSERT_EQ(show(port, 0, 0, 200, 300), kPlayerNoErr);
        settle();
        EXPECT_EQ(data()->hostPort, port);
        ASSERT_NE(monitor, nullptr);
        EXPECT_EQ(send(kVisualPluginHideWindowMessage), kPlayerNoErr);
        EXPECT_EQ(data()->destPort, nullptr);
        EXPECT_EQ(monitor, nullptr);
        // Hidden: a render draws nowhere.
        EXPECT_EQ(send(kVisualPluginIdleMessage), kPlayerNoErr);
    }
    EXPECT_EQ(monitorInstalls, 3);
    // Down, up, moved twice, dragged, wheel.
    ASSERT_EQ(monitorTypes.size(), 6u);
    EXPECT_EQ(monitorTypes[2].eventKind, monitorTypes[3].eventKind);
}

TEST_F(Surface, AnImageThatCannotBeMadeLeavesNoPort) {
    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    EXPECT_EQ(show(newPort(10, 10), 0, 0, 0, 0), kPlayerMemoryFull);
    EXPECT_EQ(data()->destPort, nullptr);
    EXPECT_NE(monitor, nullptr); // installed in every case
}

class Keys : public FakeHost {
  protected:
    void SetUp() override {
        FakeHost::SetUp();
        ASSERT_EQ(startInstance(), kPlayerNoErr);
        settle();
        store().setCurCityDisplay("");
        store().setCurStateDisplay("");
        store().setCurSearchRadiusDisplay("");
    }
};

TEST_F(Keys, TheCityFieldTakesSpacesAndEverythingFromCapitalAToSmallZ) {
    store().setUpdatingCity(true);
    EXPECT_EQ(type("Ann{ [Arbor]~9"), kPlayerNoErr);
    EXPECT_EQ(text(&ProtectedData::getCurCityDisplay), "Ann [Arbor]");
    EXPECT_EQ(key(8), kPlayerNoErr);
    EXPECT_EQ(text(&ProtectedData::getCurCityDisplay), "Ann [Arbor");
    EXPECT_EQ(key(9), kPlayerNoErr);
    EXPECT_FALSE(store().getUpdatingCity());
    EXPECT_TRUE(store().getUpdatingState());
}

TEST_F(Keys, TabInTheStateFieldMovesOnWithoutSearchingReturnSearches) {
    store().setCurCityDisplay("Boston");
    store().setUpdatingState(true);
    type("MA");
    EXPECT_EQ(key(9), kPlayerNoErr);
    EXPECT_TRUE(store().getUpdatingSearchRadius());
    EXPECT_FALSE(Stagebeacon->calGetData.updateStarted());

    store().setUpdatingSearchRadius(false);
    store().setUpdatingState(true);
    EXPECT_EQ(key(13), kPlayerNoErr);
    EXPECT_FALSE(store().getUpdatingState());
    EXPECT_TRUE(Stagebeacon->calGetData.updateStarted());
}

TEST_F(Keys, TheRadiusFieldKeepsFourCharactersAndIsLimitedTo300) {
    store().setUpdatingSearchRadius(true);
    type("9x87654");
    EXPECT_EQ(text(&ProtectedData::getCurSearchRadiusDisplay), "9876");
    EXPECT_EQ(key(10), kPlayerNoErr);
    EXPECT_FALSE(store().getUpdatingSearchRadius());
    EXPECT_EQ(text(&ProtectedData::getCurSearchRadiusDisplay), "300");
}

TEST_F(Keys, WithNoFieldOpenOnlyTheArrowsAreHandled) {
    EXPECT_EQ(key(30), kPlayerNoErr);
    EXPECT_EQ(key(31), kPlayerNoErr);
    EXPECT_EQ(key('x'), kPlayerUnimplementedMessage);
    EXPECT_EQ(key(13), kPlayerUnimplementedMessage);
}

using Monitor = FakeHost;

TEST_F(Monitor, PlayerVersionsFrom81ToBelow10ReportPoints22PixelsHigh) {
    EXPECT_EQ(monitorMouseY(100, 10, 9.2f), 112);
    EXPECT_EQ(monitorMouseY(100, 10, 8.1f), 112);
    EXPECT_EQ(monitorMouseY(100, 10, 7.0f), 90);
    EXPECT_EQ(monitorMouseY(100, 10, 10.0f), 90);
    EXPECT_EQ(monitorMouseY(100, 10, 10.1f), 90);

    ASSERT_EQ(startInstance(), kPlayerNoErr);
    settle();
    ASSERT_EQ(show(newPort(400, 300), 10, 20, 300, 400), kPlayerNoErr);
    settle();
    store().setiTunesVersion(9.2f);
    PlayerMouseEvent moved{kPlayerEventClassMouse, kPlayerMouseMoved, PlayerPoint{100, 50}, 0, 0, 0};
    ASSERT_NE(monitor, nullptr);
    EXPECT_EQ(monitor(nullptr, &moved, nullptr), kPlayerEventNotHandled);
    EXPECT_EQ(Stagebeacon->calVis.mouseX, 30);
    EXPECT_EQ(Stagebeacon->calVis.mouseY, 112);
    PlayerMouseEvent key{kPlayerEventClassKeyboard, kPlayerMouseMoved, PlayerPoint{5, 5}, 0, 0, 0};
    EXPECT_EQ(monitor(nullptr, &key, nullptr), kPlayerEventNotHandled);
    EXPECT_EQ(Stagebeacon->calVis.mouseX, 30); // other classes are ignored
}

} // namespace
