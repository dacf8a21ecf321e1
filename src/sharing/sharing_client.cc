// The sharing requests. Each one formats its query, turns blanks into "+",
// and fetches under the internet lock, reading the reply for "Error" before
// the lock goes (the next download replaces the page).
#include "sharing/sharing_client.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "model/show_list.h"
#include "platform/main_thread.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/service_config.h"

namespace {

constexpr const char* kSharingPage = "/sharing/sharing.php?TODO=";

enum class Reply { Accepted, Refused, Failed };

// Fetches `url` under the internet lock and reads the reply for "Error".
Reply sendRequest(StagebeaconClass* app, const std::string& url) {
    CalGetData& engine = app->calGetData;
    std::lock_guard<std::mutex> internet(engine.internetMutex);
    if (engine.fetchPage(url) != 0) return Reply::Failed;
    std::string_view page(engine.fetchBuffer.get(), engine.fetchBuffer.size());
    return page.find("Error") != std::string_view::npos ? Reply::Refused : Reply::Accepted;
}

int registrationAnswer(Reply reply) {
    switch (reply) {
    case Reply::Accepted:
        return kSharingAccepted;
    case Reply::Refused:
        return kSharingRefused;
    case Reply::Failed:
        break;
    }
    return kSharingOffline;
}

// What a show request sends, copied out of the entry so that no list lock
// is held during the download.
struct SharedShow {
    int year, month, day;
    bool tickets;
    std::string artist, venue, location, url, otherArtists;

    explicit SharedShow(const SHOWENTRY& show)
        : year(show.year), month(show.month), day(show.day), tickets(show.ticketsAvailable),
          artist(show.artist), venue(show.venue), location(show.location), url(show.url),
          otherArtists(show.otherArtists) {}
};

std::string showRequest(const char* verb, const std::string& user, const std::string& uuid,
                        const SharedShow& show) {
    return sharingAddress(
        std::string(kSharingPage) + verb + "&USERNAME=" + user + "&UUID=" + uuid +
        "&YEAR=" + std::to_string(show.year) + "&MONTH=" + std::to_string(show.month) +
        "&DAY=" + std::to_string(show.day) + "&TICKETSAVAILABLE=" + (show.tickets ? "1" : "0") +
        "&ARTIST=" + show.artist + "&VENUE=" + show.venue + "&LOCATION=" + show.location +
        "&URL=" + show.url + "&OTHERARTISTS=" + show.otherArtists);
}

struct Account {
    std::string user, uuid;
    explicit Account(ProtectedData& store) {
        char text[std::max(ProtectedData::UUIDSize, ProtectedData::UsernameSize)];
        store.getUsername(text);
        user = text;
        store.getUUID(text);
        uuid = text;
    }
};

int singleShow(StagebeaconClass* app, const char* verb, const SHOWENTRY* show) {
    ProtectedData& store = app->protectedData;
    store.setUpdatingShared(true);
    store.setUpdatingProgress(0);
    Account account(store);
    bool stored = sendRequest(app, showRequest(verb, account.user, account.uuid,
                                               SharedShow(*show))) == Reply::Accepted;
    if (stored) store.incUpdatingProgress(100);
    store.setUpdatingShared(false);
    return stored ? 1 : 0;
}

// The list's shows, each with whether it is to be sent, read under the
// list's lock: the main thread marks shows while the upload runs. Shows not
// sent are kept as empty slots: they still count towards the progress.
std::vector<std::unique_ptr<SharedShow>> showsToShare(StagebeaconClass* app, bool everyShow) {
    std::vector<std::unique_ptr<SharedShow>> shows;
    ShowListRef list = app->concerts.current();
    std::lock_guard<std::mutex> guard(list->mutex);
    shows.reserve(list->count);
    for (SHOWENTRY* show = list->head; show; show = show->next)
        shows.push_back(everyShow || show->attending ? std::make_unique<SharedShow>(*show)
                                                     : nullptr);
    return shows;
}

} // namespace

std::string sharingAddress(const std::string& pathAndQuery) {
    std::string url = serviceAddress(pathAndQuery.c_str());
    std::replace(url.begin(), url.end(), ' ', '+');
    return url;
}

int checkIfUserExists(StagebeaconClass* app, const char* name) {
    return registrationAnswer(sendRequest(
        app, sharingAddress(std::string(kSharingPage) + "USER_EXISTS&USERNAME=" + name)));
}

int initializeSharing(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    Account account(store);
    char city[ProtectedData::CurCitySize], state[ProtectedData::CurStateSize];
    char first[ProtectedData::FirstnameSize], last[ProtectedData::LastnameSize];
    store.getCurCity(city);
    store.getCurState(state);
    store.getFirstname(first);
    store.getLastname(last);
    std::string query = std::string(kSharingPage) + "INITIALIZE_USER&USERNAME=" + account.user +
                        "&UUID=" + account.uuid + "&CITY=" + city + "&STATE=" + state +
                        "&FIRSTNAME=" + first + "&LASTNAME=" + last;
    return registrationAnswer(sendRequest(app, sharingAddress(query)));
}

int addSingleSharedShow(StagebeaconClass* app, const SHOWENTRY* show) {
    return singleShow(app, "ADD_SHOW", show);
}

int deleteSingleSharedShow(StagebeaconClass* app, const SHOWENTRY* show) {
    return singleShow(app, "DELETE_SHOW", show);
}

int addSharedShows(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    store.setUpdatingShared(true);
    store.setUpdatingProgress(0);
    Account account(store);

    std::vector<std::unique_ptr<SharedShow>> shows = showsToShare(app, store.getShareAllShows());
    double step = shows.empty() ? 0.0 : 100.0 / static_cast<double>(shows.size());
    for (const std::unique_ptr<SharedShow>& show : shows) {
        if (app->calGetData.stopRequested()) return 1;
        if (show && sendRequest(app, showRequest("ADD_SHOW", account.user, account.uuid, *show)) !=
                        Reply::Accepted) {
            store.setUpdatingShared(false);
            return 0;
        }
        store.incUpdatingProgress(step);
    }
    store.setUpdatingShared(false);
    return 1;
}

int shareUserCalendar(StagebeaconClass* app) {
    if (!app->protectedData.getSharing()) return 0;
    switch (initializeSharing(app)) {
    case kSharingAccepted:
        (void)addSharedShows(app);
        break;
    case kSharingRefused:
        postAlert({"Username already taken.",
                   "Sorry, that username is already taken.  Please try a new name for your "
                   "calendar.",
                   "OK", ""});
        break;
    default:
        break; // offline: the next run tries again
    }
    return 0;
}

int getNearbyFriends(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    char city[ProtectedData::CurCitySize], state[ProtectedData::CurStateSize];
    store.getCurCity(city);
    store.getCurState(state);
    std::string url = sharingAddress(std::string(kSharingPage) + "GETLOCALUSERS&CITY=" + city +
                                     "&STATE=" + state);
    return app->calGetData.fetchPage(url) == 0 ? kSharingAccepted : kSharingOffline;
}
