// The sharing client against a loopback service: the exact requests, the
// answers for accepted, refused and failed downloads, the progress and
// updatingShared rules, and the taken-name alert that must wait for the
// main thread.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "model/fixed_text.h"
#include "service_app.h"
#include "sharing/sharing_client.h"

namespace {

const char* const kPage = "/sharing/sharing.php";

class SharingClient : public ServiceApp {
  protected:
    void SetUp() override {
        ServiceApp::SetUp();
        ProtectedData& s = store();
        s.setUsername("Jane Doe");
        s.setUUID("ABC-123");
        s.setCurCity("New York");
        s.setCurState("NY");
        s.setFirstname("Jane");
        s.setLastname("van Doe");
    }

    SHOWENTRY* addConcert(const char* artist, int day, bool marked) {
        auto* show = new SHOWENTRY;
        copyText(show->artist, artist);
        copyText(show->venue, "Bowery Ballroom");
        copyText(show->location, "New York, NY");
        copyText(show->url, "http://e/x?a=1&b=2");
        show->year = 2027;
        show->month = 8;
        show->day = day;
        show->attending = marked;
        ShowListRef list = app->concerts.current();
        ShowListRef previous = app->concerts.previous();
        EXPECT_TRUE(list->addShow(show, previous.get()));
        return show;
    }
};

TEST_F(SharingClient, RegistrationAnswersByReply) {
    struct Case {
        const char* reply;
        int answer;
    } cases[] = {{"OK", kSharingAccepted},
                 {"<p>Error: name taken</p>", kSharingRefused},
                 {"", kSharingAccepted}};
    for (const Case& c : cases) {
        server.enqueue(ScriptedReply::ok(c.reply));
        EXPECT_EQ(initializeSharing(app.get()), c.answer) << c.reply;
    }
    ASSERT_EQ(server.requestCount(), 3u);
    // Blanks anywhere in the address become "+"; nothing else is escaped.
    EXPECT_EQ(targets()[0], std::string(kPage) +
                                "?TODO=INITIALIZE_USER&USERNAME=Jane+Doe&UUID=ABC-123"
                                "&CITY=New+York&STATE=NY&FIRSTNAME=Jane&LASTNAME=van+Doe");
    goOffline();
    EXPECT_EQ(initializeSharing(app.get()), kSharingOffline);
    EXPECT_FALSE(store().getValid_internet_connection());
}

TEST_F(SharingClient, FriendCheck) {
    server.enqueue(ScriptedReply::ok("exists"));
    server.enqueue(ScriptedReply::ok("Error"));
    EXPECT_EQ(checkIfUserExists(app.get(), "Bob Smith"), 0);
    EXPECT_EQ(checkIfUserExists(app.get(), "nobody"), 1);
    EXPECT_EQ(targets()[0], std::string(kPage) + "?TODO=USER_EXISTS&USERNAME=Bob+Smith");
    goOffline();
    EXPECT_EQ(checkIfUserExists(app.get(), "Bob"), 2);
}

TEST_F(SharingClient, SingleShowIsAddedAndWithdrawn) {
    SHOWENTRY* show = addConcert("Simon & Garfunkel", 9, true);
    show->ticketsAvailable = true;
    copyText(show->otherArtists, "Art #1 = good");
    server.enqueue(ScriptedReply::ok("stored"));
    EXPECT_EQ(addSingleSharedShow(app.get(), show), 1);
    EXPECT_EQ(store().getUpdatingProgress(), 100.0);
    EXPECT_FALSE(store().getUpdatingShared());

    server.enqueue(ScriptedReply::ok("removed"));
    EXPECT_EQ(deleteSingleSharedShow(app.get(), show), 1);
    const std::string fields = "&USERNAME=Jane+Doe&UUID=ABC-123&YEAR=2027&MONTH=8&DAY=9"
                               "&TICKETSAVAILABLE=1&ARTIST=Simon+&+Garfunkel&VENUE=Bowery+Ballroom"
                               "&LOCATION=New+York,+NY&URL=http://e/x?a=1&b=2"
                               "&OTHERARTISTS=Art+#1+=+good";
    ASSERT_EQ(server.requestCount(), 2u);
    EXPECT_EQ(targets()[0], std::string(kPage) + "?TODO=ADD_SHOW" + fields);
    EXPECT_EQ(targets()[1], std::string(kPage) + "?TODO=DELETE_SHOW" + fields);
}

TEST_F(SharingClient, SingleShowRefusedOrOfflineLeavesProgressAtZero) {
    SHOWENTRY* show = addConcert("Wilco", 9, true);
    server.enqueue(ScriptedReply::ok("Error: unknown user"));
    EXPECT_EQ(addSingleSharedShow(app.get(), show), 0);
    EXPECT_EQ(store().getUpdatingProgress(), 0.0);
    EXPECT_FALSE(store().getUpdatingShared());
    goOffline();
    EXPECT_EQ(deleteSingleSharedShow(app.get(), show), 0);
    EXPECT_FALSE(store().getUpdatingShared());
}

TEST_F(SharingClient, FullShareSendsMarkedShowsOrAll) {
    addConcert("Wilco", 1, false);
    addConcert("Spoon", 2, true);
    addConcert("Beirut", 3, false);
    store().setSharing(true);
    server.onPath(kPage, ScriptedReply::ok("OK"));

    EXPECT_EQ(shareUserCalendar(app.get()), 0);
    std::vector<std::string> sent = targets();
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_NE(sent[0].find("TODO=INITIALIZE_USER"), std::string::npos);
    EXPECT_NE(sent[1].find("TODO=ADD_SHOW&"), std::string::npos);
    EXPECT_NE(sent[1].find("&ARTIST=Spoon&"), std::string::npos);
    EXPECT_NEAR(store().getUpdatingProgress(), 100.0, 1e-6);
    EXPECT_FALSE(store().getUpdatingShared());

    store().setShareAllShows(true);
    EXPECT_EQ(shareUserCalendar(app.get()), 0);
    sent = targets();
    ASSERT_EQ(sent.size(), 6u);
    for (size_t i = 3; i < 6; ++i)
        EXPECT_NE(sent[i].find("TODO=ADD_SHOW&"), std::string::npos);
    EXPECT_NE(sent[3].find("DAY=1&"), std::string::npos); // in list order
    EXPECT_NE(sent[5].find("DAY=3&"), std::string::npos);
}

TEST_F(SharingClient, NothingMarkedSendsNothingAndEndsNearFull) {
    addConcert("Wilco", 1, false);
    addConcert("Spoon", 2, false);
    addConcert("Beirut", 3, false);
    EXPECT_EQ(addSharedShows(app.get()), 1);
    EXPECT_EQ(server.requestCount(), 0u);
    EXPECT_NEAR(store().getUpdatingProgress(), 100.0, 1e-6);
    EXPECT_FALSE(store().getUpdatingShared());
}

TEST_F(SharingClient, FailedUploadStopsTheRest) {
    for (int day = 1; day <= 3; ++day)
        addConcert("Wilco", day, true);
    server.enqueue(ScriptedReply::ok("OK"));
    server.enqueue(ScriptedReply::ok("Error"));
    server.enqueue(ScriptedReply::ok("OK"));
    EXPECT_EQ(addSharedShows(app.get()), 0);
    EXPECT_EQ(server.requestCount(), 2u);
    EXPECT_FALSE(store().getUpdatingShared());
    EXPECT_TRUE(app->calGetData.internetMutex.try_lock()); // released on the way out
    app->calGetData.internetMutex.unlock();
}

TEST_F(SharingClient, StopRequestLeavesUpdatingSharedRaised) {
    addConcert("Wilco", 1, true);
    store().setForceUpdate(true);
    EXPECT_EQ(addSharedShows(app.get()), 1);
    EXPECT_EQ(server.requestCount(), 0u);
    EXPECT_TRUE(store().getUpdatingShared());
}

TEST_F(SharingClient, SharingOffSendsNothing) {
    addConcert("Wilco", 1, true);
    EXPECT_EQ(shareUserCalendar(app.get()), 0);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(SharingClient, TakenNameAlertWaitsForTheMainThread) {
    addConcert("Wilco", 1, true);
    store().setSharing(true);
    server.onPath(kPage, ScriptedReply::ok("Error"));
    // The task runs on another thread, as the update thread would run it.
    std::thread update([this] { EXPECT_EQ(shareUserCalendar(app.get()), 0); });
    update.join();
    EXPECT_EQ(server.requestCount(), 1u); // no show was sent
    EXPECT_TRUE(alerts().empty());        // not shown from the update thread
    EXPECT_EQ(drainMainThreadQueue(), 1u);
    ASSERT_EQ(alerts().size(), 1u);
    EXPECT_EQ(alerts()[0], "alert: Username already taken. | Sorry, that username is already "
                           "taken.  Please try a new name for your calendar. | OK");
}

TEST_F(SharingClient, OfflineRegistrationIsSilent) {
    store().setSharing(true);
    goOffline();
    EXPECT_EQ(shareUserCalendar(app.get()), 0);
    EXPECT_EQ(drainMainThreadQueue(), 0u);
}

TEST_F(SharingClient, UpdateRunsFriendsSharedThenPhoneAndGoesOn) {
    addConcert("Wilco", 1, true);
    app->friendsList->add(new FRIENDNAME("bob"));
    store().setSharing(true);
    store().setiPhoneSync(true);
    server.onPath(kPage, ScriptedReply::ok("Error"));
    server.onPath("/iphone/exchange.php", ScriptedReply::ok("<ERROR>"));
    app->calGetData.performUpdate(CalGetData::kTaskFriends | CalGetData::kTaskShared |
                                  CalGetData::kTaskiPhone);
    std::vector<std::string> sent = targets();
    ASSERT_EQ(sent.size(), 3u);
    size_t friends = 0;
    EXPECT_NE(sent[friends].find("TODO=DISPLAY_USER_SHOWS&USERNAME=bob"), std::string::npos);
    EXPECT_NE(sent[friends + 1].find("TODO=INITIALIZE_USER"), std::string::npos);
    EXPECT_EQ(sent[friends + 2].rfind("/iphone/exchange.php?TODO=INITIALIZE_USER", 0), 0u);
    EXPECT_FALSE(store().getUpdatingiPhone());
    EXPECT_EQ(drainMainThreadQueue(), 2u); // one taken name each
}

TEST_F(SharingClient, NearbyUsersRequest) {
    server.enqueue(ScriptedReply::ok("<USERNAME>bob</USERNAME></entry>"));
    {
        std::lock_guard<std::mutex> internet(app->calGetData.internetMutex);
        EXPECT_EQ(getNearbyFriends(app.get()), 0);
        EXPECT_STREQ(app->calGetData.fetchBuffer.get(), "<USERNAME>bob</USERNAME></entry>");
    }
    EXPECT_EQ(targets()[0], std::string(kPage) + "?TODO=GETLOCALUSERS&CITY=New+York&STATE=NY");
    goOffline();
    std::lock_guard<std::mutex> internet(app->calGetData.internetMutex);
    EXPECT_EQ(getNearbyFriends(app.get()), 2);
}

} // namespace
