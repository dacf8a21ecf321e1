// The view's colours: three per tab, and the fixed ones.
//
// Threads: constants; any thread.
#pragma once

#include "platform/canvas.h"
#include "view/tab_lists.h"

struct TabColors {
    Color grid;   // grid strokes and day strips
    Color entry;  // list entries and the detail panel
    Color accent; // progress bar and today's strip
};

// By CalTab.
inline const TabColors kTabColors[3] = {
    {rgb255(158, 202, 228), rgb255(220, 240, 255), rgb255(128, 172, 198)}, // My Shows
    {rgb255(219, 245, 179), rgb255(239, 255, 210), rgb255(180, 221, 104)}, // Friend Shows
    {rgb255(209, 194, 240), rgb255(239, 224, 255), rgb255(160, 122, 237)}, // CD Releases
};

namespace palette {
constexpr Color black = rgb255(0, 0, 0);
constexpr Color white = rgb255(255, 255, 255);
constexpr Color outline = rgb255(192, 192, 192);
constexpr Color secondaryText = rgb255(150, 150, 150);
constexpr Color disabledArrow = rgb255(200, 200, 200);
constexpr Color outOfMonth = rgb255(222, 222, 222);
constexpr Color inactiveTab = rgb255(238, 238, 238);
constexpr Color link = rgb255(96, 96, 96);
constexpr Color frame = rgb255(64, 64, 64);
constexpr Color attending = rgb255(0, 0, 80);
constexpr Color warning = rgb255(255, 0, 0);
constexpr Color appLink = rgb255(250, 20, 20);
constexpr Color thumb = rgb255(169, 183, 200);
constexpr Color todayBody = rgb255(255, 225, 225);
} // namespace palette
