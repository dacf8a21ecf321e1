#include "mpris_choice.h"

std::string describeMprisMessage(const MprisMessage& message) {
    const char* verb = "stop";
    switch (message.kind) {
    case MprisMessageKind::Play:
        verb = "play";
        break;
    case MprisMessageKind::ChangeTrack:
        verb = "track";
        break;
    case MprisMessageKind::Pause:
        verb = "pause";
        break;
    case MprisMessageKind::Unpause:
        verb = "unpause";
        break;
    case MprisMessageKind::Stop:
        break;
    }
    std::string text = verb;
    if (message.kind == MprisMessageKind::Play || message.kind == MprisMessageKind::ChangeTrack)
        text += " " + message.track.artist + " | " + message.track.album + " | " +
                message.track.title;
    return text + " (" + message.player + ")";
}

void MprisChoice::appeared(const std::string& player) {
    players.emplace(player, Player());
}

void MprisChoice::vanished(const std::string& player) {
    if (players.erase(player)) decide();
}

void MprisChoice::statusChanged(const std::string& player, MprisStatus status) {
    Player& p = players[player];
    if (status == MprisStatus::Playing && p.status != MprisStatus::Playing)
        p.startedPlaying = ++starts;
    p.status = status;
    decide();
}

void MprisChoice::trackChanged(const std::string& player, const MprisTrack& track) {
    players[player].track = track;
    decide();
}

void MprisChoice::decide() {
    const std::string* best = nullptr;
    const Player* bestPlayer = nullptr;
    for (const auto& [name, p] : players) {
        if (p.status != MprisStatus::Playing) continue;
        // Players say "Playing" before they have read the track's tags; such
        // a player is taken on once its track is known. The followed player
        // stays followed between tracks.
        if (p.track == MprisTrack() && name != announced.player) continue;
        if (!bestPlayer || p.startedPlaying > bestPlayer->startedPlaying) {
            best = &name;
            bestPlayer = &p;
        }
    }

    if (bestPlayer) {
        const bool same = announced.player == *best;
        MprisMessageKind kind = MprisMessageKind::Play;
        if (same && announced.status == MprisStatus::Playing) {
            if (announced.track == bestPlayer->track || bestPlayer->track == MprisTrack()) return;
            kind = MprisMessageKind::ChangeTrack;
        } else if (same && announced.status == MprisStatus::Paused &&
                   announced.track == bestPlayer->track) {
            kind = MprisMessageKind::Unpause;
        }
        announced = Announced{*best, MprisStatus::Playing, bestPlayer->track};
        emit(MprisMessage{kind, kind == MprisMessageKind::Unpause ? MprisTrack() : announced.track,
                          announced.player});
        return;
    }

    // Nobody plays: the followed player paused, stopped or left.
    if (announced.player.empty()) return;
    auto it = players.find(announced.player);
    if (it != players.end() && it->second.status == MprisStatus::Paused) {
        if (announced.status == MprisStatus::Paused) return;
        announced.status = MprisStatus::Paused;
        emit(MprisMessage{MprisMessageKind::Pause, MprisTrack(), announced.player});
        return;
    }
    std::string player = announced.player;
    announced = Announced();
    emit(MprisMessage{MprisMessageKind::Stop, MprisTrack(), player});
}
