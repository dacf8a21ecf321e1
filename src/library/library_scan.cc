#include "library/library_scan.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::string_view kVersionKey = "<key>Application Version</key><string>";
constexpr std::string_view kTrackIdKey = "<key>Track ID</key><integer>";
constexpr std::string_view kArtistKey = "<key>Artist</key><string>";
constexpr std::string_view kAlbumKey = "<key>Album</key><string>";
constexpr std::string_view kGenreKey = "<key>Genre</key><string>";
constexpr std::string_view kStringEnd = "</string>";
constexpr std::string_view kIntegerEnd = "</integer>";
constexpr std::string_view kDictOpen = "<dict>";
constexpr std::string_view kDictClose = "</dict>";
constexpr std::string_view kArrayOpen = "<array>";
constexpr std::string_view kArrayClose = "</array>";
// Compared without regard to letter case.
constexpr std::string_view kPlaylistName = "<key>name</key><string>stagebeacon</string>";
constexpr std::string_view kPodcastGenre = "Podcast";
// Longest version text worth reading.
constexpr size_t kVersionTextLimit = 255;

bool startsWith(std::string_view text, size_t at, std::string_view prefix) {
    return text.size() - at >= prefix.size() && memcmp(text.data() + at, prefix.data(), prefix.size()) == 0;
}

bool startsWithIgnoringCase(std::string_view text, size_t at, std::string_view lowerPrefix) {
    if (text.size() - at < lowerPrefix.size()) return false;
    for (size_t i = 0; i < lowerPrefix.size(); ++i)
        if (tolower(static_cast<unsigned char>(text[at + i])) != lowerPrefix[i]) return false;
    return true;
}

// "7.6.2" reads as 7.62: the first point stays, later ones go.
float versionNumber(std::string_view text) {
    std::string digits;
    bool pointSeen = false;
    for (char c : text.substr(0, kVersionTextLimit)) {
        if (c == '.' && pointSeen) continue;
        if (c == '.') pointSeen = true;
        digits += c;
    }
    float version = 0.0f;
    if (sscanf(digits.c_str(), "%f", &version) != 1) version = 0.0f;
    return version;
}

} // namespace

// What one line holds. Every key text starts with "<", so one walk over the
// line's "<" characters finds them all; each records its first occurrence.
struct LibraryScan::LineMarks {
    struct Value {
        bool found = false;
        bool tried = false;
        std::string_view text;
    };
    bool dictOpen = false;
    bool dictClose = false;
    bool arrayOpen = false;
    bool arrayClose = false;
    bool playlistName = false;
    Value version, trackId, artist, album, genre;

    explicit LineMarks(std::string_view line) {
        for (const char* p = static_cast<const char*>(memchr(line.data(), '<', line.size())); p;) {
            size_t at = static_cast<size_t>(p - line.data());
            mark(line, at);
            size_t next = at + 1;
            p = static_cast<const char*>(memchr(line.data() + next, '<', line.size() - next));
        }
    }

  private:
    // A key with its value: the first occurrence of the key decides; the
    // value runs to the first closing text after it.
    static void takeValue(std::string_view line, size_t at, std::string_view key,
                          std::string_view end, Value& value) {
        if (value.tried || !startsWith(line, at, key)) return;
        value.tried = true;
        size_t from = at + key.size();
        size_t to = line.find(end, from);
        if (to == std::string_view::npos) return;
        value.found = true;
        value.text = line.substr(from, to - from);
    }

    void mark(std::string_view line, size_t at) {
        switch (at + 1 < line.size() ? line[at + 1] : '\0') {
        case 'd':
            dictOpen = dictOpen || startsWith(line, at, kDictOpen);
            break;
        case '/':
            dictClose = dictClose || startsWith(line, at, kDictClose);
            arrayClose = arrayClose || startsWith(line, at, kArrayClose);
            break;
        case 'a':
            arrayOpen = arrayOpen || startsWith(line, at, kArrayOpen);
            break;
        case 'k':
        case 'K':
            playlistName = playlistName || startsWithIgnoringCase(line, at, kPlaylistName);
            takeValue(line, at, kTrackIdKey, kIntegerEnd, trackId);
            takeValue(line, at, kArtistKey, kStringEnd, artist);
            takeValue(line, at, kAlbumKey, kStringEnd, album);
            takeValue(line, at, kGenreKey, kStringEnd, genre);
            takeValue(line, at, kVersionKey, kStringEnd, version);
            break;
        default:
            break;
        }
    }
};

