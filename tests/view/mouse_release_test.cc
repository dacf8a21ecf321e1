// Releases and secondary releases: the click-through and link addresses, the
// hover flags each link clears or keeps, the end of a thumb drag, and marking
// a show (settings saved, shared when sharing is on) only in My Shows. The
// last case clicks rectangles a real frame drew.
#include <algorithm>

#include "mouse_fixture.h"

namespace {

using MouseRelease = MouseFixture;

TEST_F(MouseRelease, ShowOpensItsPageThroughTheClickThroughUnescaped) {
    SHOWENTRY* e = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50), box(100, 10, 200, 50));
    snprintf(e->url, sizeof e->url, "http://e.example/show?id=1&city=boston");
    e->highlighted = true;
    view.promoLine.rect = box(150, 20, 190, 40);
    view.promoLine.hovered = true;
    release(160, 30); // in rect2 and over the hovered promo line
    EXPECT_EQ(openedPages(),
              std::vector<std::string>{
                  page("/clickthrough.php?target=http://e.example/show?id=1&city=boston")});
    EXPECT_FALSE(e->highlighted);
    EXPECT_TRUE(view.promoLine.hovered); // the show took the release
}

TEST_F(MouseRelease, ShowWithoutAddressOnlyDropsItsHighlight) {
    SHOWENTRY* e = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
    e->highlighted = true;
    view.myShowsTab.rect = box(5, 5, 60, 60);
    view.myShowsTab.hovered = true;
    store.setCurCalTab(0);
    view.friendShowsTab.hovered = true;
    release(20, 20);
    EXPECT_FALSE(e->highlighted);
    EXPECT_TRUE(openedPages().empty());
    EXPECT_EQ(0, store.getCurCalTab()); // the hovered tab was not taken
}

TEST_F(MouseRelease, OnlyTheCurrentTabsListIsHit) {
    SHOWENTRY* concert = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
    snprintf(concert->url, sizeof concert->url, "http://concert");
    store.setCurCalTab(1);
    release(20, 20);
    EXPECT_TRUE(openedPages().empty());
}

TEST_F(MouseRelease, EndingADragFollowsNoLink) {
    SHOWENTRY* e = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
    snprintf(e->url, sizeof e->url, "http://concert");
    e->highlighted = true;
    view.iPhoneLink.hovered = true;
    view.draggingThumb = true;
    release(20, 20);
    EXPECT_FALSE(view.draggingThumb);
    EXPECT_TRUE(openedPages().empty());
    EXPECT_TRUE(e->highlighted);
    release(20, 20); // the next release is an ordinary one
    EXPECT_EQ(openedPages(),
              std::vector<std::string>{page("/clickthrough.php?target=http://concert")});
}

TEST_F(MouseRelease, EveryHoveredLinkActsInOrder) {
    store.setValid_internet_connection(true);
    for (HoverRegion* r :
         {&view.versionUpdateBanner, &view.versionText, &view.preferencesLink, &view.iPhoneLink,
          &view.androidLink, &view.friendShowsTab, &view.cdReleasesTab, &view.promoLine})
        r->hovered = true;
    release(900, 900);
    EXPECT_EQ(openedPages(),
              (std::vector<std::string>{page("/download/download_mac_redirect.php"), page("/"),
                                        page("/iphone.php"), page("/android.php"),
                                        page("/donations.php")}));
    for (HoverRegion* r : {&view.versionUpdateBanner, &view.versionText, &view.iPhoneLink,
                           &view.androidLink, &view.promoLine})
        EXPECT_FALSE(r->hovered);
    EXPECT_TRUE(view.preferencesLink.hovered);
    EXPECT_TRUE(view.friendShowsTab.hovered);
    EXPECT_TRUE(view.cdReleasesTab.hovered);
    EXPECT_EQ(2, store.getCurCalTab()); // the later tab wins
    EXPECT_FALSE(searchStarted());
}

TEST_F(MouseRelease, TabKeepsItsFlagSoASecondReleaseActsAgain) {
    addDemoShow(concerts(), "Spoon", 2026, 5, 3);
    showMonth(2026, 5);
    view.curVisShowListOffset = -60;
    view.friendShowsTab.hovered = true;
    release(900, 900);
    EXPECT_EQ(1, store.getCurCalTab());
    store.setCurCalTab(0);
    release(900, 900);
    EXPECT_EQ(1, store.getCurCalTab());
    EXPECT_EQ(5, view.curVisMonth); // changing tab keeps month and offset
    EXPECT_EQ(-60, view.curVisShowListOffset);
}

