// generate_library PATH TRACKS [PLAYLIST_NAME PLAYLIST_TRACKS]: writes a
// library export of TRACKS tracks, for trying the scan or the player on a
// library of a chosen size.
#include <cstdio>
#include <cstdlib>

#include "library_generator.h"

int main(int argc, char** argv) {
    if (argc != 3 && argc != 5) {
        fprintf(stderr, "usage: %s PATH TRACKS [PLAYLIST_NAME PLAYLIST_TRACKS]\n", argv[0]);
        return 2;
    }
    LibraryShape shape = realisticShape(atoi(argv[2]));
    if (argc == 5) {
        shape.playlistName = argv[3];
        shape.playlistTracks = atoi(argv[4]);
    }
    LibraryFacts facts;
    if (shape.tracks <= 0 || !writeLibrary(argv[1], shape, &facts)) {
        fprintf(stderr, "%s: cannot write %s\n", argv[0], argv[1]);
        return 1;
    }
    printf("%s: %d tracks, %llu bytes, %d artists, %d albums\n", argv[1], shape.tracks,
           static_cast<unsigned long long>(facts.bytes), facts.artistNames, facts.albums);
    return 0;
}
