// The calendar's date arithmetic and month names. The grid walks its 35
// cells with these, so their limits are the grid's: a weekday rule that is
// right from March 2000 to December 2099 and a leap year for every year
// divisible by four. Both limits are kept on purpose; dates outside that
// range are never on screen.
//
// Threads: any; no state.
#pragma once

// Month names, indexed by month - 1.
extern const char* const monthStrings[12];
extern const char* const monthAbrevStrings[12];

// 0 = Sunday ... 6 = Saturday. January and February 2000 come out one day
// off (1 January 2000 gives Sunday); kept, as the grid walks from the 1st.
int getDayOfTheWeek(int day, int month, int year);

// Step a date one day forwards or backwards in place.
void incrementDay(int* day, int* month, int* year);
void decrementDay(int* day, int* month, int* year);
