// The service's storage boundary: every request handler reads and writes
// through this one interface, so the HTTP layer knows nothing of SQL and a
// second back end (PostgreSQL, for deployments on several machines) can sit
// beside the SQLite one without touching the routes.
//
// Thread contract: one Storage object is shared by all server worker threads;
// every member may be called from any thread at the same time. Calls block
// on the database (a write waits for the single writer slot). A method that
// returns normally has made its writes durable; failures of the database
// itself are thrown as StorageError and become a 500 reply.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace service {

struct StorageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Dates travel as "YYYY-MM-DD" texts: sortable, portable between SQL back ends.
struct Place {
    std::string city;   // as written, "San Francisco"
    std::string region; // abbreviation, "CA"
    double latitude = 0;
    double longitude = 0;
};

struct Site {
    int64_t id = 0;
    std::string name;
    double latitude = 0; // centre of the area the site covers
    double longitude = 0;
    double reachMiles = 0;
    bool sellsTickets = false;
};

struct Event {
    int64_t siteId = 0;
    std::string date; // YYYY-MM-DD, local at the venue
    std::vector<std::string> artists; // headliner first
    std::string venue;
    std::string city;
    std::string state;
    std::string url;
    double latitude = 0;
    double longitude = 0;
    // Filled by feeds; empty for the demo and one-off imports.
    std::string time;         // "HH:MM" local at the venue; empty for an all-day event
    std::string address;      // street address of the venue
    std::string ticketUrl;
    std::string availability; // "InStock", "SoldOut", ... as the feed names it
    int64_t feedId = 0;       // 0: not from a feed
};

// A feed the service imports on a schedule, and what its last refresh did.
struct Feed {
    int64_t id = 0;
    std::string url;
    int64_t siteId = 0;
    int64_t everySeconds = 6 * 3600;
    std::string format;       // "ics", "jsonld", "csv"; empty: told by the content
    std::string etag;         // validators of the last good reply, for conditional requests
    std::string lastModified;
    int64_t lastRefresh = 0;  // Unix time of the last attempt; 0: never
    std::string lastResult;   // "ok", "unchanged", "failed"; empty: never refreshed
    int64_t eventCount = 0;   // events held now
    std::string lastError;    // empty after a good refresh
};

// What one refresh attempt ended with. `error` empty means success.
struct FeedOutcome {
    int64_t time = 0;
    std::string result; // as Feed::lastResult
    std::string error;
    std::string etag, lastModified; // kept when the reply had none
};

struct Release {
    std::string date; // YYYY-MM-DD
    std::string artist;
    std::string title;
    std::vector<std::string> formats;
    std::string asin;
    std::string storeUrl; // may be empty: the click-through then shows our own page
};

// One IPv4 range of the geolocation table: first and last address inclusive.
struct IpRange {
    uint32_t first = 0;
    uint32_t last = 0;
    std::string country; // upper case, "UNITED STATES"
    std::string region;
    std::string city;
};

struct SharingUser {
    std::string username;
    std::string uuid;
    std::string city;
    std::string state;
    std::string firstName;
    std::string lastName;
};

struct SharedShow {
    int year = 0;
    int month = 0;
    int day = 0;
    bool ticketsAvailable = false;
    std::string artist;
    std::string venue;
    std::string location;
    std::string url;
    std::string otherArtists;
};

struct PhoneAccount {
    std::string username;
    std::string uuid;
    std::string passwordHash; // libsodium crypto_pwhash_str text
};

// Everything `seed` loads in one go; it replaces the catalogue tables whole.
struct Catalog {
    std::vector<Place> places;
    std::vector<Site> sites;
    std::vector<Event> events;
    std::vector<Release> releases;
    std::vector<IpRange> ipRanges;
    std::vector<SharingUser> sharingUsers;
    std::vector<std::pair<std::string, SharedShow>> sharedShows; // username, show
};

