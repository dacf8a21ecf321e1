// Notifications on track changes: what is notified and when, through the
// desktop notifier and through the own window (played by a recording window
// back end whose timers the test fires by hand).
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "demo_shows.h"
#include "export/notify.h"
#include "export/notify_gui.h"
#include "model/artist_key.h"
#include "platform/desktop_notifier.h"
#include "platform/headless.h"
#include "platform/resources_folder.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/service_config.h"

namespace {

constexpr int kScreenWidth = 1600;
constexpr int kScreenHeight = 900;
constexpr int kWindowWidth = 300;
constexpr int kWindowHeight = 90;

struct FakeWindow {
    std::string texts[6];
    std::string image;
    int left = 0, top = 0;
    float alpha = -1.0f;
    bool shown = false, hidden = false;
    NotifyEventProc proc = nullptr;
    void* data = nullptr;
};

struct FakeTimer {
    NotifyTimerProc proc = nullptr;
    void* data = nullptr;
    bool removed = false;
};

FakeWindow* fake(NotifyWindow* window) {
    return reinterpret_cast<FakeWindow*>(window);
}

class RecordingWindows : public NotifyWindowBackend {
  public:
    std::vector<std::unique_ptr<FakeWindow>> windows;
    std::vector<std::unique_ptr<FakeTimer>> timers;

    NotifyWindow* createWindow(const char* uiPath) override {
        if (FILE* file = fopen(uiPath, "r"))
            fclose(file);
        else
            return nullptr;
        windows.push_back(std::make_unique<FakeWindow>());
        return reinterpret_cast<NotifyWindow*>(windows.back().get());
    }
    int installEventHandler(NotifyWindow* window, NotifyEventProc proc, void* data) override {
        fake(window)->proc = proc;
        fake(window)->data = data;
        return 0;
    }
    bool setImage(NotifyWindow* window, const char* pngPath) override {
        fake(window)->image = pngPath;
        return true;
    }
    void setText(NotifyWindow* window, int index, const char* text) override {
        fake(window)->texts[index] = text;
    }
    void screenSize(int* width, int* height) override {
        *width = kScreenWidth;
        *height = kScreenHeight;
    }
    void windowSize(NotifyWindow*, int* width, int* height) override {
        *width = kWindowWidth;
        *height = kWindowHeight;
    }
    void move(NotifyWindow* window, int left, int top) override {
        EXPECT_FALSE(fake(window)->hidden) << "moved after hiding";
        fake(window)->left = left;
        fake(window)->top = top;
    }
    void setAlpha(NotifyWindow* window, float alpha) override { fake(window)->alpha = alpha; }
    void show(NotifyWindow* window) override { fake(window)->shown = true; }
    void hide(NotifyWindow* window) override {
        EXPECT_FALSE(fake(window)->hidden) << "hidden twice";
        fake(window)->hidden = true;
        fake(window)->proc = nullptr;
    }
    NotifyMainLoop* mainLoop() override { return nullptr; }
    NotifyTimer* installTimer(NotifyMainLoop*, double firstDelay, double interval,
                              NotifyTimerProc proc, void* data) override {
        EXPECT_DOUBLE_EQ(firstDelay, 0.01);
        EXPECT_DOUBLE_EQ(interval, 0.01);
        timers.push_back(std::make_unique<FakeTimer>());
        timers.back()->proc = proc;
        timers.back()->data = data;
        return reinterpret_cast<NotifyTimer*>(timers.back().get());
    }
    void removeTimer(NotifyTimer* timer) override {
        auto* t = reinterpret_cast<FakeTimer*>(timer);
        EXPECT_FALSE(t->removed) << "timer removed twice";
        t->removed = true;
    }

