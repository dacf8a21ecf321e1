// Short-lived catalogue replies: see reply_cache.h.
#include "reply_cache.h"

namespace service {

ReplyCache::ReplyCache(std::chrono::milliseconds lifetime, size_t capacity)
    : lifetime_(lifetime), capacity_(capacity) {}

std::optional<ReplyCache::Entry> ReplyCache::find(const std::string& key) {
    if (lifetime_.count() <= 0) return std::nullopt;
    std::lock_guard<std::mutex> lock(mutex_);
    auto found = kept_.find(key);
    if (found == kept_.end()) return std::nullopt;
    if (Clock::now() >= found->second.expires) {
        kept_.erase(found);
        return std::nullopt;
    }
    return found->second.entry;
}

void ReplyCache::store(const std::string& key, Entry entry) {
    if (lifetime_.count() <= 0) return;
    std::lock_guard<std::mutex> lock(mutex_);
    if (kept_.size() >= capacity_) kept_.clear();
    kept_[key] = Kept{std::move(entry), Clock::now() + lifetime_};
}

} // namespace service
