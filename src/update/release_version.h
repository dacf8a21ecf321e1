// This release's own version, 2.9: what the plug-in registers with the
// player, and what it tells the service when asking for a newer release.
//
// Threads: constants; any thread.
#pragma once

constexpr int kVersionMajor = 2;
constexpr int kVersionMinor = 9;
