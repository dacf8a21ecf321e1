// LibraryScan: the line-by-line reading of the music library export behind
// CalGetData::parseXML.
//
// The player writes its library as a property list with one element per
// line, so the scan looks for fixed key texts on each line instead of
// parsing XML; entities stay as written. Tracks are dictionaries holding a
// track number, an artist and optionally an album and a genre; they count
// once their dictionary closes. A playlist named after the plug-in (any
// letter case) narrows the result to its own members: its first member line
// empties both results, and each member's track number brings back that
// track's artist and album.
//
// Memory: the file is never held (the caller streams it, file_io.h). What
// grows is what must: the distinct names, and for each track its number with
// pointers to its names, needed if a playlist refers to it later. Cleaning a
// name is done once per distinct spelling.
//
// Threads: one scan is used by one thread.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "library/artist_forms.h"
#include "library/track_table.h"

class LibraryScan {
  public:
    void takeLine(std::string_view line);
    // Inside the plug-in's playlist every line counts; elsewhere only lines
    // with a key text do (library_reader.h).
    bool inPlaylist() const { return playlistMode; }

    bool versionFound() const { return haveVersion; }
    float version() const { return libraryVersion; }

    // After the last line: fills `artists` and `albums`.
    void finish();

    // Distinct comparison keys found (complete after finish()).
    std::unordered_set<std::string> artists;
    std::unordered_set<std::string> albums;

  private:
    struct LineMarks;


    bool takePlaylistLine(std::string_view line, const LineMarks& marks);
    void takeTrackLine(const LineMarks& marks);
    void finishTrack();
    void resetTrack();
    void enterArtist(const ArtistForms& forms);
    const ArtistForms& artistForms(std::string_view value);
    const std::string& albumKey(std::string_view value);

    bool haveVersion = false;
    float libraryVersion = 0.0f;

    bool dictOpen = false;
    bool dictClosed = false;
    bool haveTrackId = false;
    bool haveArtist = false;
    bool haveAlbum = false;
    bool podcast = false; // a genre was seen and is exactly "Podcast"
    std::string trackId;
    const ArtistForms* artist = nullptr;
    const std::string* album = nullptr;

    bool playlistMode = false;
    bool insideArray = false;
    bool firstPlaylistLine = true;

    // Node-based maps: the pointers above stay valid as they grow.
    std::unordered_map<std::string, ArtistForms> artistCache;
    std::unordered_map<std::string, std::string> albumCache;
    TrackTable tracks;
    // Tracks of one album follow each other: their names are looked up once.
    std::string lastArtistText;
    const ArtistForms* lastArtist = nullptr;
    std::string lastAlbumText;
    const std::string* lastAlbum = nullptr;
    // The names entered into the results, as the cached entries: a track
    // costs a pointer's hash, not a name's; finish() turns them into names.
    std::unordered_set<const ArtistForms*> enteredArtists;
    std::unordered_set<const std::string*> enteredAlbums;
    // The names last entered into the results (null after they were emptied).
    const ArtistForms* lastEnteredArtist = nullptr;
    const std::string* lastEnteredAlbum = nullptr;
};
