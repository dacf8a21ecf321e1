// The calendar-source folder of the file export (systems up to 10.4): the
// calendar application only shows the export file's folder when a
// description file ("Info.plist") lies beside it, so the folder is kept
// present exactly while the export is on.
//
// Threads: the update thread (after a concert search) or the main thread (a
// mark changed); not both at once, as the export itself.
#pragma once

class ProtectedData;

// Keeps the folder of the store's export location in step with the export
// setting: made with its description while the export is on, the file, its
// index, the description and the folder removed once it is off. 0, or -1
// when the location holds no "/" or the description cannot be written.
int checkForInitialiCalFiles(ProtectedData& store);
