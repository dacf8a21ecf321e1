// Many clients at once: readers of the catalogue and writers of calendars
// side by side, every request answered correctly, no write lost.
#include "service_fixture.h"

#include <atomic>
#include <thread>

namespace service_test {
namespace {

using Load = ServiceTest;

TEST_F(Load, ManyClientsAtOnceAreAllAnsweredAndEveryWriteKept) {
    config_.cacheMilliseconds = 50; // readers share kept replies while writers change data
    startService();
    constexpr int kClients = 12;
    constexpr int kRequests = 15;
    std::atomic<int> wrong{0};
    std::vector<std::thread> clients;
    for (int c = 0; c < kClients; ++c) {
        clients.emplace_back([&, c] {
            const std::string name = "user" + std::to_string(c);
            if (get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=" + name + "&UUID=U" +
                    std::to_string(c) + "&CITY=Origin&STATE=ZZ&FIRSTNAME=F&LASTNAME=L") !=
                "<OK>\n")
                ++wrong;
            for (int r = 0; r < kRequests; ++r) {
                if (get("/events/events.php?site=1&city=Origin&state=ZZ&radius=40")
                        .find("Half Band") == std::string::npos)
                    ++wrong;
                if (get("/sharing/sharing.php?TODO=ADD_SHOW&USERNAME=" + name + "&UUID=U" +
                        std::to_string(c) + "&YEAR=2031&MONTH=1&DAY=" + std::to_string(r + 1) +
                        "&TICKETSAVAILABLE=0&ARTIST=A&VENUE=V&LOCATION=L&URL=u&OTHERARTISTS=") !=
                    "<OK>\n")
                    ++wrong;
            }
        });
    }
    for (auto& client : clients) client.join();
    EXPECT_EQ(wrong.load(), 0);
    for (int c = 0; c < kClients; ++c) {
        auto shows = storage_->userShows("user" + std::to_string(c));
        ASSERT_TRUE(shows);
        EXPECT_EQ(shows->size(), static_cast<size_t>(kRequests)) << c;
    }
}

TEST_F(Load, StartingAndStoppingInQuickSuccessionNeverHangs) {
    for (int round = 0; round < 20; ++round) startService();
    EXPECT_EQ(get("/health"), "OK\n");
}

} // namespace
} // namespace service_test
