// LibraryReader: the same lines as LineReader when asked for all of them;
// with keyLinesOnly, every line that holds a key text, in order, wherever it
// falls in the pieces read.
#include "library/library_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "temp_home.h"

namespace {

std::vector<std::string> read(const std::string& path, bool keyLinesOnly) {
    LibraryReader reader(path.c_str());
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.next(&line, keyLinesOnly)) lines.emplace_back(line);
    return lines;
}

TEST(LibraryReader, AllLinesAsTheLineReaderGivesThem) {
    TempHome home;
    std::string path = home.path() + "/lib.xml";
    writeText(path, "a\r\n\nb\rc\n<dict>\nlast");
    EXPECT_EQ(read(path, false), (std::vector<std::string>{"a", "", "b\rc", "<dict>", "last"}));
    EXPECT_EQ(read(path, true), (std::vector<std::string>{"<dict>"}));
    writeText(path, "");
    EXPECT_TRUE(read(path, false).empty());
    EXPECT_TRUE(read(home.path() + "/none", true).empty());
}

TEST(LibraryReader, KeyLinesAcrossPiecesAndOverlongLines) {
    TempHome home;
    std::string path = home.path() + "/lib.xml";
    std::string filler = "\t\t\t<key>Size</key><integer>123</integer>\n"; // never a key line
    std::string text;
    std::vector<std::string> expected;
    // Key lines at many distances, so some straddle the reader's pieces.
    for (int i = 0; text.size() < 3 * LibraryReader::kMaxLine; ++i) {
        for (int f = 0; f < i % 97; ++f) text += filler;
        std::string key = i % 2 ? "\t\t<dict>" : "\t\t\t<key>Artist</key><string>A" +
                                                    std::to_string(i) + "</string>";
        text += key + (i % 3 ? "\n" : "\r\n");
        expected.push_back(key);
    }
    std::string overlong(LibraryReader::kMaxLine + 10, 'x');
    text += overlong + "<dict>\n";                 // cut: its key text lies past the cut
    text += "<dict>" + overlong + "\n";            // cut: its key text is kept
    text += "</array>";                            // last line, no line feed
    expected.push_back("<dict>" + overlong.substr(0, LibraryReader::kMaxLine - 6));
    expected.push_back("</array>");
    writeText(path, text);

    std::vector<std::string> keyLines = read(path, true);
    ASSERT_EQ(keyLines.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(keyLines[i], expected[i]) << i;

    std::vector<std::string> all = read(path, false);
    EXPECT_EQ(all[all.size() - 3], overlong.substr(0, LibraryReader::kMaxLine));
    EXPECT_EQ(all.back(), "</array>");
}

} // namespace
