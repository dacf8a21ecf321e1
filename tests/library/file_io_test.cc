#include "library/file_io.h"

#include <dirent.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "temp_home.h"

namespace {

std::vector<std::string> linesOf(const std::string& path, size_t maxLine,
                                 std::vector<bool>* cut = nullptr) {
    LineReader reader(path.c_str(), maxLine);
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.next(&line)) {
        lines.emplace_back(line);
        if (cut) cut->push_back(reader.truncated());
    }
    return lines;
}

int entriesIn(const std::string& folder) {
    int n = 0;
    if (DIR* dir = opendir(folder.c_str())) {
        while (dirent* e = readdir(dir))
            if (e->d_name[0] != '.') ++n;
        closedir(dir);
    }
    return n;
}

TEST(LineReader, LineEndsOfEveryKind) {
    TempHome home;
    std::string path = home.path() + "/f";
    writeText(path, "one\r\ntwo\n\nthree\rstill three\nlast");
    EXPECT_EQ(linesOf(path, 100),
              (std::vector<std::string>{"one", "two", "", "three\rstill three", "last"}));
    writeText(path, "");
    EXPECT_TRUE(linesOf(path, 100).empty());
    writeText(path, "\n");
    EXPECT_EQ(linesOf(path, 100), std::vector<std::string>{""});
}

TEST(LineReader, LongLinesAreCutWithoutLosingTheNextLine) {
    TempHome home;
    std::string path = home.path() + "/f";
    std::string huge(10000, 'x');
    std::string spanning(200000, 'y'); // longer than the read buffer
    writeText(path, huge + "\nnext\n" + spanning + "\r\nafter\n12345");
    std::vector<bool> cut;
    std::vector<std::string> lines = linesOf(path, 5, &cut);
    EXPECT_EQ(lines, (std::vector<std::string>{"xxxxx", "next", "yyyyy", "after", "12345"}));
    EXPECT_EQ(cut, (std::vector<bool>{true, false, true, false, false}));

    std::vector<std::string> whole = linesOf(path, LineReader::kDefaultMaxLine);
    ASSERT_EQ(whole.size(), 5u);
    EXPECT_EQ(whole[0], huge);
    EXPECT_EQ(whole[2], spanning);
}

TEST(LineReader, CarriageReturnSplitAcrossReads) {
    TempHome home;
    std::string path = home.path() + "/f";
    std::string first(65535, 'a'); // the "\r" ends the first read buffer
    writeText(path, first + "\r\nb\n");
    std::vector<std::string> lines = linesOf(path, LineReader::kDefaultMaxLine);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], first);
    EXPECT_EQ(lines[1], "b");
}

TEST(LineReader, MissingFileReadsNothing) {
    LineReader reader("/nonexistent/stagebeacon/file");
    std::string_view line;
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.next(&line));
}

TEST(ReplaceFile, WritesWholeWithTheRequestedMode) {
    TempHome home;
    std::string path = home.path() + "/secret";
    ASSERT_TRUE(replaceFile(path.c_str(), std::string("abc"), kSecretFileMode));
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    ASSERT_TRUE(replaceFile(path.c_str(), std::string("replaced"), kSettingsFileMode));
    EXPECT_EQ(readText(path), "replaced");
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
    EXPECT_EQ(entriesIn(home.path()), 1) << "no temporary file may stay behind";
}

TEST(ReplaceFile, MissingFolderFailsAndLeavesNothing) {
    TempHome home;
    std::string path = home.path() + "/absent/file";
    EXPECT_FALSE(replaceFile(path.c_str(), std::string("x"), kSettingsFileMode));
    EXPECT_EQ(entriesIn(home.path()), 0);
}

TEST(ReadFilePrefix, ReadsAtMostTheLimit) {
    TempHome home;
    std::string path = home.path() + "/f";
    writeText(path, std::string("ab\0cd", 5));
    std::string bytes;
    ASSERT_TRUE(readFilePrefix(path.c_str(), 4, &bytes));
    EXPECT_EQ(bytes, std::string("ab\0c", 4));
    ASSERT_TRUE(readFilePrefix(path.c_str(), 64, &bytes));
    EXPECT_EQ(bytes.size(), 5u);
    EXPECT_FALSE(readFilePrefix((home.path() + "/none").c_str(), 4, &bytes));
}

TEST(MakeFolders, CreatesMissingParents) {
    TempHome home;
    std::string folder = home.path() + "/a/b c/d/";
    EXPECT_TRUE(makeFolders(folder));
    EXPECT_TRUE(canOpenForReading(folder.c_str()));
    EXPECT_TRUE(makeFolders(folder));
    writeText(home.path() + "/file", "x");
    EXPECT_FALSE(makeFolders(home.path() + "/file"));
}

} // namespace