    // Fires every live timer `count` times.
    void tick(int count = 1) {
        for (int i = 0; i < count; ++i)
            for (size_t t = 0; t < timers.size(); ++t)
                if (!timers[t]->removed)
                    timers[t]->proc(reinterpret_cast<NotifyTimer*>(timers[t].get()),
                                    timers[t]->data);
    }
    size_t liveTimers() const {
        size_t live = 0;
        for (const auto& t : timers)
            live += t->removed ? 0 : 1;
        return live;
    }
    int event(FakeWindow* window, NotifyEventKind kind, int x, int y) {
        NotifyEvent e;
        e.kind = kind;
        e.locationValid = true;
        e.globalX = x;
        e.globalY = y;
        return window->proc ? window->proc(e, window->data) : kNotifyEventNotHandled;
    }
};

std::vector<DesktopNotification> delivered;
bool recordNotification(const DesktopNotification& n) {
    delivered.push_back(n);
    return true;
}

class Notify : public ::testing::Test {
  protected:
    std::unique_ptr<StagebeaconClass> app = std::make_unique<StagebeaconClass>();
    ProtectedData& store = app->protectedData;
    RecordingWindows windows;

    static void SetUpTestSuite() { setenv("STAGEBEACON_RESOURCES", STAGEBEACON_TEST_RESOURCES, 1); }
    void SetUp() override {
        resetHeadless();
        delivered.clear();
        setDesktopNotifierBackend(recordNotification);
        setNotifyWindowBackend(&windows);
        store.setNotifyConcerts(true);
        store.setNotifyAlbums(true);
        store.setNotificationWindowStyle(true);
        addShow(app->concerts.current().get(), "Neko Case", "The Vic", "Chicago, IL", "ev1", 3, 7);
        addShow(app->concerts.current().get(), "Wilco", "Pabst", "Milwaukee, WI", "ev2", 4, 1);
        addShow(app->albums.current().get(), "Neko Case", "Middle Cyclone", "-", "rel1", 10, 4);
    }
    void TearDown() override {
        removeNotifyWindows();
        setNotifyWindowBackend(nullptr);
        setDesktopNotifierBackend(nullptr);
        resetHeadless();
    }
    static void addShow(SHOWLIST* list, const char* artist, const char* venue, const char* location,
                        const char* url, int month, int day) {
        SHOWENTRY* e = makeDemoShow(artist, 2009, month, day);
        snprintf(e->venue, sizeof e->venue, "%s", venue);
        snprintf(e->location, sizeof e->location, "%s", location);
        snprintf(e->url, sizeof e->url, "%s", url);
        ASSERT_NE(fileDemoShow(list, e), nullptr);
    }
    void play(const char* artist) {
        std::string copy = artist;
        char album[] = "whatever is playing";
        notifyUserOfUpcomingShow(app.get(), &copy[0], album);
    }
    std::string lastAlbum() {
        char text[ProtectedData::LastAlbumNotifiedSize];
        store.getLastAlbumNotified(text);
        return text;
    }
};

TEST_F(Notify, OncePerArtistUntilAnotherArtistIsNotified) {
    store.setNotifyAlbums(false);
    for (int track = 0; track < 3; ++track)
        play("Neko Case");
    ASSERT_EQ(delivered.size(), 1u);
    EXPECT_EQ(delivered[0].title, "Upcoming Concert");
    EXPECT_EQ(delivered[0].body,
              "Artist: Neko Case\nVenue: The Vic (Chicago, IL)\nDate: Mar 7, 2009");
    EXPECT_EQ(delivered[0].iconPath, resourcePath("Stagebeacon_icon_blue.png"));

    play("Nobody We Know"); // no show: the last artist stays
    play("Neko Case");
    EXPECT_EQ(delivered.size(), 1u);
    play("Wilco");
    play("Neko Case");
    ASSERT_EQ(delivered.size(), 3u);
    EXPECT_EQ(delivered[1].body, "Artist: Wilco\nVenue: Pabst (Milwaukee, WI)\nDate: Apr 1, 2009");
    // The lookup goes by artist key; the remembered artist is the track's.
    play("neko case!");
    EXPECT_EQ(delivered.size(), 4u);
    EXPECT_EQ(delivered[3].body.substr(0, 18), "Artist: Neko Case\n");
}

TEST_F(Notify, ReleaseOncePerAlbumAndNeverAnOwnedOne) {
    store.setNotifyConcerts(false);
    play("Neko Case");
    play("Neko Case");
    ASSERT_EQ(delivered.size(), 1u);
    EXPECT_EQ(delivered[0].title, "Upcoming Album Release");
    EXPECT_EQ(delivered[0].body, "Artist: Neko Case\nAlbum: Middle Cyclone\nDate: Oct 4, 2009");
    EXPECT_EQ(delivered[0].iconPath, resourcePath("Stagebeacon_icon_purple.png"));

    // Owned: remembered, never shown.
    store.setLastAlbumNotified("");
    char key[kArtistKeySize] = "Middle Cyclone";
    cleanArtist(key);
    ASSERT_TRUE(app->calGetData.xmlAlbums.add(new XMLALBUM(key)));
    play("Neko Case");
    EXPECT_EQ(delivered.size(), 1u);
    EXPECT_EQ(lastAlbum(), "Middle Cyclone");
}

TEST_F(Notify, SwitchedOffOrUnknownMeansNothing) {
    store.setNotifyConcerts(false);
    store.setNotifyAlbums(false);
    play("Neko Case");
    store.setNotifyConcerts(true);
    store.setNotifyAlbums(true);
    play("Nobody We Know");
    notifyUserOfUpcomingShow(app.get(), nullptr, nullptr);
    EXPECT_TRUE(delivered.empty());
    EXPECT_EQ(lastAlbum(), "");
    char artist[ProtectedData::LastArtistNotifiedSize];
    store.getLastArtistNotified(artist);
    EXPECT_STREQ(artist, "");
}

TEST_F(Notify, BothKindsOnOneTrackChangeConcertFirst) {
    play("Neko Case");
    ASSERT_EQ(delivered.size(), 2u);
    EXPECT_EQ(delivered[0].title, "Upcoming Concert");
    EXPECT_EQ(delivered[1].title, "Upcoming Album Release");
    EXPECT_TRUE(windows.windows.empty()) << "the desktop notifier, not the window";
}

TEST_F(Notify, OwnWindowsStackSlideAndFade) {
    store.setNotificationWindowStyle(false);
    play("Neko Case");
    EXPECT_TRUE(delivered.empty());
    ASSERT_EQ(windows.windows.size(), 2u);
    FakeWindow* concert = windows.windows[0].get();
    FakeWindow* release = windows.windows[1].get();
    EXPECT_EQ(concert->texts[0] + concert->texts[3], "Artist:Neko Case");
    EXPECT_EQ(concert->texts[1] + concert->texts[4], "Venue:The Vic (Chicago, IL)");
    EXPECT_EQ(concert->texts[2] + concert->texts[5], "Date:Mar 7, 2009");
    EXPECT_EQ(release->texts[1] + release->texts[4], "Album:Middle Cyclone");
    EXPECT_EQ(concert->image, resourcePath("Stagebeacon_icon_blue.png"));
    EXPECT_EQ(release->image, resourcePath("Stagebeacon_icon_purple.png"));
    EXPECT_TRUE(concert->shown);
    EXPECT_EQ(concert->left, kScreenWidth - kWindowWidth);
    EXPECT_EQ(concert->top, kScreenHeight + 100) << "below the screen until the first tick";

    windows.tick(300);
    EXPECT_EQ(concert->top, 22);
    EXPECT_EQ(release->top, kWindowHeight + 32);
    EXPECT_EQ(release->alpha, 1.0f);

    windows.tick(420);
    EXPECT_TRUE(concert->hidden);
    EXPECT_TRUE(release->hidden);
    EXPECT_EQ(hNotifyConcertWindow, nullptr);
    EXPECT_EQ(hNotifyAlbumWindow, nullptr);
    EXPECT_EQ(theTimerConcertWindow, nullptr);
    EXPECT_EQ(windows.liveTimers(), 0u);
}

TEST_F(Notify, HoverHoldsAClickOpensThePageANewOneReplaces) {
    store.setNotificationWindowStyle(false);
    store.setNotifyAlbums(false);
    play("Neko Case");
    FakeWindow* first = windows.windows.at(0).get();
    windows.tick(600); // fading
    ASSERT_LT(first->alpha, 1.0f);
    EXPECT_EQ(windows.event(first, NotifyEventKind::MouseMoved, 1500, 40), kNotifyEventNotHandled);
    windows.tick(1);
    EXPECT_EQ(first->alpha, 1.0f);
    windows.tick(399);
    EXPECT_FALSE(first->hidden) << "the hold started again";

    int left = kScreenWidth - kWindowWidth;
    EXPECT_EQ(windows.event(first, NotifyEventKind::MouseDown, left, 40), kNotifyEventNotHandled);
    EXPECT_EQ(windows.event(first, NotifyEventKind::MouseDown, left + 1, 40), 0);
    std::vector<std::string> log = headlessLogLines();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0], "open page: " + serviceHost() + "/clickthrough.php?target=ev1");

    // Another artist's concert replaces the window at once.
    play("Wilco");
    ASSERT_EQ(windows.windows.size(), 2u);
    EXPECT_TRUE(first->hidden);
    EXPECT_EQ(windows.liveTimers(), 1u);
    EXPECT_EQ(windows.windows[1]->texts[3], "Wilco");

    // Shutting down takes the window and its timer away.
    app->calGetData.shutDown();
    EXPECT_TRUE(windows.windows[1]->hidden);
    EXPECT_EQ(windows.liveTimers(), 0u);
    EXPECT_EQ(hNotifyConcertWindow, nullptr);
}

