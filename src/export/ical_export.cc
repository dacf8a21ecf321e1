// The calendar file: built whole in memory, then put in place in one step.
//
// The text keeps quirks the calendar application has always been given:
// bare line feeds, no folding, no escaping of the show's texts, two LOCATION
// lines of which the first carries the location in brackets on a physical
// line of its own, and a DESCRIPTION whose line breaks are the two-character
// escape. Every export makes new UIDs, so the application replaces every
// event rather than merging.
#include "export/ical_export.h"

#include <cstdint>
#include <cstdio>
#include <mutex>

#include "library/file_io.h"
#include "model/list_generations.h"
#include "platform/uuid_text.h"
#include "model/stagebeacon_class.h"
#include "net/service_config.h"

namespace {

// A leading "0" only where the number has one digit.
const char* padding(int32_t number) { return (number >= 0 && number < 10) ? "0" : ""; }

// "20090305": the year as it is, then month and day.
void appendDate(std::string& text, const SHOWENTRY& show) {
    char date[40];
    snprintf(date, sizeof date, "%d%s%d%s%d", show.year, padding(show.month), show.month,
             padding(show.day), show.day);
    text += date;
}

void appendEvent(std::string& text, const SHOWENTRY& show, const std::string& clickThrough) {
    text += "BEGIN:VEVENT\n";
    text += "DTSTART;VALUE=DATE:";
    appendDate(text, show);
    text += "\n";
    text += std::string("LOCATION:") + show.venue;
    if (std::string(show.location) != "-") text += std::string("\n(") + show.location + ")";
    text += "\n";
    text += std::string("LOCATION:") + show.venue + "\n";
    text += std::string("SUMMARY:") + show.artist + "\n";
    text += "UID:" + newUuidText() + "\n";
    text += "SEQUENCE:2\n";
    text += "URL;VALUE=URI:" + clickThrough + show.url + "\n";
    if (show.otherArtists[0]) {
        text += std::string("DESCRIPTION:With:\\n") + show.otherArtists + "\\n\\nURL:" +
                clickThrough + "\\n" + show.url + "\n";
    }
    text += "END:VEVENT\n";
}

} // namespace

std::string clickThroughAddress() { return serviceAddress("/clickthrough.php?target="); }

std::string iCalendarText(SHOWLIST& shows, bool allShows, const std::string& clickThrough) {
    std::string text = "BEGIN:VCALENDAR\n";
    for (SHOWENTRY* show = shows.head; show; show = show->next)
        if (show->attending || allShows) appendEvent(text, *show, clickThrough);
    text += "END:VCALENDAR";
    return text;
}

int performExportTo_iCal(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    // Read before the list lock: the store is never taken inside a list's.
    const bool allShows = store.getExportAllShows();
    char location[ProtectedData::iCalLocSize];
    store.getiCalLoc(location);
    const std::string clickThrough = clickThroughAddress();

    std::string text;
    {
        ShowListRef list = app->concerts.current();
        std::lock_guard<SHOWLIST> guard(*list);
        text = iCalendarText(*list, allShows, clickThrough);
    }

    // Nothing is reported: the next export tries again.
    (void)replaceFile(location, text, kSettingsFileMode);
    return 0;
}
