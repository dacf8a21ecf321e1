#include "track_list.h"

#include <cstring>

namespace {

// The value of "<key>NAME</key><string>VALUE</string>" on line, or false.
bool keyValue(const std::string& line, const char* key, std::string& value) {
    std::string opening = std::string("<key>") + key + "</key><string>";
    size_t start = line.find(opening);
    if (start == std::string::npos) return false;
    start += opening.size();
    size_t end = line.find("</string>", start);
    if (end == std::string::npos) return false;
    value = decodeLibraryEntities(line.substr(start, end - start));
    return true;
}

bool isDictLine(const std::string& line, const char* tag) {
    size_t first = line.find_first_not_of(" \t");
    return first != std::string::npos && line.compare(first, std::strlen(tag), tag) == 0;
}

} // namespace

std::string decodeLibraryEntities(const std::string& text) {
    static const struct {
        const char* entity;
        char character;
    } kEntities[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#38;", '&'}};
    std::string out;
    for (size_t i = 0; i < text.size();) {
        bool decoded = false;
        if (text[i] == '&') {
            for (const auto& row : kEntities) {
                size_t length = std::strlen(row.entity);
                if (text.compare(i, length, row.entity) == 0) {
                    out += row.character;
                    i += length;
                    decoded = true;
                    break;
                }
            }
        }
        if (!decoded) out += text[i++];
    }
    return out;
}

std::vector<PlayerTrack> readPlayerTracks(std::istream& library) {
    std::vector<PlayerTrack> tracks;
    PlayerTrack current;
    std::string line;
    while (tracks.size() < kMaxPlayerTracks && std::getline(library, line)) {
        std::string value;
        if (isDictLine(line, "<dict>")) {
            current = PlayerTrack();
        } else if (isDictLine(line, "</dict>")) {
            if (!current.artist.empty()) tracks.push_back(current);
            current = PlayerTrack();
        } else if (keyValue(line, "Artist", value)) {
            current.artist = value;
        } else if (keyValue(line, "Album", value)) {
            current.album = value;
        }
    }
    return tracks;
}
