#include "library/library_scan.h"

#include <cstdio>
#include <cstring>

#include "library/key_text_filter.h"

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

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool startsWithIgnoringCase(std::string_view text, size_t at, std::string_view lowerPrefix) {
    if (text.size() - at < lowerPrefix.size()) return false;
    for (size_t i = 0; i < lowerPrefix.size(); ++i)
        if (lowerAscii(text[at + i]) != lowerPrefix[i]) return false;
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

// What one line holds: each key text's first occurrence.
struct LibraryScan::LineMarks {
    struct Value {
        bool found = false;
        bool tried = false;
        std::string_view text;
    };
    bool any = false; // anything at all that the scan reacts to
    bool dictOpen = false;
    bool dictClose = false;
    bool arrayOpen = false;
    bool arrayClose = false;
    bool playlistName = false;
    Value version, trackId, artist, album, genre;

    // The reader hands over short lines that mostly hold a key text, so each
    // "<" is looked at directly rather than through the block filter.
    explicit LineMarks(std::string_view line) {
        const char* data = line.data();
        size_t size = line.size();
        for (const char* p = static_cast<const char*>(memchr(data, '<', size)); p;) {
            size_t at = static_cast<size_t>(p - data);
            if (mayStartKeyText(p, size - at)) mark(line, at);
            p = static_cast<const char*>(memchr(p + 1, '<', size - at - 1));
        }
    }

  private:
    // A key with its value: the first occurrence of the key decides; the
    // value runs to the first closing text after it.
    void takeValue(std::string_view line, size_t at, std::string_view key, std::string_view end,
                   Value& value) {
        if (value.tried || !startsWith(line, at, key)) return;
        value.tried = true;
        size_t from = at + key.size();
        size_t to = line.find(end, from);
        if (to == std::string_view::npos) return;
        value.found = true;
        value.text = line.substr(from, to - from);
        any = true;
    }

    void flag(bool& mark, std::string_view line, size_t at, std::string_view text) {
        if (!mark && startsWith(line, at, text)) mark = any = true;
    }

    void mark(std::string_view line, size_t at) {
        switch (at + 1 < line.size() ? line[at + 1] : '\0') {
        case 'd':
            flag(dictOpen, line, at, kDictOpen);
            break;
        case '/':
            flag(dictClose, line, at, kDictClose);
            flag(arrayClose, line, at, kArrayClose);
            break;
        case 'a':
            flag(arrayOpen, line, at, kArrayOpen);
            break;
        case 'k':
        case 'K':
            markKey(line, at);
            break;
        default:
            break;
        }
    }

    // The key texts differ in the letter after "<key>".
    void markKey(std::string_view line, size_t at) {
        constexpr size_t kNameAt = 5; // strlen("<key>")
        char first = at + kNameAt < line.size() ? line[at + kNameAt] : '\0';
        if ((first == 'n' || first == 'N' || line[at + 1] == 'K') && !playlistName &&
            startsWithIgnoringCase(line, at, kPlaylistName))
            playlistName = any = true;
        switch (first) {
        case 'T':
            takeValue(line, at, kTrackIdKey, kIntegerEnd, trackId);
            break;
        case 'A':
            takeValue(line, at, kArtistKey, kStringEnd, artist);
            takeValue(line, at, kAlbumKey, kStringEnd, album);
            takeValue(line, at, kVersionKey, kStringEnd, version);
            break;
        case 'G':
            takeValue(line, at, kGenreKey, kStringEnd, genre);
            break;
        default:
            break;
        }
    }
};

void LibraryScan::takeLine(std::string_view line) {
    LineMarks marks(line);
    // Most lines hold nothing the scan looks for; outside a playlist such a
    // line changes nothing (a track's flags only change on key lines, and
    // "dictionary closed" never outlasts its line).
    if (!marks.any && !playlistMode) return;
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
        enteredArtists.clear();
        enteredAlbums.clear();
        lastEnteredArtist = nullptr;
        lastEnteredAlbum = nullptr;
        firstPlaylistLine = false;
    }
    if (marks.trackId.found) {
        TrackTable::Names track;
        if (tracks.find(marks.trackId.text, &track)) {
            if (track.artist) enterArtist(*track.artist);
            if (track.album) enteredAlbums.insert(track.album);
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
    // The tracks of an album follow each other: enter their names once.
    if (artist != lastEnteredArtist) enterArtist(*artist);
    lastEnteredArtist = artist;
    if (haveAlbum) {
        if (album != lastEnteredAlbum) enteredAlbums.insert(album);
        lastEnteredAlbum = album;
    }
    tracks.record(trackId, artist, haveAlbum ? album : nullptr);
}

void LibraryScan::resetTrack() {
    dictOpen = dictClosed = haveTrackId = haveArtist = haveAlbum = podcast = false;
    artist = nullptr;
    album = nullptr;
}

void LibraryScan::enterArtist(const ArtistForms& forms) { enteredArtists.insert(&forms); }

void LibraryScan::finish() {
    for (const ArtistForms* forms : enteredArtists) {
        if (forms->split) {
            artists.insert(forms->reordered);
            artists.insert(forms->asWritten);
        } else {
            artists.insert(forms->stored);
        }
    }
    for (const std::string* album : enteredAlbums) albums.insert(*album);
}

const ArtistForms& LibraryScan::artistForms(std::string_view value) {
    if (lastArtist && value == lastArtistText) return *lastArtist;
    lastArtistText.assign(value.data(), value.size());
    auto found = artistCache.find(lastArtistText);
    if (found == artistCache.end())
        found = artistCache.emplace(lastArtistText, artistFormsOf(value)).first;
    lastArtist = &found->second;
    return *lastArtist;
}

const std::string& LibraryScan::albumKey(std::string_view value) {
    if (lastAlbum && value == lastAlbumText) return *lastAlbum;
    lastAlbumText.assign(value.data(), value.size());
    auto found = albumCache.find(lastAlbumText);
    if (found == albumCache.end())
        found = albumCache.emplace(lastAlbumText, cleanedName(value)).first;
    lastAlbum = &found->second;
    return *lastAlbum;
}
