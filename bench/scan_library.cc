// scan_library PATH: the plug-in's library scan (CalGetData::parseXML) of
// one library export as a process of its own, so that a benchmark can set
// it beside `wc -l` whole process against whole process. Prints the counts.
#include <cstdio>

#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s LIBRARY.xml\n", argv[0]);
        return 2;
    }
    StagebeaconClass app;
    app.protectedData.setiTunes_xml_path(argv[1]);
    if (app.calGetData.parseXML() != 0) {
        fprintf(stderr, "%s: cannot read %s\n", argv[0], argv[1]);
        return 1;
    }
    printf("%u artists, %u albums\n", app.calGetData.xmlArtists.count,
           app.calGetData.xmlAlbums.count);
    return 0;
}