enum class Claim { Created, Updated, Taken };

class Storage {
public:
    virtual ~Storage() = default;

    // Catalogue (read on every plug-in search).
    virtual std::optional<Place> findPlace(const std::string& city, const std::string& region) = 0;
    virtual std::vector<Site> allSites() = 0;
    virtual std::optional<Site> site(int64_t id) = 0;
    // Events of a site on or after `fromDate` inside the latitude/longitude
    // box, date order. The caller does the exact distance test.
    virtual std::vector<Event> siteEvents(int64_t siteId, const std::string& fromDate,
                                          double minLat, double maxLat, double minLon,
                                          double maxLon) = 0;
    virtual std::vector<Release> releasesFrom(const std::string& fromDate) = 0;
    virtual std::optional<Release> releaseByAsin(const std::string& asin) = 0;
    virtual std::vector<IpRange> ipRanges() = 0;

    // Replaces places, sites, events, releases and address ranges in one
    // transaction; sharing users and shows are added beside existing ones.
    // Feeds go with their sites.
    virtual void replaceCatalog(const Catalog& catalog) = 0;
    // Adds events to an existing site; false when the site does not exist.
    [[nodiscard]] virtual bool addEvents(int64_t siteId, const std::vector<Event>& events) = 0;

    // Feeds. addFeed returns the new id, 0 when the site does not exist.
    [[nodiscard]] virtual int64_t addFeed(const Feed& feed) = 0;
    virtual std::vector<Feed> feeds() = 0;
    // Removes the feed and its events; false when there is no such feed.
    [[nodiscard]] virtual bool removeFeed(int64_t id) = 0;
    // A good refresh: the feed's events become `events` and the outcome is
    // recorded, both in one transaction (readers see the old set or the new
    // one, never a mix). False when the feed was removed meanwhile.
    [[nodiscard]] virtual bool replaceFeedEvents(int64_t feedId, const std::vector<Event>& events,
                                                 const FeedOutcome& outcome) = 0;
    // An unchanged or failed refresh: the events stay, the outcome is noted.
    virtual void recordFeedOutcome(int64_t feedId, const FeedOutcome& outcome) = 0;
    // Deletes events dated before `date`; returns how many went.
    virtual size_t pruneEventsBefore(const std::string& date) = 0;

    // Sharing. Names are compared without regard to case.
    virtual bool sharingUserExists(const std::string& username) = 0;
    // Registers the name for `user.uuid`, or updates the details when that
    // UUID already owns it; Taken when another UUID does.
    virtual Claim claimSharingUser(const SharingUser& user) = 0;
    virtual bool sharingUserOwnedBy(const std::string& username, const std::string& uuid) = 0;
    // False when the user already has `maxShows` shows (a repeat is no new show).
    [[nodiscard]] virtual bool addSharedShow(const std::string& username, const SharedShow& show,
                                             int maxShows) = 0;
    virtual void deleteSharedShow(const std::string& username, const SharedShow& show) = 0;
    virtual std::vector<SharingUser> localUsers(const std::string& city, const std::string& state,
                                                int limit) = 0;
    // nullopt for an unknown user; shows in date order.
    virtual std::optional<std::vector<SharedShow>> userShows(const std::string& username) = 0;

    // Phone exchange.
    virtual std::optional<PhoneAccount> phoneAccount(const std::string& username) = 0;
    // Inserts the account unless the name exists; true when inserted.
    virtual bool createPhoneAccount(const PhoneAccount& account) = 0;
    virtual void setPhonePasswordHash(const std::string& username, const std::string& hash) = 0;
    // Adds the names not yet stored; false when that would pass `maxArtists`.
    [[nodiscard]] virtual bool addPhoneArtists(const std::string& username,
                                               const std::vector<std::string>& artists,
                                               int maxArtists) = 0;
    virtual std::vector<std::string> phoneArtists(const std::string& username) = 0;
};

} // namespace service