TEST_F(MouseRelease, RetryLineForcesASearch) {
    store.setValid_internet_connection(false);
    view.retryLine.hovered = true;
    // The update gives up before its first download, so no failure can
    // lower the connection flag again while the test looks.
    store.setShutingDown(true);
    release(900, 900);
    EXPECT_TRUE(store.getValid_internet_connection());
    EXPECT_FALSE(view.retryLine.hovered);
    EXPECT_TRUE(searchStarted()); // forced: the location did not change
}

struct MouseMark : MouseFixture {
    SHOWENTRY* show = nullptr;
    void SetUp() override {
        MouseFixture::SetUp();
        show = drawnShow(concerts(), "Spoon", 3, box(10, 10, 50, 50));
        store.setUsername("kim");
    }
    std::string prefFile() { return readText(home.path() + "/StagebeaconPref"); }
    size_t sharingRequests(const char* verb) {
        auto reqs = server.requests();
        return size_t(std::count_if(reqs.begin(), reqs.end(), [&](const RecordedRequest& r) {
            return r.target.find("/sharing/sharing.php") == 0 &&
                   r.target.find(verb) != std::string::npos;
        }));
    }
};

TEST_F(MouseMark, SecondaryReleaseMarksAndUnmarksAndSaves) {
    pointAt(20, 20);
    handleRightMouseClicks();
    EXPECT_TRUE(show->attending);
    ASSERT_TRUE(exists(home.path() + "/StagebeaconPref"));
    const std::string marked = prefFile();
    handleRightMouseClicks();
    EXPECT_FALSE(show->attending);
    EXPECT_NE(marked, prefFile());           // the saved settings follow the mark
    EXPECT_EQ(0u, server.requests().size()); // sharing is off
}

TEST_F(MouseMark, MissesAndOtherTabsMarkNothing) {
    pointAt(50, 20); // on the edge
    handleRightMouseClicks();
    EXPECT_FALSE(exists(home.path() + "/StagebeaconPref"));
    SHOWENTRY* friendShow = drawnShow(friendsShows(), "Wilco", 4, box(10, 10, 50, 50));
    SHOWENTRY* release = drawnShow(releases(), "Beirut", 5, box(10, 10, 50, 50));
    for (int tab : {1, 2}) {
        store.setCurCalTab(tab);
        pointAt(20, 20);
        handleRightMouseClicks();
    }
    EXPECT_FALSE(show->attending);
    EXPECT_FALSE(friendShow->attending);
    EXPECT_FALSE(release->attending);
    EXPECT_FALSE(exists(home.path() + "/StagebeaconPref"));
}

TEST_F(MouseMark, SharingPublishesAndWithdrawsUnlessEverythingIsShared) {
    server.onPath("/sharing/sharing.php", ScriptedReply::ok("<RESULT>1</RESULT>"));
    store.setSharing(true);
    pointAt(20, 20);
    handleRightMouseClicks();
    handleRightMouseClicks();
    EXPECT_EQ(1u, sharingRequests("ADD_SHOW"));
    EXPECT_EQ(1u, sharingRequests("DELETE_SHOW"));
    store.setShareAllShows(true);
    handleRightMouseClicks();
    EXPECT_EQ(2u, server.requests().size());
    EXPECT_TRUE(show->attending);
}

TEST_F(MouseMark, MarksTheShowAFrameDrew) {
    attach(900, 500);
    store.setSharing(false);
    struct tm t = today();
    SHOWENTRY* drawn = addDemoShow(concerts(), "Wilco", t.tm_year + 1900, t.tm_mon + 1, 15);
    showMonth(t.tm_year + 1900, t.tm_mon + 1);
    render();
    ASSERT_TRUE(drawn->rect2Drawn);
    const Rect r = drawn->rect2;
    move((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    EXPECT_TRUE(drawn->highlighted);
    handleRightMouseClicks();
    EXPECT_TRUE(drawn->attending);
    pointAt(r.left, r.top); // its corner belongs to no show
    handleRightMouseClicks();
    EXPECT_TRUE(drawn->attending);
}

} // namespace
