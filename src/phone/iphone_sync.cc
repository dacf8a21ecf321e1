// Registering with the phone exchange and sending the artist list in
// batches, with progress: 10 once registered, the remaining 90 shared out
// by the names each batch carried.
#include "phone/iphone_sync.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>

#include "phone/phone_artists.h"
#include "platform/main_thread.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "net/service_config.h"

namespace {

constexpr const char* kExchangePage = "/iphone/exchange.php?TODO=";

std::string exchangeAddress(const std::string& query) {
    std::string url = serviceAddress((kExchangePage + query).c_str());
    std::replace(url.begin(), url.end(), ' ', '+');
    return url;
}

struct PhoneAccount {
    char user[ProtectedData::UsernameSize];
    char password[ProtectedData::PasswordSize];
    char uuid[ProtectedData::UUIDSize];
    explicit PhoneAccount(ProtectedData& store) {
        store.getUsername(user);
        store.getPassword(password);
        store.getUUID(uuid);
    }
};

// Sends one batch; false when the download failed (the reply is not read).
bool sendBatch(StagebeaconClass* app, const PhoneAccount& account, const std::string& batch) {
    CalGetData& engine = app->calGetData;
    std::lock_guard<std::mutex> internet(engine.internetMutex);
    return engine.fetchPage(exchangeAddress(std::string("ADD_ARTISTS&USERNAME=") + account.user +
                                            "&PWD=" + account.password + "&ARTISTS=" + batch)) == 0;
}

} // namespace

int iPhoneSync_Initialize(StagebeaconClass* app) {
    PhoneAccount account(app->protectedData);
    CalGetData& engine = app->calGetData;
    std::lock_guard<std::mutex> internet(engine.internetMutex);
    if (engine.fetchPage(exchangeAddress(std::string("INITIALIZE_USER&USERNAME=") + account.user +
                                         "&UUID=" + account.uuid + "&PWD=" + account.password)) !=
        0)
        return 2;
    std::string_view page(engine.fetchBuffer.get(), engine.fetchBuffer.size());
    return page.find("<ERROR>") != std::string_view::npos ? 1 : 0;
}

int iPhoneSync_addAllArtists(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    if (!store.getiPhoneSync()) return 0;
    store.setUpdatingiPhone(true);
    store.setUpdatingProgress(0);

    switch (iPhoneSync_Initialize(app)) {
    case 0:
        break;
    case 1:
        postAlert({"Username already taken.",
                   "Sorry, that username is already taken.  Please try a new name for your "
                   "calendar.",
                   "OK", ""});
        return 1;
    default:
        return 1;
    }
    store.incUpdatingProgress(10);
    app->renderView();

    (void)GetFullArtistList(app); // an unreadable library sends nothing
    PhoneAccount account(store);
    const double total = all_artists.count;
    std::string batch;
    int inBatch = 0;
    for (XMLARTIST* artist = all_artists.head; artist; artist = artist->next) {
        batch += artist->name;
        ++inBatch;
        if (app->calGetData.stopRequested()) return 1;
        if (batch.size() <= static_cast<size_t>(kPhoneBatchLength) && artist->next) {
            batch += "@@";
            continue;
        }
        if (!sendBatch(app, account, batch)) return 1;
        if (artist->next)
            store.incUpdatingProgress(inBatch / total * 90.0);
        else
            store.setUpdatingProgress(100);
        app->renderView();
        batch.clear();
        inBatch = 0;
    }
    store.setUpdatingiPhone(false);
    app->renderView();
    return 0;
}
