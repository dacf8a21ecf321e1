// The current user's home folder, the root under which every settings file,
// the default music library and the calendar export live.
//
// Threads: any thread; does not block beyond a password-database lookup.
#pragma once

#include <string>

// $HOME when set and not empty, else the password database's entry for the
// current user; empty when neither knows (callers then build paths from an
// empty prefix, as a missing home folder has always meant).
std::string homeFolder();
