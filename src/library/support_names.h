// The names of the support folder and of the files Stagebeacon keeps in it,
// apart from the code that reads them so that the save path (settings_save)
// and the identifier files (support_files) can both name them.
//
// Threads: any (constants only).
#pragma once

#include <cstddef>

// Appended to the home folder to give the support folder.
constexpr const char* kSupportFolderSuffix = "/Library/Application Support/Stagebeacon/";
constexpr const char* kPrefFileName = "StagebeaconPref";
constexpr const char* kIncludeBandsFileName = "StagebeaconIncludeBands.txt";
constexpr const char* kExcludeBandsFileName = "StagebeaconExcludeBands.txt";
constexpr const char* kIdentifierFileName = "sbn";
constexpr const char* kPasswordFileName = "pd";
constexpr size_t kIdentifierFileSize = 39;
constexpr size_t kPasswordFileSize = 64;
