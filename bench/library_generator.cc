#include "library_generator.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>

namespace {

// Every word keeps its own artist key (no two fold to the same letters).
const char* const kFirstWords[] = {"Velvet",  "Iron",    "Silver",        "Northern",
                                   "Electric", "Hollow", "Crimson",       "Quiet",
                                   "Golden",  "Paper",   "Wild",          "Broken",
                                   "Sigur Rós", "Mötley", "Björkmann",    "Мумий Тролль",
                                   "東京事変", "Ñandú",   "Godspeed You Black Emperor And The",
                                   "Zoë Çelik", "Ólafur", "Ιωάννα"};
const char* const kSecondWords[] = {"Harbor",   "Lanterns", "Owls",          "Engines",
                                    "Rivers",   "Sparrows", "Tides",         "Machines",
                                    "Ghosts",   "Pilots",   "Hearts &amp; Wolves", "Wolves",
                                    "Orchestra of the Distant Northern Lighthouses",
                                    "Quartett", "Ensemble Ÿsaÿe", "Хор",     "楽団",
                                    "Trío"};
const char* const kGenres[] = {"Rock", "Pop", "Jazz", "Folk", "Electronic", "Hip Hop", "Classical"};
constexpr size_t kFlushSize = 1 << 20;

template <size_t N> const char* pick(const char* const (&words)[N], int i) {
    return words[static_cast<size_t>(i) % N];
}

bool isEvery(int every, int i) { return every > 0 && i % every == every - 1; }

class Writer {
  public:
    Writer(FILE* file, const LibraryShape& shape, LibraryFacts* facts)
        : file(file), shape(shape), facts(facts) {}
    ~Writer() { flush(); }

    void line(int depth, const std::string& text) {
        if (pendingEnd) buffer += shape.crlf ? "\r\n" : "\n";
        buffer.append(static_cast<size_t>(depth), '\t');
        buffer += text;
        pendingEnd = true;
        ++facts->lines;
        if (buffer.size() >= kFlushSize) flush();
    }
    void finish() {
        if (pendingEnd && shape.finalNewline) buffer += shape.crlf ? "\r\n" : "\n";
        pendingEnd = false;
        if (!shape.finalNewline) --facts->lines; // wc -l counts line feeds
        flush();
    }
    bool failed() const { return writeFailed; }

  private:
    void flush() {
        if (!buffer.empty() && fwrite(buffer.data(), 1, buffer.size(), file) != buffer.size())
            writeFailed = true;
        facts->bytes += buffer.size();
        buffer.clear();
    }

    FILE* file;
    const LibraryShape& shape;
    LibraryFacts* facts;
    std::string buffer;
    bool pendingEnd = false;
    bool writeFailed = false;
};

std::string keyValue(const char* key, const char* type, const std::string& value) {
    return std::string("<key>") + key + "</key><" + type + ">" + value + "</" + type + ">";
}

std::string albumName(int album) {
    return std::string(pick(kFirstWords, album / 7)) + " " + pick(kSecondWords, album / 3) +
           " Sessions " + std::to_string(album);
}

int trackId(int track) { return 1000 + 2 * track; }

int gcd(int a, int b) { return b == 0 ? a : gcd(b, a % b); }

// The content (album, song) of the track written at `position`: the same
// number unless shuffled, else a fixed permutation that sends neighbours far
// apart (a stride coprime to the number of tracks).
int contentOf(const LibraryShape& shape, int position) {
    if (!shape.shuffled || shape.tracks < 2) return position;
    int stride = 7919;
    while (gcd(stride, shape.tracks) != 1) ++stride;
    return static_cast<int>((static_cast<int64_t>(position) * stride + 12345) % shape.tracks);
}

void writeTrack(Writer& out, const LibraryShape& shape, int position) {
    int track = contentOf(shape, position);
    int album = track / shape.tracksPerAlbum;
    bool podcast = isEvery(shape.podcastEvery, album);
    std::string id = std::to_string(trackId(position));
    out.line(2, "<key>" + id + "</key>");
    out.line(2, "<dict>");
    out.line(3, keyValue("Track ID", "integer", id));
    out.line(3, keyValue("Name", "string", "Song " + std::to_string(track % 97) + " of the " +
                                              pick(kSecondWords, track)));
    out.line(3, keyValue("Artist", "string", generatedArtistName(shape, album)));
    out.line(3, keyValue("Album Artist", "string", generatedArtistName(shape, album)));
    out.line(3, keyValue("Album", "string", albumName(album)));
    out.line(3, keyValue("Genre", "string", podcast ? "Podcast" : pick(kGenres, album)));
    out.line(3, keyValue("Kind", "string", "MPEG audio file"));
    out.line(3, keyValue("Size", "integer", std::to_string(3000000 + track * 37 % 900000)));
    out.line(3, keyValue("Total Time", "integer", std::to_string(180000 + track * 13 % 90000)));
    out.line(3, keyValue("Track Number", "integer",
                         std::to_string(track % shape.tracksPerAlbum + 1)));
    out.line(3, keyValue("Year", "integer", std::to_string(1970 + album % 40)));
    out.line(3, keyValue("Date Modified", "date", "2008-03-14T21:07:45Z"));
    out.line(3, keyValue("Date Added", "date", "2008-03-14T21:05:12Z"));
    out.line(3, keyValue("Bit Rate", "integer", "192"));
    out.line(3, keyValue("Sample Rate", "integer", "44100"));
    out.line(3, keyValue("Play Count", "integer", std::to_string(track % 23)));
    out.line(3, keyValue("Persistent ID", "string", "5A1F00" + std::to_string(900000 + track)));
    out.line(3, keyValue("Track Type", "string", "File"));
    out.line(3, keyValue("Location", "string",
                         "file://localhost/Users/listener/Music/iTunes/iTunes%20Music/Album%20" +
                             std::to_string(album) + "/" + std::to_string(track) + ".mp3"));
    out.line(3, keyValue("File Folder Count", "integer", "4"));
    out.line(3, keyValue("Library Folder Count", "integer", "1"));
    out.line(2, "</dict>");
}

void writePlaylist(Writer& out, const std::string& name, int id, int members, bool master) {
    out.line(2, "<dict>");
    out.line(3, keyValue("Name", "string", name));
    if (master) out.line(3, "<key>Master</key><true/>");
    out.line(3, keyValue("Playlist ID", "integer", std::to_string(id)));
    out.line(3, keyValue("Playlist Persistent ID", "string", "0D1E2F" + std::to_string(id)));
    out.line(3, "<key>All Items</key><true/>");
    if (members > 0) {
        out.line(3, "<key>Playlist Items</key>");
        out.line(3, "<array>");
        for (int t = 0; t < members; ++t) {
            out.line(4, "<dict>");
            out.line(5, keyValue("Track ID", "integer", std::to_string(trackId(t))));
            out.line(4, "</dict>");
        }
        out.line(3, "</array>");
    }
    out.line(2, "</dict>");
}

// Counts what a scan should find among the first `tracks` tracks written.
void countNames(const LibraryShape& shape, int tracks, int* artists, int* commas, int* albums) {
    std::set<std::string> artistSet, albumSet;
    int commaCount = 0;
    for (int t = 0; t < tracks; ++t) {
        int album = contentOf(shape, t) / shape.tracksPerAlbum;
        if (isEvery(shape.podcastEvery, album)) continue;
        albumSet.insert(albumName(album));
        std::string artist = generatedArtistName(shape, album);
        if (artist == "Various Artists") continue;
        if (artistSet.insert(artist).second && artist.find(',') != std::string::npos)
            ++commaCount;
    }
    *artists = static_cast<int>(artistSet.size());
    *commas = commaCount;
    *albums = static_cast<int>(albumSet.size());
}

} // namespace

