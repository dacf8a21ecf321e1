// The two lists of the sharing tab: the friends list (one column, the
// friend's name) and the users of the same city (five columns, sortable),
// with what selecting a row does to the add box and the remove button.
#include <algorithm>
#include <cstring>
#include <mutex>

#include "model/stagebeacon_class.h"
#include "prefs/preferences_window_internal.h"

namespace {

// The field of a nearby user that column `property` shows; null when the
// column is not one of the five.
const char* nearbyField(const SHARER& sharer, const char* property) {
    const char* const fields[] = {sharer.username, sharer.firstname, sharer.lastname, sharer.city,
                                  sharer.state};
    for (size_t i = 0; i < sizeof(fields) / sizeof(fields[0]); ++i)
        if (strcmp(property, kNearbyColumns[i]) == 0) return fields[i];
    return nullptr;
}

bool validItem(const std::vector<SHARER>& sharers, int item) {
    return item >= 1 && static_cast<size_t>(item) <= sharers.size();
}

} // namespace

std::string friendListItemText(FRIENDLIST* friends, int item) {
    std::lock_guard<std::mutex> guard(friends->mutex);
    int position = 1;
    for (FRIENDNAME* name = friends->head; name; name = name->next, ++position)
        if (position == item) return name->name;
    return std::string();
}

std::string nearbyItemText(const std::vector<SHARER>& sharers, int item, const char* property) {
    if (!validItem(sharers, item)) return std::string();
    const char* field = nearbyField(sharers[item - 1], property);
    return field ? field : "";
}

bool nearbyItemLess(const std::vector<SHARER>& sharers, int item1, int item2,
                    const char* property) {
    if (validItem(sharers, item1) && validItem(sharers, item2)) {
        const char* a = nearbyField(sharers[item1 - 1], property);
        const char* b = nearbyField(sharers[item2 - 1], property);
        if (a && b) return strcmp(a, b) < 0;
    }
    return item1 < item2;
}

void refreshFriendList(PreferencesWindow& window) {
    std::vector<ListRow>& rows = window.model.friendRows;
    rows.clear();
    FRIENDLIST* friends = window.app->friendsList;
    std::lock_guard<std::mutex> guard(friends->mutex);
    int item = 1;
    for (FRIENDNAME* name = friends->head; name; name = name->next, ++item)
        rows.push_back(ListRow{item, {name->name}});
}

void refreshNearbyList(PreferencesWindow& window) {
    const std::vector<SHARER>& sharers = window.sharers;
    PreferencesModel& model = window.model;
    std::vector<int> items(sharers.size());
    for (size_t i = 0; i < items.size(); ++i)
        items[i] = static_cast<int>(i) + 1;
    if (!model.nearbySortColumn.empty()) {
        const char* column = model.nearbySortColumn.c_str();
        bool ascending = model.nearbySortAscending;
        std::stable_sort(items.begin(), items.end(), [&](int a, int b) {
            return ascending ? nearbyItemLess(sharers, a, b, column)
                             : nearbyItemLess(sharers, b, a, column);
        });
    }
    model.nearbyRows.clear();
    for (int item : items) {
        ListRow row{item, {}};
        for (const char* column : kNearbyColumns)
            row.cells.push_back(nearbyItemText(sharers, item, column));
        model.nearbyRows.push_back(row);
    }
}

void sortNearbyList(PreferencesWindow& window, const char* property) {
    PreferencesModel& model = window.model;
    if (model.nearbySortColumn == property) {
        model.nearbySortAscending = !model.nearbySortAscending;
    } else {
        model.nearbySortColumn = property;
        model.nearbySortAscending = true;
    }
    refreshNearbyList(window);
}

void selectFriend(PreferencesWindow& window, int item) {
    PreferencesModel& model = window.model;
    std::string name = item > 0 ? friendListItemText(window.app->friendsList, item) : "";
    bool selected = item > 0 && static_cast<size_t>(item) <= model.friendRows.size();
    window.iFriendListItemSelected = selected ? item : -1;
    model.at(CID_SHARING_BTTN_removeFriend).enabled = selected;
    model.at(CID_SHARING_TBOX_addFriend).text = selected ? name : "";
}

void selectNearbyUser(PreferencesWindow& window, int item) {
    PreferencesModel& model = window.model;
    bool selected = validItem(window.sharers, item);
    window.iLocalListItemSelected = selected ? item : -1;
    window.iFriendListItemSelected = -1;
    model.at(CID_SHARING_BTTN_removeFriend).enabled = false;
    model.at(CID_SHARING_TBOX_addFriend).text = selected ? window.sharers[item - 1].username : "";
}
