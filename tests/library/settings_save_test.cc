// Saving settings where the disk says no: a read-only support folder, a full
// or failing disk (through the write seam), an identifier file that cannot
// be read, and the temporary files a crash leaves behind.
#include <gtest/gtest.h>

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include "library/file_io.h"
#include "library/settings_save.h"
#include "library/support_files.h"
#include "platform/headless.h"
#include "platform/main_thread.h"
#include "temp_home.h"

namespace {

// What the user was told: the alerts that reached the main thread.
std::vector<std::string> saidLines() {
    (void)drainMainThreadQueue();
    std::vector<std::string> said;
    for (const std::string& line : headlessLogLines())
        if (line.find("cannot save its settings") != std::string::npos) said.push_back(line);
    return said;
}

// Acts as an unprivileged user for its lifetime: permission checks apply
// even when the suite runs as root.
class Unprivileged {
  public:
    Unprivileged() : before(setfsuid(65534)) {}
    ~Unprivileged() { setfsuid(before); }

  private:
    int before;
};

int countFiles(const std::string& folder) {
    int count = 0;
    if (DIR* dir = opendir(folder.c_str())) {
        while (const dirent* entry = readdir(dir)) count += entry->d_name[0] != '.';
        closedir(dir);
    }
    return count;
}

int failingErrno = 0;
ssize_t failingWrite(int, const void*, size_t) {
    errno = failingErrno;
    return -1;
}

class SettingsSave : public ::testing::Test {
  protected:
    TempHome home;
    std::string folder;
    std::string pref;
    void SetUp() override {
        resetHeadless();
        (void)drainMainThreadQueue();
        folder = home.path() + "/";
        pref = folder + "StagebeaconPref";
        // A save that works re-arms the message whatever ran before.
        ASSERT_TRUE(saveSettingsFile(pref.c_str(), "last good\n", kSettingsFileMode));
        // The unprivileged user must reach the folder.
        chmod(home.path().c_str(), 0755);
    }
    void TearDown() override {
        fileWriteCall = ::write;
        chmod(home.path().c_str(), 0755);
        ASSERT_TRUE(saveSettingsFile(pref.c_str(), "reset\n", kSettingsFileMode)); // re-arms
        resetHeadless();
    }
};

// Each way a save can fail: said once with the folder and the reason, the
// old file untouched and no temporary file left; a later save that works
// re-arms the message.
TEST_F(SettingsSave, FailureIsSaidOnceKeepsTheOldFileAndRetries) {
    struct Case {
        const char* name;
        int reason;
        bool readOnlyFolder;
    };
    for (const Case& c : {Case{"read-only folder", EACCES, true}, Case{"disk full", ENOSPC, false},
                          Case{"disk failing", EIO, false}}) {
        SCOPED_TRACE(c.name);
        resetHeadless();
        {
            std::unique_ptr<Unprivileged> user;
            if (c.readOnlyFolder) {
                chmod(home.path().c_str(), 0555);
                user = std::make_unique<Unprivileged>();
            } else {
                failingErrno = c.reason;
                fileWriteCall = failingWrite;
            }
            EXPECT_FALSE(saveSettingsFile(pref.c_str(), "new\n", kSettingsFileMode));
            EXPECT_FALSE(saveSettingsFile(pref.c_str(), "newer\n", kSettingsFileMode));
        }
        fileWriteCall = ::write;
        chmod(home.path().c_str(), 0755);
        std::vector<std::string> said = saidLines();
        ASSERT_EQ(said.size(), 1u) << "said once, not at every save";
        EXPECT_NE(said[0].find(cannotSaveText(folder, c.reason)), std::string::npos) << said[0];
        EXPECT_EQ(readText(pref), "last good\n");
        EXPECT_EQ(countFiles(folder), 1) << "no temporary file left";

        ASSERT_TRUE(saveSettingsFile(pref.c_str(), "saved\n", kSettingsFileMode));
        EXPECT_EQ(readText(pref), "saved\n");
        writeText(pref, "last good\n");
    }
}

TEST_F(SettingsSave, UnreadableIdentifierIsNeverReplaced) {
    std::string id = readOrCreateInstallationId(folder);
    std::string sbn = folder + kIdentifierFileName;
    std::string before = readText(sbn);
    chmod(sbn.c_str(), 0);
    std::string other;
    {
        Unprivileged user;
        other = readOrCreateInstallationId(folder);
    }
    EXPECT_NE(other, id) << "this run works from memory";
    chmod(sbn.c_str(), 0600);
    EXPECT_EQ(readText(sbn), before);
    EXPECT_EQ(readOrCreateInstallationId(folder), id);
}

TEST_F(SettingsSave, StaleTemporaryFilesOfOursAreRemoved) {
    const char* ours[] = {"StagebeaconPref.a1B2c3", "sbn.ZZZZZZ", "pd.000000",
                          "StagebeaconIncludeBands.txt.Xy12ab"};
    const char* kept[] = {"StagebeaconPref", "StagebeaconPref.a1B2c", "StagebeaconPref.a1B2c3d",
                          "StagebeaconPref.a1-2c3", "notes.a1B2c3"};
    for (const char* name : ours) writeText(folder + name, "half");
    for (const char* name : kept) writeText(folder + name, "mine");
    EXPECT_EQ(removeStaleTemporaryFiles(folder), 4);
    for (const char* name : ours) EXPECT_FALSE(exists(folder + name)) << name;
    for (const char* name : kept) EXPECT_TRUE(exists(folder + name)) << name;
}

} // namespace
