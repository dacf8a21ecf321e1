// Choosing what to notify on a track change, and issuing it.
//
// The store remembers the last artist and album title notified, so every
// track of one artist, or of one album's artist, notifies only once; they
// are replaced only by a different one. The entries are copied out under
// their list's lock and the lock is let go before anything is shown.
#include "export/notify.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <mutex>

#include "export/applescript.h"
#include "export/growl_notify.h"
#include "export/notify_gui.h"
#include "model/artist_key.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "model/dates.h"

namespace {

constexpr size_t kTextSize = 1024;

// What a notification needs of an entry.
struct ShowFacts {
    char artist[256];
    char venue[256];
    char location[256];
    char url[256];
    int day, month, year;
};

void copyFacts(SHOWLIST& list, const SHOWENTRY& entry, ShowFacts* facts) {
    std::lock_guard<std::mutex> guard(list.mutex);
    memcpy(facts->artist, entry.artist, sizeof facts->artist);
    memcpy(facts->venue, entry.venue, sizeof facts->venue);
    memcpy(facts->location, entry.location, sizeof facts->location);
    memcpy(facts->url, entry.url, sizeof facts->url);
    facts->day = entry.day;
    facts->month = entry.month;
    facts->year = entry.year;
}

// "Mar 7, 2009".
void formatDate(const ShowFacts& facts, char* date) {
    const char* month =
        facts.month >= 1 && facts.month <= 12 ? monthAbrevStrings[facts.month - 1] : "";
    snprintf(date, kTextSize, "%s %d, %d", month, facts.day, facts.year);
    date[kTextSize - 1] = '\0';
}

struct Notice {
    int kind;
    const char* name; // the notification name and title
    const char* icon;
    const char* labels[3];
    const char* values[3];
    const char* url;
};

void issue(ProtectedData& store, const Notice& n) {
    if (store.getNotificationWindowStyle()) {
        char script[kGrowlScriptSize];
        buildGrowlNotifyScript(script, n.name, n.labels[0], n.values[0], n.labels[1], n.values[1],
                               n.labels[2], n.values[2], n.icon);
        // A notification that cannot be shown is simply not seen.
        (void)SimpleRunAppleScript(script);
        return;
    }
    dropNotifyWindow(n.kind);
    if (n.kind == kNotifyRelease)
        (void)OpenNotifyGUI(&hNotifyAlbumWindow, &theTimerAlbumWindow, &mainLoopAlbumWindow,
                            &timerUPPAlbumWindow, n.kind, n.labels[0], n.labels[1], n.labels[2],
                            n.values[0], n.values[1], n.values[2], n.url);
    else
        (void)OpenNotifyGUI(&hNotifyConcertWindow, &theTimerConcertWindow, &mainLoopConcertWindow,
                            &timerUPPConcertWindow, n.kind, n.labels[0], n.labels[1], n.labels[2],
                            n.values[0], n.values[1], n.values[2], n.url);
}

void notifyConcert(ProtectedData& store, const char* artist, const ShowFacts& show) {
    char last[ProtectedData::LastArtistNotifiedSize];
    store.getLastArtistNotified(last);
    if (strcmp(last, artist) == 0) return;
    store.setLastArtistNotified(artist);

    char date[kTextSize], venue[kTextSize];
    formatDate(show, date);
    snprintf(venue, kTextSize, "%s (%s)", show.venue, show.location);
    venue[kTextSize - 1] = '\0';
    issue(store, Notice{kNotifyConcert,
                        "Upcoming Concert",
                        "Stagebeacon_icon_blue.png",
                        {"Artist:", "Venue:", "Date:"},
                        {show.artist, venue, date},
                        show.url});
}

void notifyRelease(StagebeaconClass* app, const ShowFacts& release) {
    ProtectedData& store = app->protectedData;
    // A release's album title is kept in the entry's venue field.
    char last[ProtectedData::LastAlbumNotifiedSize];
    store.getLastAlbumNotified(last);
    if (strcmp(last, release.venue) == 0) return;
    store.setLastAlbumNotified(release.venue);

    char key[kArtistKeySize];
    snprintf(key, sizeof key, "%s", release.venue);
    cleanArtist(key);
    // Already in the library: not news to the user.
    if (app->calGetData.xmlAlbums.contains(key)) return;

    char date[kTextSize], album[kTextSize];
    formatDate(release, date);
    snprintf(album, kTextSize, "%s", release.venue);
    album[kTextSize - 1] = '\0';
    issue(store, Notice{kNotifyRelease,
                        "Upcoming Album Release",
                        "Stagebeacon_icon_purple.png",
                        {"Artist:", "Album:", "Date:"},
                        {release.artist, album, date},
                        release.url});
}

} // namespace

void notifyUserOfUpcomingShow(StagebeaconClass* app, char* artist, char* album) {
    (void)album;
    if (!app || !artist) return;
    ProtectedData& store = app->protectedData;

    // The lists are held for the whole call, so the entries found stay put.
    ShowListRef concerts, releases;
    SHOWENTRY* concert = nullptr;
    SHOWENTRY* release = nullptr;
    if (store.getNotifyConcerts()) {
        concerts = app->concerts.current();
        concert = concerts->findShow(artist);
    }
    if (store.getNotifyAlbums()) {
        releases = app->albums.current();
        release = releases->findAlbum(artist, &store);
    }

    if (concert) {
        ShowFacts facts;
        copyFacts(*concerts, *concert, &facts);
        notifyConcert(store, artist, facts);
    }
    if (release) {
        ShowFacts facts;
        copyFacts(*releases, *release, &facts);
        notifyRelease(app, facts);
    }
}

void zeroRecentlyAddedFlags(StagebeaconClass* app) {
    ShowListRef concerts = app->concerts.current();
    std::lock_guard<std::mutex> guard(concerts->mutex);
    for (SHOWENTRY* entry = concerts->head; entry; entry = entry->next)
        entry->recentlyAdded = false;
}

int snooze(StagebeaconClass* app, unsigned seconds) {
    sleep(seconds);
    if (app->protectedData.getShutingDown()) return -1;
    if (app->protectedData.getForceUpdate()) return 0;
    return 1;
}
