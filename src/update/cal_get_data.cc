#include "update/cal_get_data.h"

#include "library/parse_xml.h"
#include "library/pref_file.h"
#include "model/stagebeacon_class.h"

CalGetData::CalGetData(StagebeaconClass* app) : app(app) {
    app->protectedData.setForceUpdate(false);
    app->protectedData.setShutingDown(false);
}

void CalGetData::genPref() { writePreferenceFile(*app, &nextRefresh); }

int CalGetData::loadPrefs() { return readPreferenceFile(*app, &nextRefresh, &locateByIP); }

bool CalGetData::fileExists(const char* path) { return preferenceFileExists(path); }

int CalGetData::parseXML() { return parseXML(nullptr); }

int CalGetData::parseXML(const std::function<bool()>& stopRequested) {
    return scanLibraryFile(app->protectedData, libraryRecords, xmlArtists, xmlAlbums, stopRequested);
}
