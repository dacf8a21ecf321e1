// Reading the preference file back (CalGetData::loadPrefs). Each line is
// applied as soon as it is read, so a file cut short keeps what it holds and
// the rest keeps its start-up value. Nothing read here can overflow: every
// text goes through the bounded copies of the store and the records, and a
// line longer than the reader's limit is cut (file_io.h).
#include <cstdio>
#include <cstring>
#include <string>

#include "library/file_io.h"
#include "library/pref_file.h"
#include "library/pref_fields.h"
#include "library/pref_format.h"
#include "model/fixed_text.h"
#include "model/list_generations.h"
#include "model/stagebeacon_class.h"

namespace {

// Longest preference line worth keeping: far above any line the writer makes
// (a few hundred friends or a record with its attendees).
constexpr size_t kPrefLineLimit = 1 << 18;

std::string textOf(std::string_view field) { return std::string(field); }

std::string dashAsEmpty(std::string_view field) {
    return field == kPrefEmptyText ? std::string() : std::string(field);
}

void readDate(ProtectedData& store, std::string_view line) {
    std::string text(line);
    int year = 0, month = 0, day = 0;
    int read = sscanf(text.c_str(), "%d@@%d@@%d", &year, &month, &day);
    if (read >= 2) store.setLastSearch_m(month);
    if (read >= 3) store.setLastSearch_d(day);
    store.setLastSearch_y(read < 3 ? 1 : year);
}

// Fields missing for want of a separator leave their settings unchanged.
void readLocation(ProtectedData& store, std::string_view line) {
    std::string_view rest;
    std::vector<std::string_view> fields = separatedFields(line, &rest);
    if (fields.size() >= 1) {
        std::string city = dashAsEmpty(fields[0]);
        store.setCurCity(city.c_str());
        store.setCurCityDisplay(city.c_str());
    }
    if (fields.size() >= 2) {
        std::string state = dashAsEmpty(fields[1]);
        store.setCurState(state.c_str());
        store.setCurStateDisplay(state.c_str());
    }
    if (fields.size() >= 3) {
        store.setCurSearchRadiusDisplay(textOf(fields[2]).c_str());
        int radius = 0;
        if (readInt(fields[2], &radius)) store.setCurSearchRadius(radius);

        // Everything after the third separator. The coordinates are read in
        // single precision, so they come back slightly off; the next search
        // resolves them again from city and state.
        size_t afterThird = fields[0].size() + fields[1].size() + fields[2].size() + 6;
        std::string coordinates(line.substr(afterThird));
        float latitude = 0.0f, longitude = 0.0f;
        int read = sscanf(coordinates.c_str(), "%e@@%e", &latitude, &longitude);
        if (read >= 1) store.setCurLat(latitude);
        if (read >= 2) store.setCurLon(longitude);
    }
}

void readFlags(ProtectedData& store, std::string_view line) {
    std::string text(line);
    int v[kPrefFlagCount + 1] = {};
    int read = sscanf(text.c_str(), "%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d@@%d", &v[0], &v[1],
                      &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8], &v[9], &v[10]);
    for (int i = 0; i < kPrefFlagCount; ++i)
        kPrefFlags[i].set(store, read == kPrefFlagCount && v[i] != 0);
}

void readAccount(ProtectedData& store, std::string_view line) {
    std::string_view rest;
    std::vector<std::string_view> fields = separatedFields(line, &rest);
    if (!rest.empty()) fields.push_back(rest); // a line without its last separator
    if (fields.size() > 0) store.setUsername(dashAsEmpty(fields[0]).c_str());
    if (fields.size() > 1) store.setFirstname(dashAsEmpty(fields[1]).c_str());
    if (fields.size() > 2) store.setLastname(dashAsEmpty(fields[2]).c_str());
}

// Hands each "@@"-ended name to `take`, stopping at the first name too long
// to be one (the names before it are kept).
template <typename Take> void readNames(std::string_view line, Take take) {
    for (std::string_view name : separatedFields(line, nullptr)) {
        if (name.size() > kPrefNameLimit) return;
        take(std::string(name));
    }
}

void addShowRecord(StagebeaconClass& app, std::string_view line) {
    std::vector<std::string_view> f = separatedFields(line, nullptr);
    if (f.size() < static_cast<size_t>(kShowRecordFields)) return;
    int kind = 0, year = 0, month = 0, day = 0;
    if (!readInt(f[0], &kind) || !readInt(f[3], &year) || !readInt(f[4], &month) ||
        !readInt(f[5], &day))
        return;
    if (kind != kConcertRecord && kind != kReleaseRecord && kind != kFriendShowRecord) return;

    SHOWENTRY* entry = new SHOWENTRY;
    entry->attending = f[1] == "1";
    entry->ticketsAvailable = f[2] == "1";
    entry->year = year;
    entry->month = month;
    entry->day = day;
    copyText(entry->artist, textOf(f[6]).c_str());
    copyText(entry->venue, textOf(f[7]).c_str());
    copyText(entry->location, textOf(f[8]).c_str());
    copyText(entry->url, textOf(f[9]).c_str());
    if (f[10] != kPrefEmptyText) copyText(entry->otherArtists, textOf(f[10]).c_str());
    for (size_t i = kShowRecordFields; i < f.size(); ++i) {
        FRIENDNAME* name = new FRIENDNAME(textOf(f[i]).c_str());
        if (!entry->tags->add(name)) delete name;
    }

    // Releases are filed against the concerts' previous generation: that is
    // the companion list the concert update keeps.
    bool added = false;
    if (kind == kConcertRecord)
        added = app.concerts.current()->addShow(entry, app.concerts.previous().get());
    else if (kind == kReleaseRecord)
        added = app.albums.current()->addShow(entry, app.concerts.previous().get());
    else
        added = app.friendsShows.current()->addShow(entry, app.friendsShows.previous().get());
    if (!added) delete entry;
}

} // namespace

bool preferenceFileExists(const char* path) {
    LineReader reader(path, 1);
    std::string_view first;
    return reader.next(&first) && !first.empty();
}

int readPreferenceFile(StagebeaconClass& app, int32_t* nextRefresh, bool* locateByIP) {
    ProtectedData& store = app.protectedData;
    char path[ProtectedData::StagebeaconPrefSize];
    store.getStagebeaconPref(path);
    if (!preferenceFileExists(path)) {
        for (const char* filter : kDefaultFormatFilters) store.addFormatFilter(filter);
        return 0;
    }
    *locateByIP = false;

    LineReader reader(path, kPrefLineLimit);
    std::string_view line;
    for (int number = 1; reader.next(&line); ++number) {
        switch (number) {
        case 1:
            store.setiTunes_xml_path(textOf(line).c_str());
            break;
        case 2: {
            int when = 0;
            *nextRefresh = readInt(line, &when) ? when : 1;
            break;
        }
        case 3:
            readDate(store, line);
            break;
        case 4:
            readLocation(store, line);
            break;
        case 5:
            readFlags(store, line);
            break;
        case 6:
            if (store.getOSXVersion() < kCalendarStoreVersion)
                store.setiCalLoc(textOf(line).c_str());
            break;
        case 7:
            readAccount(store, line);
            break;
        case 8:
            readNames(line, [&app](const std::string& name) {
                FRIENDNAME* record = new FRIENDNAME(name.c_str());
                if (!app.friendsList->add(record)) delete record;
            });
            break;
        case 9:
            readNames(line, [&store](const std::string& name) {
                store.addFormatFilter(name.c_str());
            });
            break;
        default:
            addShowRecord(app, line);
            break;
        }
    }
    return -1;
}
