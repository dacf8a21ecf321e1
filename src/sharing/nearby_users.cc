#include "sharing/nearby_users.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "model/stagebeacon_class.h"
#include "sharing/sharing_client.h"
#include "update/cal_get_data.h"

namespace {

constexpr std::string_view kEntryEnd = "</entry>";

struct Field {
    std::string_view open, close;
    char (SHARER::*value)[64];
};

constexpr Field kFields[] = {
    {"<USERNAME>", "</USERNAME>", &SHARER::username},
    {"<CITY>", "</CITY>", &SHARER::city},
    {"<STATE>", "</STATE>", &SHARER::state},
    {"<FIRSTNAME>", "</FIRSTNAME>", &SHARER::firstname},
    {"<LASTNAME>", "</LASTNAME>", &SHARER::lastname},
};

// The text between `open` and the first `close` after it, both inside `entry`.
std::string_view between(std::string_view entry, std::string_view open, std::string_view close) {
    size_t from = entry.find(open);
    if (from == std::string_view::npos) return {};
    from += open.size();
    size_t to = entry.find(close, from);
    if (to == std::string_view::npos) return {};
    return entry.substr(from, to - from);
}

} // namespace

std::vector<SHARER> parseNearbyUsers(std::string_view page) {
    std::vector<SHARER> sharers;
    size_t start = 0;
    for (size_t end = page.find(kEntryEnd);
         end != std::string_view::npos && sharers.size() < kMaxSharers;
         end = page.find(kEntryEnd, start)) {
        std::string_view entry = page.substr(start, end - start);
        SHARER sharer;
        for (const Field& field : kFields) {
            std::string_view value = between(entry, field.open, field.close);
            char* out = sharer.*field.value;
            size_t n = std::min(value.size(), sizeof(sharer.username) - 1);
            if (n > 0) memcpy(out, value.data(), n); // an absent value has no data pointer
            out[n] = '\0';
        }
        sharers.push_back(sharer);
        start = end + kEntryEnd.size();
    }
    return sharers;
}

bool findNearbyUsers(StagebeaconClass* app, std::vector<SHARER>* users) {
    CalGetData& engine = app->calGetData;
    std::lock_guard<std::mutex> internet(engine.internetMutex);
    // A failed download leaves the previous page in the buffer: no list.
    if (getNearbyFriends(app) != 0) {
        users->clear();
        return false;
    }
    *users = parseNearbyUsers(std::string_view(engine.fetchBuffer.get(), engine.fetchBuffer.size()));
    return true;
}
