// The `feeds` command line: add, list, remove and refresh feeds in the
// database a serving process reads (it picks up changes on its next look).
//
// Thread contract: the main thread of the command-line process.
#pragma once

#include "storage.h"

#include <string>
#include <vector>

namespace service {

struct FeedCommand {
    std::string verb;                // add, list, remove, refresh
    std::vector<std::string> words;  // URL or ID
    std::string site, every, format, workers;
};

// Runs the command, printing to standard output (errors to standard
// error); returns the process exit status: 0 done, 1 failed, 2 misused.
int runFeedCommand(Storage& storage, const FeedCommand& command);

} // namespace service
