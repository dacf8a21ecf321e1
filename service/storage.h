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
    std::string date; // YYYY-MM-DD
    std::vector<std::string> artists; // headliner first
    std::string venue;
    std::string city;
    std::string state;
    std::string url;
    double latitude = 0;
    double longitude = 0;
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
    virtual void replaceCatalog(const Catalog& catalog) = 0;
    // Adds events to an existing site; false when the site does not exist.
    [[nodiscard]] virtual bool addEvents(int64_t siteId, const std::vector<Event>& events) = 0;

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
