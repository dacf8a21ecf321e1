// The preference file read and written whole: the store's settings, the
// friends list and the three show lists, in the line format of
// pref_format.h. The engine's loadPrefs and genPref (update/cal_get_data.h)
// call these with the engine's own fields.
//
// Threads: readPreferenceFile on the host thread at start-up, before any
// update thread; writePreferenceFile from any thread (saves that overlap
// each write a whole file, the later one wins).
#pragma once

#include <cstdint>

class StagebeaconClass;

// True when `path` opens for reading and its first line is not empty.
bool preferenceFileExists(const char* path);

// Reads the file named by the store into the store and the lists: 0 when
// there is no usable file (the default format filters are then installed),
// -1 after a file was read to its end. Sets *locateByIP to false when a file
// was read, and *nextRefresh from its second line.
int readPreferenceFile(StagebeaconClass& app, int32_t* nextRefresh, bool* locateByIP);

// Writes the file from the store and the show lists, first drawing a
// *nextRefresh when none is set. Nothing is written while the store asks an
// update to stop or the plug-in is unloading; a failed write is not reported
// (the next save tries again).
void writePreferenceFile(StagebeaconClass& app, int32_t* nextRefresh);
