// A short-lived memory of catalogue replies. Every plug-in in a city asks
// the same few questions (its sites, each site's page for its radius), and
// the catalogue changes only when it is seeded or a calendar is imported,
// perhaps by another process on the same database. Replies are therefore
// kept for a moment (a second by default) and then asked again, so a
// change shows within that time without any signal between processes.
//
// Thread contract: any thread; lookups and stores take one short lock.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace service {

class ReplyCache {
public:
    struct Entry {
        std::string body;
        std::string type;
    };

    // `lifetime` zero turns the cache off. At most `capacity` replies are
    // kept; when full it starts afresh (cheaper than tracking age order, and
    // the lifetime is short anyway).
    ReplyCache(std::chrono::milliseconds lifetime, size_t capacity);

    std::optional<Entry> find(const std::string& key);
    void store(const std::string& key, Entry entry);

private:
    using Clock = std::chrono::steady_clock;
    struct Kept {
        Entry entry;
        Clock::time_point expires;
    };

    const std::chrono::milliseconds lifetime_;
    const size_t capacity_;
    std::mutex mutex_;
    std::unordered_map<std::string, Kept> kept_;
};

} // namespace service
