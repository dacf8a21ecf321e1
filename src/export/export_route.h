// Which way the shows leave for the calendar: from 10.5 on through the
// calendar store (calendar_store.h), below through the calendar file
// (ical_export.h) once its source folder is in place (ical_source.h). The
// engine's concert task and the view's marks call these through the hooks
// the plug-in entry wires.
//
// Threads: exportAfterConcertSearch on the update thread, exportMarkedShows
// on the main thread.
#pragma once

class StagebeaconClass;

// The end of a concert search: the calendar-source files are kept in step
// with the export setting whether or not the export is on (switching it off
// removes them), then the shows go out when the export is on. Without the
// source files the calendar would not see the file, so a search whose files
// fail ends unexported.
void exportAfterConcertSearch(StagebeaconClass* app);

// A mark changed with only the marked shows exported: the calendar store
// from 10.5 on and when the version is not a number, the file below.
void exportMarkedShows(StagebeaconClass& app);
