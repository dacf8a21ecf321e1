// The player bar's tracks from a library file.
#include <gtest/gtest.h>

#include <sstream>

#include "track_list.h"

namespace {

TEST(PlayerTracks, ArtistAndAlbumPerTrackDictWithEntities) {
    std::istringstream library(
        "<plist version=\"1.0\">\n<dict>\n\t<key>Tracks</key>\n\t<dict>\n"
        "\t\t<key>1</key>\n\t\t<dict>\n"
        "\t\t\t<key>Artist</key><string>Simon &amp; Garfunkel</string>\n"
        "\t\t\t<key>Album Artist</key><string>Not This</string>\n"
        "\t\t\t<key>Album</key><string>&lt;Bookends&gt; &quot;Live&quot; &#38; more</string>\n"
        "\t\t</dict>\n"
        "\t\t<key>2</key>\n\t\t<dict>\n"
        "\t\t\t<key>Album</key><string>No Artist Here</string>\n"
        "\t\t</dict>\n"
        "\t\t<key>3</key>\n\t\t<dict>\n"
        "\t\t\t<key>Artist</key><string>Low</string>\n"
        "\t\t</dict>\n"
        "\t</dict>\n\t<key>Playlists</key>\n\t<array>\n\t\t<dict>\n"
        "\t\t\t<key>Name</key><string>Library</string>\n\t\t</dict>\n\t</array>\n"
        "</dict>\n</plist>\n");
    std::vector<PlayerTrack> tracks = readPlayerTracks(library);
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[0].artist, "Simon & Garfunkel");
    EXPECT_EQ(tracks[0].album, "<Bookends> \"Live\" & more");
    EXPECT_EQ(tracks[1].artist, "Low");
    EXPECT_EQ(tracks[1].album, "");
    EXPECT_EQ(decodeLibraryEntities("&amp;amp; &unknown; &"), "&amp; &unknown; &");
}

} // namespace
