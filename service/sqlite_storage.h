// The SQLite back end of Storage: one database file in WAL mode, created and
// migrated on first open, one connection per concurrent caller.
//
// Thread contract: as Storage (any thread, blocking).
#pragma once

#include "sqlite_db.h"
#include "storage.h"

namespace service {

class SqliteStorage : public Storage {
public:
    // Opens or creates `path` and brings its schema up to date; throws
    // StorageError when the file cannot be opened or migrated.
    explicit SqliteStorage(const std::string& path);

    std::optional<Place> findPlace(const std::string& city, const std::string& region) override;
    std::vector<Site> allSites() override;
    std::optional<Site> site(int64_t id) override;
    std::vector<Event> siteEvents(int64_t siteId, const std::string& fromDate, double minLat,
                                  double maxLat, double minLon, double maxLon) override;
    std::vector<Release> releasesFrom(const std::string& fromDate) override;
    std::optional<Release> releaseByAsin(const std::string& asin) override;
    std::vector<IpRange> ipRanges() override;
    void replaceCatalog(const Catalog& catalog) override;
    bool addEvents(int64_t siteId, const std::vector<Event>& events) override;

    int64_t addFeed(const Feed& feed) override;
    std::vector<Feed> feeds() override;
    bool removeFeed(int64_t id) override;
    bool replaceFeedEvents(int64_t feedId, const std::vector<Event>& events,
                           const FeedOutcome& outcome) override;
    void recordFeedOutcome(int64_t feedId, const FeedOutcome& outcome) override;
    size_t pruneEventsBefore(const std::string& date) override;

    bool sharingUserExists(const std::string& username) override;
    Claim claimSharingUser(const SharingUser& user) override;
    bool sharingUserOwnedBy(const std::string& username, const std::string& uuid) override;
    bool addSharedShow(const std::string& username, const SharedShow& show, int maxShows) override;
    void deleteSharedShow(const std::string& username, const SharedShow& show) override;
    std::vector<SharingUser> localUsers(const std::string& city, const std::string& state,
                                        int limit) override;
    std::optional<std::vector<SharedShow>> userShows(const std::string& username) override;

    std::optional<PhoneAccount> phoneAccount(const std::string& username) override;
    bool createPhoneAccount(const PhoneAccount& account) override;
    void setPhonePasswordHash(const std::string& username, const std::string& hash) override;
    bool addPhoneArtists(const std::string& username, const std::vector<std::string>& artists,
                         int maxArtists) override;
    std::vector<std::string> phoneArtists(const std::string& username) override;

private:
    ConnectionPool pool_;
};

// Writes one event row (shared by the seed, imports and feeds); `feedId`
// overrides the event's own.
void insertEvent(Connection& connection, int64_t siteId, const Event& event, int64_t feedId = -1);

// Adds a shared show or refreshes the one with the same key (shared by the
// seed and ADD_SHOW).
void storeShow(Connection& connection, const std::string& username, const SharedShow& show);

// Applies the schema steps the file has not seen yet (exposed for tests).
void migrate(Connection& connection);

} // namespace service
