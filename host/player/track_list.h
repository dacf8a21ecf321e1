// The tracks the windowed player bar steps through, read from the music
// library file. A small line scanner, not an XML parser: each track dict
// gives "<key>Artist</key><string>...</string>" and
// "<key>Album</key><string>...</string>" on lines of their own; the
// entities &amp; &lt; &gt; &quot; and &#38; are decoded. Tracks without an
// artist are skipped.
#pragma once

#include <istream>
#include <string>
#include <vector>

struct PlayerTrack {
    std::string artist;
    std::string album;
};

// At most this many tracks are kept; a bar does not need more.
const size_t kMaxPlayerTracks = 100000;

// Reads the tracks from library. An empty list when nothing matches.
std::vector<PlayerTrack> readPlayerTracks(std::istream& library);

// Decodes the entities the library file uses in names.
std::string decodeLibraryEntities(const std::string& text);
