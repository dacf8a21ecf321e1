// What the benchmarks share: timing a whole process (wall time and its peak
// memory), medians, and the one line each goal ends with, so that
// scripts/bench can fail when a goal is missed.
//
// Threads: the main thread of a benchmark program.
#pragma once

#include <string>
#include <vector>

struct ProcessRun {
    double seconds = 0;   // from spawn to exit
    double peakMegabytes = 0; // the child's maximum resident set
    bool ok = false;      // started and exited with status 0
};

// Runs `args` (args[0] looked up on PATH) with standard output to `output`
// (a file, truncated) and `environment` entries ("NAME=value") over ours.
ProcessRun runProcess(const std::vector<std::string>& args,
                      const std::vector<std::string>& environment = {},
                      const char* output = "/dev/null");

double median(std::vector<double> values);

// Prints "goal: <what> ... met/MISSED" and returns whether it was met.
bool reportGoal(const char* what, bool met);
