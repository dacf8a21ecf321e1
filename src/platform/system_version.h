// The operating-system version query. The plug-in's tables are keyed on the
// binary-coded values of the desktop it was first made for (0x1049 is
// 10.4.9); Linux has no such number, so the query normally fails and the
// callers' "query fails" row applies. STAGEBEACON_SYSTEM_VERSION (for example
// "0x1058") stands in for the query, for tests and for users who want the
// behaviour of another system version.
//
// Threads: any thread; never blocks.
#pragma once

// True with the value in `value` when the stand-in variable holds a number
// (decimal, or hexadecimal with "0x"); false when it is unset or unreadable.
[[nodiscard]] bool querySystemVersion(long* value);
