// Following MPRIS players: the choice of player and the messages it makes
// (pure), the reading of metadata (pure), and the bus side against fake
// players on a private session bus.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fake_mpris_player.h"
#include "mpris_choice.h"
#include "mpris_metadata.h"
#include "mpris_watch.h"
#include "private_bus.h"

namespace {

using Lines = std::vector<std::string>;

MprisTrack track(const char* artist, const char* album = "", const char* title = "") {
    return MprisTrack{artist, album, title};
}

struct ChoiceCase {
    const char* name;
    std::function<void(MprisChoice&)> events;
    Lines expected;
};

TEST(MprisChoice, FollowsTheLatestPlayerAndTellsThePlugInWhatChanged) {
    const MprisStatus Play = MprisStatus::Playing, Pause = MprisStatus::Paused,
                      Stop = MprisStatus::Stopped;
    const ChoiceCase cases[] = {
        {"a track then play, then the same track again",
         [&](MprisChoice& c) {
             c.trackChanged("a", track("X", "Al", "T"));
             c.statusChanged("a", Play);
             c.trackChanged("a", track("X", "Al", "T"));
         },
         {"play X | Al | T (a)"}},
        {"pause, resume, pause, a new track while paused, resume",
         [&](MprisChoice& c) {
             c.trackChanged("a", track("X"));
             c.statusChanged("a", Play);
             c.statusChanged("a", Pause);
             c.statusChanged("a", Play);
             c.statusChanged("a", Pause);
             c.trackChanged("a", track("Y"));
             c.statusChanged("a", Play);
         },
         {"play X |  |  (a)", "pause (a)", "unpause (a)", "pause (a)", "play Y |  |  (a)"}},
        {"the latest to start wins; when it pauses the other still playing takes over",
         [&](MprisChoice& c) {
             c.trackChanged("a", track("X"));
             c.trackChanged("b", track("Y"));
             c.statusChanged("a", Play);
             c.statusChanged("b", Play);
             c.trackChanged("a", track("Z")); // not followed: nothing
             c.statusChanged("b", Pause);
         },
         {"play X |  |  (a)", "play Y |  |  (b)", "play Z |  |  (a)"}},
        {"stopping or vanishing with nobody else playing stops",
         [&](MprisChoice& c) {
             c.appeared("a");
             c.trackChanged("a", track("X"));
             c.statusChanged("a", Play);
             c.statusChanged("a", Stop);
             c.trackChanged("b", track("Y"));
             c.statusChanged("b", Play);
             c.vanished("b");
             c.vanished("b");
             c.statusChanged("c", Pause);
         },
         {"play X |  |  (a)", "stop (a)", "play Y |  |  (b)", "stop (b)"}},
        {"playing before the track is known, and between tracks",
         [&](MprisChoice& c) {
             c.statusChanged("a", Play);
             c.trackChanged("a", track("X"));
             c.trackChanged("a", track(""));
             c.trackChanged("a", track("Y"));
             c.statusChanged("b", Play); // later, but nothing known yet
             c.trackChanged("b", track("Z"));
         },
         {"play X |  |  (a)", "track Y |  |  (a)", "play Z |  |  (b)"}},
    };
    for (const ChoiceCase& test : cases) {
        Lines seen;
        MprisChoice choice([&](const MprisMessage& m) { seen.push_back(describeMprisMessage(m)); });
        test.events(choice);
        EXPECT_EQ(seen, test.expected) << test.name;
    }
}

TEST(MprisMetadata, ReadsTheFieldsAndSkipsWhatIsMalformed) {
    struct Case {
        const char* metadata;
        bool read;
        MprisTrack expected;
        const char* problems;
    } cases[] = {
        {"{'xesam:artist': <['A', 'B']>, 'xesam:album': <'Al'>, 'xesam:title': <'T'>}", true,
         track("A", "Al", "T"), ""},
        {"{'xesam:artist': <@as []>, 'xesam:albumArtist': <['', 'AA']>}", true, track("AA"), ""},
        {"{'xesam:artist': <'A'>, 'xesam:title': <<'T'>>}", true, track("", "", "T"),
         "xesam:artist has type s"},
        {"{'xesam:album': <42>, 'mpris:length': <int64 5>}", true, track(""),
         "xesam:album has type i"},
        {"@a{sv} {}", true, track(""), ""},
        {"'just text'", false, track(""), "metadata has type s"},
    };
    for (const Case& c : cases) {
        GVariant* value = g_variant_parse(nullptr, c.metadata, nullptr, nullptr, nullptr);
        ASSERT_NE(value, nullptr) << c.metadata;
        g_variant_ref_sink(value);
        MprisTrack seen;
        std::string problems;
        EXPECT_EQ(mprisTrackFromMetadata(value, seen, problems), c.read) << c.metadata;
        EXPECT_EQ(seen, c.expected) << c.metadata;
        EXPECT_EQ(problems, c.problems) << c.metadata;
        g_variant_unref(value);
    }
}

TEST(MprisWatch, FollowsPlayersOnTheBusThroughChangesJunkSilenceAndDepartures) {
    PrivateBus bus;
    ASSERT_FALSE(bus.address().empty()) << "dbus-daemon did not start";
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);

