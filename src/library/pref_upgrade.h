// The converter from the 2.0 preference layout (seven flags on line 5) to
// the 2.1 one. No current flow calls it; it stays for installations that
// still carry a 2.0 file.
//
// Threads: host thread, while nothing else uses the file.
#pragma once

// Rewrites the file at `path`: line 5's seven flags a1..a7 become the ten
// numbers a1 a2 a3 a4 0 a6 a7 1 1 0, and line 6 becomes the text used when
// no custom export location exists. A line 5 with any other count of numbers
// means the file is not a 2.0 file: it is deleted and nothing is written. Run
// it only on a 2.0 file (a current file has eleven flags and is deleted).
void UpgradePrefFileFrom2_0to2_1(char* path);
