// SQLite queries behind Storage. Every value goes through a bound parameter;
// no statement is ever assembled from request text. The SQL keeps to what
// PostgreSQL reads too ("?" placeholders aside, which its driver rewrites).
#include "sqlite_storage.h"

#include "text.h"

namespace service {
namespace {

// Artists and formats are stored as one text; a line feed cannot occur in
// them (tagSafe turns it into a blank before anything is stored).
const char kListSeparator[] = "\n";

Site readSite(const Statement& row) {
    Site site;
    site.id = row.integer(0);
    site.name = row.text(1);
    site.latitude = row.real(2);
    site.longitude = row.real(3);
    site.reachMiles = row.real(4);
    site.sellsTickets = row.integer(5) != 0;
    return site;
}

const char kSiteColumns[] = "SELECT id, name, latitude, longitude, reach_miles, sells_tickets FROM sites";

Release readRelease(const Statement& row) {
    Release release;
    release.date = row.text(0);
    release.artist = row.text(1);
    release.title = row.text(2);
    std::string formats = row.text(3);
    if (!formats.empty()) release.formats = split(formats, kListSeparator);
    release.asin = row.text(4);
    release.storeUrl = row.text(5);
    return release;
}

const char kReleaseColumns[] =
    "SELECT release_date, artist, title, formats, asin, store_url FROM releases";

void insertSharingUser(Connection& db, const SharingUser& user) {
    db.prepare("INSERT INTO sharing_users (username_key, username, uuid, city, state, city_key, "
               "state_key, first_name, last_name) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) "
               "ON CONFLICT DO NOTHING")
        .bind(1, nameKey(user.username))
        .bind(2, user.username)
        .bind(3, user.uuid)
        .bind(4, user.city)
        .bind(5, user.state)
        .bind(6, nameKey(user.city))
        .bind(7, nameKey(user.state))
        .bind(8, user.firstName)
        .bind(9, user.lastName)
        .run();
}

} // namespace

void insertEvent(Connection& db, int64_t siteId, const Event& event, int64_t feedId) {
    db.prepare("INSERT INTO events (site_id, event_date, artists, venue, city, state, url, "
               "latitude, longitude, event_time, address, ticket_url, availability, feed_id) "
               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(1, siteId)
        .bind(2, event.date)
        .bind(3, join(event.artists, kListSeparator))
        .bind(4, event.venue)
        .bind(5, event.city)
        .bind(6, event.state)
        .bind(7, event.url)
        .bind(8, event.latitude)
        .bind(9, event.longitude)
        .bind(10, event.time)
        .bind(11, event.address)
        .bind(12, event.ticketUrl)
        .bind(13, event.availability)
        .bind(14, feedId >= 0 ? feedId : event.feedId)
        .run();
}

void storeShow(Connection& db, const std::string& username, const SharedShow& show) {
    db.prepare("INSERT INTO shared_shows (username_key, show_year, show_month, show_day, tickets, "
               "artist, venue, location, url, other_artists) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
               "ON CONFLICT (username_key, show_year, show_month, show_day, artist, venue) "
               "DO UPDATE SET tickets = excluded.tickets, location = excluded.location, "
               "url = excluded.url, other_artists = excluded.other_artists")
        .bind(1, nameKey(username))
        .bind(2, show.year)
        .bind(3, show.month)
        .bind(4, show.day)
        .bind(5, show.ticketsAvailable ? 1 : 0)
        .bind(6, show.artist)
        .bind(7, show.venue)
        .bind(8, show.location)
        .bind(9, show.url)
        .bind(10, show.otherArtists)
        .run();
}

SqliteStorage::SqliteStorage(const std::string& path) : pool_(path) {
    auto db = pool_.lease();
    migrate(*db);
}

std::optional<Place> SqliteStorage::findPlace(const std::string& city, const std::string& region) {
    auto db = pool_.lease();
    Statement row = db->prepare("SELECT city, region, latitude, longitude FROM places "
                                "WHERE city_key = ? AND region_key = ?");
    row.bind(1, nameKey(city)).bind(2, nameKey(region));
    if (!row.step()) return std::nullopt;
    return Place{row.text(0), row.text(1), row.real(2), row.real(3)};
}

std::vector<Site> SqliteStorage::allSites() {
    auto db = pool_.lease();
    Statement row = db->prepare(std::string(kSiteColumns) + " ORDER BY id");
    std::vector<Site> sites;
    while (row.step()) sites.push_back(readSite(row));
    return sites;
}

std::optional<Site> SqliteStorage::site(int64_t id) {
    auto db = pool_.lease();
    Statement row = db->prepare(std::string(kSiteColumns) + " WHERE id = ?");
    row.bind(1, id);
    if (!row.step()) return std::nullopt;
    return readSite(row);
}

std::vector<Event> SqliteStorage::siteEvents(int64_t siteId, const std::string& fromDate,
                                             double minLat, double maxLat, double minLon,
                                             double maxLon) {
    auto db = pool_.lease();
    Statement row = db->prepare(
        "SELECT event_date, artists, venue, city, state, url, latitude, longitude, event_time, "
        "address, ticket_url, availability, feed_id FROM events "
        "WHERE site_id = ? AND event_date >= ? AND latitude BETWEEN ? AND ? "
        "AND longitude BETWEEN ? AND ? ORDER BY event_date, event_time, feed_id, rowid");
    row.bind(1, siteId).bind(2, fromDate).bind(3, minLat).bind(4, maxLat).bind(5, minLon).bind(
        6, maxLon);
    std::vector<Event> events;
    while (row.step()) {
        Event event;
        event.siteId = siteId;
        event.date = row.text(0);
        event.artists = split(row.text(1), kListSeparator);
        event.venue = row.text(2);
        event.city = row.text(3);
        event.state = row.text(4);
        event.url = row.text(5);
        event.latitude = row.real(6);
        event.longitude = row.real(7);
        event.time = row.text(8);
        event.address = row.text(9);
        event.ticketUrl = row.text(10);
        event.availability = row.text(11);
        event.feedId = row.integer(12);
        events.push_back(std::move(event));
    }
    return events;
}

std::vector<Release> SqliteStorage::releasesFrom(const std::string& fromDate) {
    auto db = pool_.lease();
    Statement row = db->prepare(std::string(kReleaseColumns) +
                                " WHERE release_date >= ? ORDER BY release_date, artist, title");
    row.bind(1, fromDate);
    std::vector<Release> releases;
    while (row.step()) releases.push_back(readRelease(row));
    return releases;
}

std::optional<Release> SqliteStorage::releaseByAsin(const std::string& asin) {
    auto db = pool_.lease();
    Statement row = db->prepare(std::string(kReleaseColumns) + " WHERE asin = ?");
    row.bind(1, asin);
    if (!row.step()) return std::nullopt;
    return readRelease(row);
}

std::vector<IpRange> SqliteStorage::ipRanges() {
    auto db = pool_.lease();
    Statement row = db->prepare("SELECT first_address, last_address, country, region, city "
                                "FROM ip_ranges ORDER BY first_address");
    std::vector<IpRange> ranges;
    while (row.step()) {
        ranges.push_back(IpRange{static_cast<uint32_t>(row.integer(0)),
                                 static_cast<uint32_t>(row.integer(1)), row.text(2), row.text(3),
                                 row.text(4)});
    }
    return ranges;
}

void SqliteStorage::replaceCatalog(const Catalog& catalog) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    for (const char* table : {"events", "sites", "places", "releases", "ip_ranges"})
        db->exec(std::string("DELETE FROM ") + table);
    for (const Place& place : catalog.places) {
        db->prepare("INSERT INTO places (city_key, region_key, city, region, latitude, longitude) "
                    "VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING")
            .bind(1, nameKey(place.city))
            .bind(2, nameKey(place.region))
            .bind(3, place.city)
            .bind(4, place.region)
            .bind(5, place.latitude)
            .bind(6, place.longitude)
            .run();
    }
    for (const Site& site : catalog.sites) {
        db->prepare("INSERT INTO sites (id, name, latitude, longitude, reach_miles, sells_tickets) "
                    "VALUES (?, ?, ?, ?, ?, ?)")
            .bind(1, site.id)
            .bind(2, site.name)
            .bind(3, site.latitude)
            .bind(4, site.longitude)
            .bind(5, site.reachMiles)
            .bind(6, site.sellsTickets ? 1 : 0)
            .run();
    }
    for (const Event& event : catalog.events) insertEvent(*db, event.siteId, event);
    for (const Release& release : catalog.releases) {
        db->prepare("INSERT INTO releases (asin, release_date, artist, title, formats, store_url) "
                    "VALUES (?, ?, ?, ?, ?, ?)")
            .bind(1, release.asin)
            .bind(2, release.date)
            .bind(3, release.artist)
            .bind(4, release.title)
            .bind(5, join(release.formats, kListSeparator))
            .bind(6, release.storeUrl)
            .run();
    }
    for (const IpRange& range : catalog.ipRanges) {
        db->prepare("INSERT INTO ip_ranges (first_address, last_address, country, region, city) "
                    "VALUES (?, ?, ?, ?, ?)")
            .bind(1, static_cast<int64_t>(range.first))
            .bind(2, static_cast<int64_t>(range.last))
            .bind(3, range.country)
            .bind(4, range.region)
            .bind(5, range.city)
            .run();
    }
    for (const SharingUser& user : catalog.sharingUsers) insertSharingUser(*db, user);
    for (const auto& entry : catalog.sharedShows) storeShow(*db, entry.first, entry.second);
    transaction.commit();
}

bool SqliteStorage::addEvents(int64_t siteId, const std::vector<Event>& events) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    {
        Statement exists = db->prepare("SELECT 1 FROM sites WHERE id = ?");
        if (!exists.bind(1, siteId).step()) return false;
    }
    for (const Event& event : events) insertEvent(*db, siteId, event);
    transaction.commit();
    return true;
}

} // namespace service
