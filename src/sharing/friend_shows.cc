// The friends' shows task and the reading of a friend's page.
#include "sharing/friend_shows.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "model/fixed_text.h"
#include "model/kept_shows.h"
#include "model/show_list.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "sharing/sharing_client.h"

namespace {

constexpr std::string_view kBlockOpen = "<event>";
constexpr std::string_view kBlockClose = "</event>";
constexpr std::string_view kSeparator = "@@";
constexpr int kFieldCount = 9;

int numberOr(std::string_view field, int fallback) {
    std::string text(field.substr(0, 32));
    int value = 0;
    return sscanf(text.c_str(), "%d", &value) == 1 ? value : fallback;
}

template <size_t N> void copyField(char (&dst)[N], std::string_view field) {
    std::string text(field.substr(0, N - 1));
    copyText(dst, text.c_str());
}

// Splits a block into its fields; `found` tells how many the block has.
int splitFields(std::string_view block, std::string_view (&fields)[kFieldCount]) {
    size_t at = 0;
    for (int i = 0; i < kFieldCount; ++i) {
        size_t end = i + 1 < kFieldCount ? block.find(kSeparator, at) : std::string_view::npos;
        if (end == std::string_view::npos) {
            // The last field present runs to the end of the block; the other
            // acts, when they are the ninth field, lose the block's last byte.
            std::string_view rest = block.substr(at);
            if (i + 1 == kFieldCount && !rest.empty()) rest.remove_suffix(1);
            fields[i] = rest;
            return i + 1;
        }
        fields[i] = block.substr(at, end - at);
        at = end + kSeparator.size();
    }
    return kFieldCount;
}

SHOWENTRY* showOf(std::string_view block, const char* friendName) {
    std::string_view fields[kFieldCount];
    int found = splitFields(block, fields);
    auto* show = new SHOWENTRY;
    if (found > 0) show->year = numberOr(fields[0], show->year);
    if (found > 1) show->month = numberOr(fields[1], show->month);
    if (found > 2) show->day = numberOr(fields[2], show->day);
    if (found > 3) show->ticketsAvailable = fields[3] == "1";
    if (found > 4) copyField(show->artist, fields[4]);
    if (found > 5) copyField(show->venue, fields[5]);
    if (found > 6) copyField(show->location, fields[6]);
    if (found > 7) copyField(show->url, fields[7]);
    if (found > 8) copyField(show->otherArtists, fields[8]);
    (void)show->tags->add(new FRIENDNAME(friendName)); // a new list refuses nothing
    return show;
}

} // namespace

size_t fileFriendShows(std::string_view page, const char* friendName, SHOWLIST* list,
                       SHOWLIST* previous) {
    size_t blocks = 0;
    size_t at = 0;
    for (;;) {
        size_t open = page.find(kBlockOpen, at);
        if (open == std::string_view::npos) break;
        size_t from = open + kBlockOpen.size();
        size_t close = page.find(kBlockClose, from);
        if (close == std::string_view::npos) break;
        std::string_view block = page.substr(from, std::min(close - from, kMaxFriendBlock));
        SHOWENTRY* show = showOf(block, friendName);
        if (!list->addShow(show, previous)) delete show; // merged into the same show
        ++blocks;
        at = close + kBlockClose.size();
    }
    return blocks;
}

int updateFriendShows(StagebeaconClass* app) {
    CalGetData& engine = app->calGetData;
    ProtectedData& store = app->protectedData;
    store.setUpdatingFriends(true);
    store.setUpdatingProgress(0);
    app->renderView();

    ShowListRef shows = app->friendsShows.replace();
    ShowListRef previous = app->friendsShows.previous();

    // The names are copied so that no download runs under the list's lock
    // (the preferences window edits the list meanwhile).
    std::vector<std::string> friends;
    {
        FRIENDLIST* list = app->friendsList;
        std::lock_guard<std::mutex> guard(list->mutex);
        for (FRIENDNAME* name = list->head; name; name = name->next)
            friends.emplace_back(name->name);
    }
    if (friends.empty()) {
        store.setUpdatingFriends(false);
        app->renderView();
        return 0;
    }
    if (engine.stopRequested()) return 1;

    for (size_t reached = 0; reached < friends.size(); ++reached) {
        const std::string& name = friends[reached];
        if (engine.stopRequested()) return 1;
        store.incUpdatingProgress(100.0 / static_cast<double>(friends.size()));
        app->renderView();

        std::lock_guard<std::mutex> internet(engine.internetMutex);
        if (engine.fetchPage(sharingAddress("/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=" +
                                     name)) != 0) {
            if (engine.stopRequested()) return 1;
            // This friend and those not reached keep their shows from the
            // last good list; those already read stay as read.
            std::unordered_set<std::string> unread(friends.begin() + reached, friends.end());
            (void)keepShows(shows.get(), previous.get(), [&unread](const SHOWENTRY& show) {
                for (FRIENDNAME* tag = show.tags->head; tag; tag = tag->next)
                    if (unread.count(tag->name)) return true;
                return false;
            });
            engine.noteFailedSources(static_cast<int>(unread.size()),
                              std::to_string(unread.size()) + " of " +
                                  std::to_string(friends.size()) +
                                  " friends' calendars did not answer",
                              "their shows");
            return 2;
        }
        std::string_view page(engine.fetchBuffer.get(), engine.fetchBuffer.size());
        if (page.find(kFriendCalendarMissing) != std::string_view::npos) continue;
        if (engine.stopRequested()) return 1;
        (void)fileFriendShows(page, name.c_str(), shows.get(), previous.get());
    }
    if (engine.stopRequested()) return 1;
    store.setUpdatingFriends(false);
    app->renderView();
    return 0;
}