std::string generatedArtistName(const LibraryShape& shape, int album) {
    if (isEvery(shape.variousEvery, album)) return "Various Artists";
    int artist = album % (shape.artists > 0 ? shape.artists : 1);
    std::string name = std::string(pick(kFirstWords, artist)) + " " +
                       pick(kSecondWords, artist / 12) + " " + std::to_string(artist);
    if (isEvery(shape.commaEvery, artist)) return name + ", The";
    return artist % 5 == 0 ? "The " + name : name;
}

LibraryShape realisticShape(int tracks) {
    LibraryShape shape;
    shape.tracks = tracks;
    shape.tracksPerAlbum = 20;
    shape.artists = tracks / 50 > 1 ? tracks / 50 : 1;
    shape.commaEvery = 17;
    shape.podcastEvery = 41;
    shape.variousEvery = 29;
    shape.shuffled = true;
    return shape;
}

bool writeLibrary(const std::string& path, const LibraryShape& shape, LibraryFacts* facts) {
    *facts = LibraryFacts();
    std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "wb"), fclose);
    if (!file) return false;
    {
        Writer out(file.get(), shape, facts);
        out.line(0, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        out.line(0, "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">");
        out.line(0, "<plist version=\"1.0\">");
        out.line(0, "<dict>");
        out.line(1, keyValue("Major Version", "integer", "1"));
        out.line(1, keyValue("Minor Version", "integer", "1"));
        out.line(1, keyValue("Application Version", "string", shape.version));
        out.line(1, keyValue("Features", "integer", "5"));
        out.line(1, "<key>Show Content Ratings</key><true/>");
        out.line(1, keyValue("Music Folder", "string",
                             "file://localhost/Users/listener/Music/iTunes/iTunes%20Music/"));
        out.line(1, keyValue("Library Persistent ID", "string", "8C2D46A0B1E93F57"));
        out.line(1, "<key>Tracks</key>");
        out.line(1, "<dict>");
        for (int t = 0; t < shape.tracks; ++t) writeTrack(out, shape, t);
        out.line(1, "</dict>");
        out.line(1, "<key>Playlists</key>");
        out.line(1, "<array>");
        if (shape.masterPlaylist) writePlaylist(out, "Library", 20000, shape.tracks, true);
        writePlaylist(out, "90's Music", 20001, shape.tracks / 50, false);
        if (!shape.playlistName.empty())
            writePlaylist(out, shape.playlistName, 20002, shape.playlistTracks, false);
        out.line(1, "</array>");
        out.line(0, "</dict>");
        out.line(0, "</plist>");
        out.finish();
        if (out.failed()) return false;
    }
    countNames(shape, shape.tracks, &facts->artistNames, &facts->commaArtists, &facts->albums);
    countNames(shape, shape.playlistName.empty() ? 0 : shape.playlistTracks,
               &facts->playlistArtistNames, &facts->playlistCommaArtists, &facts->playlistAlbums);
    return true;
}
