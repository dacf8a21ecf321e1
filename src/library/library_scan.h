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

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "library/artist_forms.h"
#include "library/track_table.h"
#include "model/hash_slots.h"

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

    bool haveVersion = false;
    float libraryVersion = 0.0f;

    bool dictOpen = false;
    bool dictClosed = false;
    bool haveTrackId = false;
    bool haveArtist = false;
    bool haveAlbum = false;
    bool podcast = false; // a genre was seen and is exactly "Podcast"
    std::string trackId;
    uint32_t artist = TrackTable::kNoName;
    uint32_t album = TrackTable::kNoName;

    bool playlistMode = false;
    bool insideArray = false;
    bool firstPlaylistLine = true;

    // A name as written, with what the scan made of it once, and whether it
    // is in the results. Names are numbered in the order first seen; the
    // track table keeps the numbers (TrackTable::kNoName for none).
    template <typename Value> struct Named {
        std::string text;
        Value value;
        bool entered = false;
    };
    template <typename Value> class NameCache {
      public:
        // The number of `text`, made with make(text) the first time.
        uint32_t at(std::string_view text, Value (*make)(std::string_view));
        const Named<Value>& operator[](uint32_t number) const { return entries[number]; }
        void enter(uint32_t number) {
            if (entries[number].entered) return;
            entries[number].entered = true;
            entered.push_back(number);
        }
        void clearEntered() {
            for (uint32_t number : entered) entries[number].entered = false;
            entered.clear();
        }
        std::vector<uint32_t> entered; // in the results, in the order entered

      private:
        std::deque<Named<Value>> entries;
        HashSlots<uint32_t> slots; // 1 + the number, so that 0 is free
        uint32_t last = TrackTable::kNoName; // tracks of one album follow each other
    };
    NameCache<ArtistForms> artistCache;
    NameCache<std::string> albumCache;
    TrackTable tracks;
    // The names last entered into the results (none after they were emptied).
    uint32_t lastEnteredArtist = TrackTable::kNoName;
    uint32_t lastEnteredAlbum = TrackTable::kNoName;
};
