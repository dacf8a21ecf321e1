#include "library/pref_upgrade.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "library/file_io.h"
#include "library/settings_save.h"

namespace {

constexpr size_t kLineLimit = 1 << 18;
constexpr const char* kNoCustomLocation = "Custom export location not available in OS X 10.5";
constexpr const char* kTenFlags = "%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d";

} // namespace

void UpgradePrefFileFrom2_0to2_1(char* path) {
    std::string converted;
    {
        LineReader reader(path, kLineLimit);
        if (!reader.isOpen()) return;
        std::string_view line;
        for (int number = 1; reader.next(&line); ++number) {
            std::string text(line);
            if (number == 5) {
                int a[10] = {};
                int read = sscanf(text.c_str(), kTenFlags, &a[0], &a[1], &a[2], &a[3], &a[4],
                                  &a[5], &a[6], &a[7], &a[8], &a[9]);
                if (read != 7) {
                    unlink(path);
                    return;
                }
                char flags[256];
                snprintf(flags, sizeof flags, kTenFlags, a[0], a[1], a[2], a[3], 0, a[5], a[6], 1,
                         1, 0);
                text = flags;
            } else if (number == 6) {
                text = kNoCustomLocation;
            }
            converted += text;
            converted += '\n';
        }
    }
    (void)saveSettingsFile(path, converted, kSettingsFileMode);
}