void LibraryScan::takeLine(std::string_view line) {
    LineMarks marks(line);
    if (!haveVersion && marks.version.found) {
        libraryVersion = versionNumber(marks.version.text);
        haveVersion = true;
    }
    if (playlistMode && takePlaylistLine(line, marks)) return;
    takeTrackLine(marks);
    // Set exactly on the playlist's name line, so it starts with the next
    // line; any other line that gets here ends it.
    playlistMode = marks.playlistName;
}

// True when the line belongs to the playlist and is used up.
bool LibraryScan::takePlaylistLine(std::string_view line, const LineMarks& marks) {
    if (!marks.arrayOpen && !insideArray) {
        // Before the member list: the playlist's own keys. Its dictionary
        // closing first means it has no members, and the results stay.
        return line.find("/dict") == std::string_view::npos;
    }
    if (marks.arrayClose) {
        insideArray = false;
        return false;
    }
    insideArray = true;
    if (firstPlaylistLine) {
        artists.clear();
        albums.clear();
        firstPlaylistLine = false;
    }
    if (marks.trackId.found) {
        auto track = tracks.find(std::string(marks.trackId.text));
        if (track != tracks.end()) {
            if (track->second.artist) enterArtist(*track->second.artist);
            if (track->second.album) albums.insert(*track->second.album);
        }
    }
    return true;
}

void LibraryScan::takeTrackLine(const LineMarks& marks) {
    if (marks.dictOpen) dictOpen = true;
    if (marks.dictClose) dictClosed = true;
    if (marks.trackId.found) {
        trackId.assign(marks.trackId.text.data(), marks.trackId.text.size());
        haveTrackId = true;
    }
    if (marks.album.found) {
        album = &albumKey(marks.album.text);
        haveAlbum = true;
    }
    if (marks.genre.found) podcast = marks.genre.text == kPodcastGenre;
    if (marks.artist.found) {
        artist = &artistForms(marks.artist.text);
        haveArtist = true;
    }

    if (!(haveArtist && haveTrackId && dictOpen)) {
        if (dictClosed) resetTrack();
    } else if (dictClosed) {
        finishTrack();
        resetTrack();
    }
}

void LibraryScan::finishTrack() {
    if (artist->stored.empty() || podcast) return;
    enterArtist(*artist);
    TrackNames& names = tracks[trackId];
    names.artist = artist;
    if (haveAlbum) {
        albums.insert(*album);
        names.album = album;
    }
}

void LibraryScan::resetTrack() {
    dictOpen = dictClosed = haveTrackId = haveArtist = haveAlbum = podcast = false;
    artist = nullptr;
    album = nullptr;
}

void LibraryScan::enterArtist(const ArtistForms& forms) {
    if (forms.split) {
        artists.insert(forms.reordered);
        artists.insert(forms.asWritten);
    } else {
        artists.insert(forms.stored);
    }
}

const ArtistForms& LibraryScan::artistForms(std::string_view value) {
    std::string raw(value);
    auto found = artistCache.find(raw);
    if (found != artistCache.end()) return found->second;
    ArtistForms forms = artistFormsOf(value);
    return artistCache.emplace(std::move(raw), std::move(forms)).first->second;
}

const std::string& LibraryScan::albumKey(std::string_view value) {
    std::string raw(value);
    auto found = albumCache.find(raw);
    if (found != albumCache.end()) return found->second;
    std::string key = cleanedName(value);
    return albumCache.emplace(std::move(raw), std::move(key)).first->second;
}
