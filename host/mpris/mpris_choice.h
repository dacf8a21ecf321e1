// MprisChoice: which MPRIS player the app follows, and the host messages
// that follow from it. Pure bookkeeping, no bus: the D-Bus side (MprisWatch)
// reports what players say, this decides and emits.
//
// The followed player is the one that most recently started playing among
// those playing now. When it pauses, stops or vanishes and another player
// is still playing, that one is followed instead. A player that plays
// before its track is known (no artist, album or title yet) is taken on
// when the track arrives. Messages, as a host sends
// them to a visual plug-in:
//   Play         a player starts playing (or another takes over) with a track
//   ChangeTrack  the followed player, playing, moves to another track
//   Pause        the followed player pauses and nobody else plays
//   Unpause      it resumes the very track it paused on
//   Stop         it stops or vanishes and nobody else plays
//
// Threads: one thread (the app's main loop).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

struct MprisTrack {
    std::string artist;
    std::string album;
    std::string title;
    bool operator==(const MprisTrack& o) const {
        return artist == o.artist && album == o.album && title == o.title;
    }
    bool operator!=(const MprisTrack& o) const { return !(*this == o); }
};

enum class MprisStatus { Stopped, Paused, Playing };

enum class MprisMessageKind { Play, ChangeTrack, Pause, Unpause, Stop };

struct MprisMessage {
    MprisMessageKind kind;
    MprisTrack track;   // Play and ChangeTrack
    std::string player; // the bus name it concerns
};

// "play Artist | Album | Title (org.mpris.MediaPlayer2.x)" and the like: the
// app's log line and what tests compare.
std::string describeMprisMessage(const MprisMessage& message);

class MprisChoice {
  public:
    using Sink = std::function<void(const MprisMessage&)>;
    explicit MprisChoice(Sink sink) : emit(std::move(sink)) {}

    // A player is known (it owns a name); it counts as stopped until it
    // says otherwise.
    void appeared(const std::string& player);
    void vanished(const std::string& player);
    void statusChanged(const std::string& player, MprisStatus status);
    void trackChanged(const std::string& player, const MprisTrack& track);

    // The player followed now; empty when none plays.
    std::string followed() const { return announced.player; }

  private:
    struct Player {
        MprisStatus status = MprisStatus::Stopped;
        MprisTrack track;
        uint64_t startedPlaying = 0; // order of the last start; 0: never
    };
    // Works out the followed player again and emits what changed.
    void decide();

    // What the plug-in was last told.
    struct Announced {
        std::string player; // empty: nothing playing or paused
        MprisStatus status = MprisStatus::Stopped;
        MprisTrack track;
    };

    Sink emit;
    std::map<std::string, Player> players;
    uint64_t starts = 0;
    Announced announced;
};