    // One player already plays when the app starts.
    FakeMprisPlayer one(bus.address(), "one");
    ASSERT_TRUE(one.ready());
    one.announce("'Playing'", "{'xesam:artist': <['Radiohead']>, 'xesam:album': <'OK'>}");

    Lines seen, log;
    MprisChoice choice([&](const MprisMessage& m) { seen.push_back(describeMprisMessage(m)); });
    MprisWatch watch(choice, [&](const std::string& line) { log.push_back(line); });
    watch.start();
    auto expect = [&](const Lines& lines, double seconds = 5) {
        bool arrived = waitFor([&] { return seen.size() >= lines.size(); }, seconds);
        EXPECT_TRUE(arrived) << ::testing::PrintToString(seen);
        EXPECT_EQ(seen, lines) << ::testing::PrintToString(log);
    };
    const std::string a = " (org.mpris.MediaPlayer2.one)", b = " (org.mpris.MediaPlayer2.two)";
    Lines lines{"play Radiohead | OK | " + a};
    expect(lines);

    one.announce("", "{'xesam:artist': <['Bjork']>, 'xesam:title': <'Joga'>}");
    one.announce("'Paused'", "");
    one.announce("'Playing'", "");
    lines.insert(lines.end(), {"track Bjork |  | Joga" + a, "pause" + a, "unpause" + a});
    expect(lines);

    // A second player takes over; junk from it changes nothing.
    FakeMprisPlayer two(bus.address(), "two");
    two.announce("'Playing'", "{'xesam:artist': <['Low']>}");
    lines.push_back("play Low |  | " + b);
    expect(lines);
    two.announceRaw("('org.mpris.MediaPlayer2.Player', {'Metadata': <'junk'>, "
                    "'PlaybackStatus': <'Dancing'>}, @as [])");
    two.announceRaw("('org.mpris.MediaPlayer2.Player', 'no dictionary')");
    // A player that never answers costs no time: the next change comes at once.
    FakeMprisPlayer hung(bus.address(), "hung", true);
    two.announce("", "{'xesam:artist': <['Wire']>}");
    lines.push_back("track Wire |  | " + b);
    expect(lines, MprisWatch::kCallTimeoutMs / 2000.0);

    // The first player, still playing, is followed again; then it quits too.
    two.vanish();
    lines.push_back("play Bjork |  | Joga" + a);
    expect(lines);
    one.vanish();
    lines.push_back("stop" + a);
    expect(lines);
    // The silent player's read ends in its time-out, logged.
    const std::string hungLine =
        "mpris: org.mpris.MediaPlayer2.hung did not answer for its properties: ";
    EXPECT_TRUE(waitFor(
        [&] {
            return std::any_of(log.begin(), log.end(), [&](const std::string& line) {
                return line.compare(0, hungLine.size(), hungLine) == 0;
            });
        },
        2 * MprisWatch::kCallTimeoutMs / 1000.0))
        << ::testing::PrintToString(log);
    for (const char* skipped : {"mpris: org.mpris.MediaPlayer2.two: metadata has type s, skipped",
                                "mpris: org.mpris.MediaPlayer2.two sent an unknown "
                                "PlaybackStatus, skipped",
                                "mpris: org.mpris.MediaPlayer2.two sent a malformed "
                                "PropertiesChanged ((ss))"})
        EXPECT_NE(std::find(log.begin(), log.end(), skipped), log.end())
            << skipped << "\n" << ::testing::PrintToString(log);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace
