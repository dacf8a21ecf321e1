#include "library/startup_tables.h"

namespace {

struct VersionRow {
    long first;
    long last;
    float version;
};
constexpr VersionRow kVersionRows[] = {
    {0, 0x103F, kSystem10_3},
    {0x1040, 0x104F, kSystem10_4},
    {0x1050, 0x105F, kSystem10_5},
    {0x1060, 0x106F, kSystem10_6},
};

struct ExportRow {
    float version;
    const char* folder; // under the home folder; null: `file` is the whole text
    const char* file;
};
constexpr ExportRow kExportRows[] = {
    {kSystem10_3, "/Library/Calendars/", "Stagebeacon.ics"},
    {kSystem10_4, "/Library/Application Support/iCal/Sources/Stagebeacon.calendar/",
     "corestorage.ics"},
    {kSystem10_5, nullptr, "Custom export location not available in OS X 10.5"},
    {kSystem10_6, nullptr, "Custom export location not available in OS X 10.6"},
};

} // namespace

float systemVersionFromQuery(bool known, long value) {
    if (!known) return kSystem10_4;
    for (const VersionRow& row : kVersionRows)
        if (value >= row.first && value <= row.last) return row.version;
    return kSystem10_4;
}

std::string exportLocationFor(float version, const std::string& home) {
    const ExportRow* chosen = &kExportRows[1]; // 10.4 unless another row matches
    for (const ExportRow& row : kExportRows)
        if (row.version == version) chosen = &row;
    return chosen->folder ? home + chosen->folder + chosen->file : std::string(chosen->file);
}
