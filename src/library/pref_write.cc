// Writing the preference file (CalGetData::genPref): it is rebuilt whole from the store and the show
// lists, then swapped in for the old one (see file_io.h: a crash leaves the
// old file or the new one). Saves overlapping from two threads each write a
// whole file; the later one wins.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "library/file_io.h"
#include "library/pref_file.h"
#include "library/settings_save.h"
#include "library/pref_format.h"
#include "model/list_generations.h"
#include "model/stagebeacon_class.h"

namespace {

// One to seven whole days ahead plus a random hour, minute and second. The
// hour draws from 25 values, so 24 can happen; kept, the service's load
// spreading was tuned with it.
int32_t randomVersionCheckTime(time_t now) {
    random_data generator{};
    char generatorState[64] = {};
    initstate_r(static_cast<unsigned>(now), generatorState, sizeof generatorState, &generator);
    int32_t draws[5];
    for (int32_t& draw : draws) random_r(&generator, &draw);
    auto scaled = [](int32_t draw, int range) {
        return static_cast<long>(range * (static_cast<double>(draw) / 2147483648.0));
    };
    long ahead = (1 + scaled(draws[1], 7)) * 86400L + scaled(draws[2], 25) * 3600L +
                 scaled(draws[3], 60) * 60L + scaled(draws[4], 60);
    return static_cast<int32_t>(now + ahead);
}

template <typename... Args> void appendFormat(std::string& text, const char* pattern, Args... args) {
    int size = snprintf(nullptr, 0, pattern, args...);
    if (size <= 0) return;
    size_t at = text.size();
    text.resize(at + static_cast<size_t>(size) + 1);
    snprintf(&text[at], static_cast<size_t>(size) + 1, pattern, args...);
    text.resize(at + static_cast<size_t>(size));
}

const char* orDash(const char* text) { return *text ? text : kPrefEmptyText; }

// A store text, set to "-" first when it is empty (for the city, the state
// and the export location, the longest of which is the last).
std::string storedOrDash(ProtectedData& store, void (ProtectedData::*get)(char*),
                         void (ProtectedData::*set)(const char*)) {
    static_assert(ProtectedData::CurCitySize <= ProtectedData::iCalLocSize &&
                      ProtectedData::CurStateSize <= ProtectedData::iCalLocSize,
                  "buffer fits every text read here");
    char text[ProtectedData::iCalLocSize];
    (store.*get)(text);
    if (!*text) (store.*set)(kPrefEmptyText);
    return orDash(text);
}

void appendNames(std::string& text, FRIENDLIST* names) {
    for (FRIENDNAME* n = names->head; n; n = n->next) {
        text += n->name;
        text += kPrefSeparator;
    }
}

void appendShows(std::string& text, SHOWLIST* list, ShowRecordKind kind) {
    std::lock_guard<std::mutex> guard(list->mutex);
    for (SHOWENTRY* e = list->head; e; e = e->next) {
        bool friendShow = kind == kFriendShowRecord;
        char otherActs[kOtherActsBuffer];
        snprintf(otherActs, sizeof otherActs, "%s", e->otherArtists);
        appendFormat(text, "%d@@%d@@%d@@%d@@%d@@%d@@%s@@%s@@%s@@%s@@%s@@", static_cast<int>(kind),
                     !friendShow && e->attending ? 1 : 0,
                     !friendShow && e->ticketsAvailable ? 1 : 0, static_cast<int>(e->year),
                     static_cast<int>(e->month), static_cast<int>(e->day), e->artist, e->venue,
                     friendShow ? kPrefEmptyText : e->location, e->url,
                     friendShow ? kPrefEmptyText : orDash(otherActs));
        std::lock_guard<std::mutex> tagsGuard(e->tags->mutex);
        appendNames(text, e->tags);
        text += '\n';
    }
}

} // namespace

void writePreferenceFile(StagebeaconClass& app, int32_t* nextRefresh) {
    ProtectedData& store = app.protectedData;
    time_t now = time(nullptr);
    if (*nextRefresh == 0) *nextRefresh = randomVersionCheckTime(now);

    // Empty location texts become "-" in the store too, not only in the file.
    std::string city = storedOrDash(store, &ProtectedData::getCurCity, &ProtectedData::setCurCity);
    std::string state =
        storedOrDash(store, &ProtectedData::getCurState, &ProtectedData::setCurState);
    std::string exportLocation =
        storedOrDash(store, &ProtectedData::getiCalLoc, &ProtectedData::setiCalLoc);

    tm today{};
    localtime_r(&now, &today);
    store.setLastSearch_d(today.tm_mday);
    store.setLastSearch_m(today.tm_mon + 1);
    store.setLastSearch_y(today.tm_year + 1900);

    char libraryPath[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(libraryPath);

    std::string text;
    appendFormat(text, "%s\n%d\n%d@@%d@@%d\n%s@@%s@@%d@@%e@@%e\n", libraryPath,
                 static_cast<int>(*nextRefresh), store.getLastSearch_y(), store.getLastSearch_m(),
                 store.getLastSearch_d(), city.c_str(), state.c_str(), store.getCurSearchRadius(),
                 store.getCurLat(), store.getCurLon());
    for (int i = 0; i < kPrefFlagCount; ++i) {
        text += kPrefFlags[i].get(store) ? '1' : '0';
        text += i + 1 < kPrefFlagCount ? kPrefSeparator : "\n";
    }
    text += exportLocation;
    text += '\n';

    char username[ProtectedData::UsernameSize];
    char firstname[ProtectedData::FirstnameSize];
    char lastname[ProtectedData::LastnameSize];
    store.getUsername(username);
    store.getFirstname(firstname);
    store.getLastname(lastname);
    appendFormat(text, "%s@@%s@@%s@@\n", orDash(username), orDash(firstname), orDash(lastname));

    {
        std::lock_guard<std::mutex> guard(app.friendsList->mutex);
        appendNames(text, app.friendsList);
    }
    text += '\n';

    char filters[ProtectedData::FilterStringSize];
    store.getFilterString(filters);
    text += filters;
    text += '\n';

    appendShows(text, app.concerts.current().get(), kConcertRecord);
    appendShows(text, app.albums.current().get(), kReleaseRecord);
    appendShows(text, app.friendsShows.current().get(), kFriendShowRecord);

    if (store.getForceUpdate() || store.getShutingDown()) return;
    char prefPath[ProtectedData::StagebeaconPrefSize];
    store.getStagebeaconPref(prefPath);
    // A failure is said once; the settings stay in memory and the next save
    // tries again.
    (void)saveSettingsFile(prefPath, text, kSettingsFileMode);
}
