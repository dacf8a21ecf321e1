// Building the phone's artist list. The library is read with the same line
// rules as the library scan (library/library_scan.h): tracks are
// dictionaries with a track number and an artist, a "Podcast" genre drops a
// track, and a playlist named after the plug-in narrows the list to its
// members. What differs is what is kept: the request's spelling of each
// name, and no albums.
#include "phone/phone_artists.h"

#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "library/file_io.h"
#include "library/library_reader.h"
#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "model/stagebeacon_class.h"

XML_Artist_List all_artists;

namespace {

// Frees the list's records when the program ends (lists only forget theirs).
struct AllArtistsOwner {
    ~AllArtistsOwner() { deleteNodes(all_artists); }
} allArtistsOwner;

constexpr size_t kNamePositions = 256;
constexpr size_t kBandLineLimit = 1 << 16;
constexpr std::string_view kTrackIdKey = "<key>Track ID</key><integer>";
constexpr std::string_view kArtistKey = "<key>Artist</key><string>";
constexpr std::string_view kGenreKey = "<key>Genre</key><string>";
constexpr std::string_view kPlaylistName = "<key>name</key><string>stagebeacon</string>";
constexpr const char* kCompilationNames[] = {"various", "variousartists"};

bool isKept(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool has(std::string_view line, std::string_view text) {
    return line.find(text) != std::string_view::npos;
}

// The value after `key` up to the first `end` on the line.
bool valueOf(std::string_view line, std::string_view key, std::string_view end,
             std::string_view* value) {
    size_t from = line.find(key);
    if (from == std::string_view::npos) return false;
    from += key.size();
    size_t to = line.find(end, from);
    if (to == std::string_view::npos) return false;
    *value = line.substr(from, to - from);
    return true;
}

bool holdsPlaylistName(std::string_view line) {
    std::string lower(line);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return has(lower, kPlaylistName);
}

std::string cleanedForPhone(std::string_view text) {
    char name[kNamePositions];
    std::string cut(text.substr(0, kNamePositions - 1));
    copyText(name, cut.c_str());
    iPhoneArtistClean(name);
    return name;
}

// The names found so far, one per artist key, spelled as first met.
class PhoneNames {
  public:
    void enter(const std::string& name) {
        if (!name.empty()) byKey.emplace(keyOf(name), name);
    }
    void removeExactly(const std::string& name) {
        auto found = byKey.find(keyOf(name));
        if (found != byKey.end() && found->second == name) byKey.erase(found);
    }
    void clear() { byKey.clear(); }
    // Fills `list` in descending key order: every record goes to the head
    // of the sorted list at once.
    void fill(XML_Artist_List& list) const {
        for (auto it = byKey.rbegin(); it != byKey.rend(); ++it) {
            auto* record = new XMLARTIST(it->second.c_str());
            if (!list.addUncleaned(record)) delete record;
        }
    }

  private:
    static std::string keyOf(const std::string& name) {
        char key[kArtistKeySize];
        copyText(key, name.c_str());
        cleanArtist(key);
        return key;
    }
    std::map<std::string, std::string> byKey;
};

// The library's tracks, line by line (see the file comment).
class PhoneScan {
  public:
    explicit PhoneScan(PhoneNames& names) : names(names) {}
    bool inPlaylist() const { return playlistMode; }

    void takeLine(std::string_view line) {
        if (playlistMode && takePlaylistLine(line)) return;
        takeTrackLine(line);
        playlistMode = holdsPlaylistName(line);
    }

  private:
    bool takePlaylistLine(std::string_view line) {
        if (!has(line, "<array>") && !insideArray) return !has(line, "/dict");
        if (has(line, "</array>")) {
            insideArray = false;
            return false;
        }
        insideArray = true;
        if (firstPlaylistLine) {
            names.clear();
            firstPlaylistLine = false;
        }
        std::string_view id;
        if (valueOf(line, kTrackIdKey, "</integer>", &id)) {
            auto found = tracks.find(std::string(id));
            if (found != tracks.end()) names.enter(found->second);
        }
        return true;
    }

    void takeTrackLine(std::string_view line) {
        if (has(line, "<dict>")) dictOpen = true;
        if (has(line, "</dict>")) dictClosed = true;
        std::string_view value;
        if (valueOf(line, kTrackIdKey, "</integer>", &value)) {
            trackId.assign(value.data(), value.size());
            haveTrackId = true;
        }
        if (valueOf(line, kGenreKey, "</string>", &value)) podcast = value == "Podcast";
        if (valueOf(line, kArtistKey, "</string>", &value)) {
            artist = cleanedForPhone(value);
            haveArtist = true;
        }
        if (!(haveArtist && haveTrackId && dictOpen)) {
            if (dictClosed) resetTrack();
        } else if (dictClosed) {
            if (!artist.empty() && !podcast) {
                names.enter(artist);
                tracks[trackId] = artist;
            }
            resetTrack();
        }
    }

    void resetTrack() { dictOpen = dictClosed = haveTrackId = haveArtist = podcast = false; }

    PhoneNames& names;
    std::unordered_map<std::string, std::string> tracks;
    std::string trackId, artist;
    bool dictOpen = false, dictClosed = false, haveTrackId = false, haveArtist = false;
    bool podcast = false;
    bool playlistMode = false, insideArray = false, firstPlaylistLine = true;
};

template <typename Action> void eachBandLine(const char* path, Action action) {
    LineReader reader(path, kBandLineLimit);
    std::string_view line;
    while (reader.next(&line)) {
        std::string name = cleanedForPhone(line);
        if (!name.empty()) action(name);
    }
}

} // namespace

void iPhoneArtistClean(char* name) {
    name[kNamePositions - 1] = '\0';
    size_t at = 0;
    while (at < kNamePositions && name[at] != '\0') {
        char c = name[at];
        if (isKept(c) || (c == ' ' && at > 0)) {
            ++at;
        } else if (strncmp(name + at, "&#38;", 5) == 0) {
            memmove(name + at + 3, name + at + 5, strlen(name + at + 5) + 1);
            memcpy(name + at, "and", 3);
            at += 3;
        } else {
            memmove(name + at, name + at + 1, strlen(name + at + 1) + 1);
        }
    }
    size_t length = strlen(name);
    while (length > 0 && name[length - 1] == ' ')
        name[--length] = '\0';
}

int GetFullArtistList(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    deleteNodes(all_artists);

    char path[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(path);
    LibraryReader reader(path);
    if (!reader.isOpen()) return 1;

    PhoneNames names;
    PhoneScan scan(names);
    std::string_view line;
    while (reader.next(&line, !scan.inPlaylist()))
        scan.takeLine(line);

    char bands[ProtectedData::StagebeaconIncludeBandsListSize];
    store.getStagebeaconIncludeBandsList(bands);
    eachBandLine(bands, [&](const std::string& name) { names.enter(name); });
    store.getStagebeaconExcludeBandsList(bands);
    eachBandLine(bands, [&](const std::string& name) { names.removeExactly(name); });
    for (const char* name : kCompilationNames)
        names.removeExactly(name);

    names.fill(all_artists);
    return 0;
}
