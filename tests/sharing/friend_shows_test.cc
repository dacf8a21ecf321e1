// Friends' shows: one page per friend from a loopback service, read into a
// new generation of the friends'-show list. Covers shared shows, unknown
// friends, damaged pages and the task's answers.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "model/fixed_text.h"
#include "service_app.h"
#include "sharing/friend_shows.h"

namespace {

std::string block(int day, const std::string& artist, const std::string& other = "Opener",
                  const char* tickets = "1") {
    return "<event>2027@@8@@" + std::to_string(day) + "@@" + tickets + "@@" + artist +
           "@@Paradise@@Boston, MA@@http://e/" + artist + "@@" + other + "\n</event>";
}

std::string pageFor(const std::string& name) {
    return "/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=" + name;
}

class FriendShows : public ServiceApp {
  protected:
    void addFriend(const char* name) { app->friendsList->add(new FRIENDNAME(name)); }

    std::vector<std::string> shows() {
        std::vector<std::string> out;
        ShowListRef list = app->friendsShows.current();
        for (SHOWENTRY* e = list->head; e; e = e->next) {
            std::string line = std::string(e->artist) + " " + std::to_string(e->day) + ":";
            for (FRIENDNAME* n = e->tags->head; n; n = n->next)
                line += std::string(" ") + n->name;
            out.push_back(line);
        }
        return out;
    }
};

TEST_F(FriendShows, BlockFieldsFillTheEntry) {
    addFriend("amy");
    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco", "Low, Spoon")));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    ShowListRef list = app->friendsShows.current();
    ASSERT_EQ(list->count, 1u);
    SHOWENTRY* e = list->head;
    EXPECT_EQ(e->year, 2027);
    EXPECT_EQ(e->month, 8);
    EXPECT_EQ(e->day, 9);
    EXPECT_TRUE(e->ticketsAvailable);
    EXPECT_STREQ(e->venue, "Paradise");
    EXPECT_STREQ(e->location, "Boston, MA");
    EXPECT_STREQ(e->url, "http://e/Wilco");
    EXPECT_STREQ(e->otherArtists, "Low, Spoon"); // the block's last byte dropped
    EXPECT_FALSE(store().getUpdatingFriends());
    EXPECT_NEAR(store().getUpdatingProgress(), 100.0, 1e-6);
}

TEST_F(FriendShows, TwoFriendsAtTheSameShowShareOneEntry) {
    addFriend("amy");
    addFriend("Bob Smith");
    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco") + block(3, "Spoon")));
    server.onPath(pageFor("Bob+Smith"), ScriptedReply::ok(block(9, "wilco!")));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Spoon 3: amy", "Wilco 9: amy Bob Smith"}));
}

TEST_F(FriendShows, UnknownFriendIsSkipped) {
    addFriend("ghost");
    addFriend("amy");
    server.onPath(pageFor("ghost"), ScriptedReply::ok("StagebeaconError" + block(1, "Beirut")));
    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco")));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Wilco 9: amy"}));
    EXPECT_EQ(server.requestCount(), 2u);
}

TEST_F(FriendShows, GarbageBetweenBlocksIsIgnored) {
    addFriend("amy");
    server.onPath(pageFor("amy"),
                  ScriptedReply::ok("<html>junk@@1@@2</event>" + block(9, "Wilco") +
                                    "\n<p>@@noise@@</p>" + block(3, "Spoon") + "trailing <event>"));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Spoon 3: amy", "Wilco 9: amy"}));
}

TEST_F(FriendShows, ShortAndEmptyBlocksGiveWhatTheyHave) {
    ShowListRef list = app->friendsShows.current();
    ShowListRef previous = app->friendsShows.previous();
    std::string page = "<event>2027@@8@@9@@0@@Wilco</event><event></event>";
    EXPECT_EQ(fileFriendShows(page, "amy", list.get(), previous.get()), 2u);
    ASSERT_EQ(list->count, 2u);
    SHOWENTRY* empty = list->head; // year 2000 by default sorts first
    EXPECT_EQ(empty->year, 2000);
    EXPECT_STREQ(empty->artist, "");
    SHOWENTRY* wilco = list->tail;
    EXPECT_STREQ(wilco->artist, "Wilco"); // the last field present runs to the end
    EXPECT_FALSE(wilco->ticketsAvailable);
    EXPECT_STREQ(wilco->location, "-");
    EXPECT_STREQ(wilco->tags->head->name, "amy");
}