TEST_F(Notify, WithoutTheInterfaceFileNothingShows) {
    setenv("STAGEBEACON_RESOURCES", "/nonexistent-stagebeacon-resources", 1);
    NotifyWindow* window = nullptr;
    NotifyTimer* timer = nullptr;
    NotifyMainLoop* loop = nullptr;
    NotifyTimerProc proc = nullptr;
    EXPECT_EQ(OpenNotifyGUI(&window, &timer, &loop, &proc, kNotifyConcert, "a", "b", "c", "1", "2",
                            "3", "u"),
              kNotifyNoBundle);
    setenv("STAGEBEACON_RESOURCES", STAGEBEACON_TEST_RESOURCES, 1);
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(timer, nullptr);
}

TEST_F(Notify, HeadlessWindowLogsOnceAndStays) {
    setNotifyWindowBackend(nullptr);
    store.setNotificationWindowStyle(false);
    store.setNotifyAlbums(false);
    play("Neko Case");
    std::vector<std::string> log = headlessLogLines();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0], "notify window: Artist: Neko Case | Venue: The Vic (Chicago, IL) | Date: "
                      "Mar 7, 2009");
    EXPECT_NE(hNotifyConcertWindow, nullptr);
}

TEST_F(Notify, UncalledHelpers) {
    SHOWLIST* concerts = app->concerts.current().get();
    concerts->head->recentlyAdded = true;
    concerts->tail->recentlyAdded = true;
    zeroRecentlyAddedFlags(app.get());
    EXPECT_FALSE(concerts->head->recentlyAdded);
    EXPECT_FALSE(concerts->tail->recentlyAdded);

    EXPECT_EQ(snooze(app.get(), 0), 1);
    store.setForceUpdate(true);
    EXPECT_EQ(snooze(app.get(), 0), 0);
    store.setShutingDown(true);
    EXPECT_EQ(snooze(app.get(), 0), -1);
}

} // namespace
