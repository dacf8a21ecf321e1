// Writes music library exports in the player's layout (a property list with
// one element per line, tab-indented) of any size, for tests and benchmarks.
// Names are made from word lists (some words long, some in other scripts or
// with accents, some with an escaped ampersand) with a number, so every
// artist and album has its own comparison key and the expected scan result
// can be counted. A shuffled library lists its tracks in an order unrelated
// to their albums, as a library built up over years does.
//
// Threads: any thread; one call writes one file.
#pragma once

#include <cstdint>
#include <string>

struct LibraryShape {
    int tracks = 1000;
    int artists = 100;     // distinct artist names (before the ones below)
    int tracksPerAlbum = 10;
    int commaEvery = 0;    // every Nth artist is written "Name N, The" (0: none)
    int podcastEvery = 0;  // every Nth album is a podcast (0: none)
    int variousEvery = 0;  // every Nth album is by "Various Artists" (0: none)
    bool shuffled = false; // tracks in no album order (false: album by album)
    bool masterPlaylist = true; // the player's "Library" playlist of every track
    std::string playlistName;   // a user playlist of this name; empty: none
    int playlistTracks = 0;     // its members: the first N tracks written
    std::string version = "9.0.2";
    bool crlf = false;
    bool finalNewline = true;
};

struct LibraryFacts {
    uint64_t bytes = 0;
    uint64_t lines = 0;
    int artistNames = 0;   // distinct artists of the kept tracks, "Various Artists" aside
    int commaArtists = 0;  // of which written with the comma
    int albums = 0;        // distinct albums of the kept tracks
    int playlistArtistNames = 0; // as above, for the playlist's members
    int playlistCommaArtists = 0;
    int playlistAlbums = 0;
};

// The artist of album number `album` as the generator writes it.
std::string generatedArtistName(const LibraryShape& shape, int album);

// The shape benchmarks and the command-line generator use: `tracks` tracks,
// shuffled, 20 tracks an album, 2.5 albums an artist, a few written with the
// comma, a few podcasts and compilations.
LibraryShape realisticShape(int tracks);

// False when the file cannot be written.
[[nodiscard]] bool writeLibrary(const std::string& path, const LibraryShape& shape,
                                LibraryFacts* facts);