TEST_F(FriendShows, BadRepliesNeitherCrashNorInvent) {
    ShowListRef list = app->friendsShows.current();
    ShowListRef previous = app->friendsShows.previous();
    EXPECT_EQ(fileFriendShows("", "amy", list.get(), previous.get()), 0u);
    EXPECT_EQ(fileFriendShows("<event>2027@@8@@9", "amy", list.get(), previous.get()), 0u);
    // A huge block is read up to its bound; long fields are cut to their arrays.
    std::string huge = "<event>2027@@8@@9@@1@@" + std::string(300, 'a') + "@@v@@l@@u@@" +
                       std::string(20000, 'o') + "</event>";
    EXPECT_EQ(fileFriendShows(huge, "amy", list.get(), previous.get()), 1u);
    ASSERT_EQ(list->count, 1u);
    EXPECT_EQ(strlen(list->head->artist), 255u);
    EXPECT_EQ(strlen(list->head->otherArtists), 1023u);
}

TEST_F(FriendShows, MarksCarryOverFromThePreviousGeneration) {
    addFriend("amy");
    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco")));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    app->friendsShows.current()->head->attending = true;
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    EXPECT_TRUE(app->friendsShows.current()->head->attending);
}

TEST_F(FriendShows, EmptyFriendsListReplacesTheList) {
    ShowListRef before = app->friendsShows.current();
    EXPECT_EQ(app->calGetData.UpdateFriends(), 0);
    EXPECT_NE(app->friendsShows.current(), before);
    EXPECT_EQ(app->friendsShows.previous(), before);
    EXPECT_EQ(app->friendsShows.current()->count, 0u);
    EXPECT_FALSE(store().getUpdatingFriends());
}

// The failed friend and those not reached keep their shows from the last
// good list; the friends read before stay as read.
TEST_F(FriendShows, FailedDownloadAnswersTwoAndKeepsTheUnreadFriendsShows) {
    addFriend("amy");
    addFriend("bob");
    addFriend("cat");
    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco") + block(2, "Low")));
    server.onPath(pageFor("bob"), ScriptedReply::ok(block(4, "Beirut")));
    server.onPath(pageFor("cat"), ScriptedReply::ok(block(5, "Spoon")));
    ASSERT_EQ(app->calGetData.UpdateFriends(), 0);
    store().setLastSearch_y(2026);

    server.onPath(pageFor("amy"), ScriptedReply::ok(block(9, "Wilco")));
    // bob's page is gone: the service answers 404, a failed download.
    server.onPath(pageFor("bob"), ScriptedReply::status(404, "Not Found"));
    EXPECT_EQ(app->calGetData.UpdateFriends(), 2);
    EXPECT_EQ(shows(), (std::vector<std::string>{"Beirut 4: bob", "Spoon 5: cat", "Wilco 9: amy"}));
    char note[ProtectedData::SourceNoteSize];
    store().getSourceNote(note);
    EXPECT_EQ(std::string(note), "2 of 3 friends' calendars did not answer; their shows are from 1/1/2026");
    EXPECT_EQ(server.requestCount(), 5u);
    // A third of 100 before each download: two were started.
    EXPECT_NEAR(store().getUpdatingProgress(), 200.0 / 3, 1e-6);
    // performUpdate clears the flag of a task that failed.
    app->calGetData.performUpdate(CalGetData::kTaskFriends);
    EXPECT_FALSE(store().getUpdatingFriends());
}

TEST_F(FriendShows, StopRequestAnswersOne) {
    addFriend("amy");
    store().setForceUpdate(true);
    EXPECT_EQ(app->calGetData.UpdateFriends(), 1);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(FriendShows, StopDuringADownloadSkipsThePageAndTheRest) {
    addFriend("amy");
    addFriend("bob");
    ScriptedReply slow = ScriptedReply::ok(block(9, "Wilco"));
    slow.delayBeforeHeadMs = 300; // the stop lands while amy's page is on its way
    server.onPath(pageFor("amy"), slow);
    server.onPath(pageFor("bob"), ScriptedReply::ok(block(3, "Spoon")));
    std::thread stopper([this] {
        if (server.waitForRequests(1, 5000)) store().setForceUpdate(true);
    });
    EXPECT_EQ(app->calGetData.UpdateFriends(), 1);
    stopper.join();
    EXPECT_EQ(server.requestCount(), 1u);
    EXPECT_TRUE(shows().empty());
}

} // namespace
