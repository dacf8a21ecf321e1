// Demo catalogue loading: see seed.h. Each file is a table with named
// columns; the readers below say which columns they need.
#include "seed.h"

#include "csv.h"
#include "geo.h"
#include "text.h"

#include <cstdlib>
#include <map>

namespace service {
namespace {

double number(const CsvTable& table, size_t row, const char* column) {
    const std::string& text = table.field(row, column);
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0')
        throw CsvError(table.where(row) + ": " + column + " is not a number");
    return value;
}

long whole(const CsvTable& table, size_t row, const char* column, long minimum, long maximum) {
    long value = 0;
    if (!parseInt(table.field(row, column), minimum, maximum, value))
        throw CsvError(table.where(row) + ": " + column + " must be a whole number from " +
                       std::to_string(minimum) + " to " + std::to_string(maximum));
    return value;
}

std::string text(const CsvTable& table, size_t row, const char* column) {
    return tagSafe(table.field(row, column));
}

std::vector<std::string> list(const CsvTable& table, size_t row, const char* column) {
    std::vector<std::string> items;
    const std::string& field = table.field(row, column);
    if (field.empty()) return items;
    for (const std::string& item : split(field, "|")) items.push_back(tagSafe(item));
    return items;
}

CsvTable open(const std::string& folder, const char* file) {
    return CsvTable(readFile(folder + "/" + file), file);
}

using PlaceIndex = std::map<std::pair<std::string, std::string>, const Place*>;

void loadEvents(const std::string& folder, const PlaceIndex& places, Catalog& catalog) {
    CsvTable table = open(folder, "events.csv");
    for (size_t row = 0; row < table.rows(); ++row) {
        Event event;
        event.siteId = whole(table, row, "site", 1, 1L << 30);
        event.date = isoDateFromToday(static_cast<int>(whole(table, row, "days", -3650, 3650)));
        event.artists = list(table, row, "artists");
        event.venue = text(table, row, "venue");
        event.city = text(table, row, "city");
        event.state = text(table, row, "state");
        event.url = text(table, row, "url");
        auto place = places.find({nameKey(event.city), nameKey(event.state)});
        if (place == places.end())
            throw CsvError(table.where(row) + ": " + event.city + ", " + event.state +
                           " is not in places.csv");
        if (event.artists.empty()) throw CsvError(table.where(row) + ": no artist");
        event.latitude = place->second->latitude;
        event.longitude = place->second->longitude;
        catalog.events.push_back(std::move(event));
    }
}

void loadAccounts(const std::string& folder, Catalog& catalog) {
    CsvTable users = open(folder, "sharing-users.csv");
    for (size_t row = 0; row < users.rows(); ++row) {
        catalog.sharingUsers.push_back(SharingUser{
            text(users, row, "username"), text(users, row, "uuid"), text(users, row, "city"),
            text(users, row, "state"), text(users, row, "first_name"),
            text(users, row, "last_name")});
    }
    CsvTable shows = open(folder, "shared-shows.csv");
    for (size_t row = 0; row < shows.rows(); ++row) {
        std::string date = isoDateFromToday(static_cast<int>(whole(shows, row, "days", -3650, 3650)));
        SharedShow show;
        show.year = std::atoi(date.substr(0, 4).c_str());
        show.month = std::atoi(date.substr(5, 2).c_str());
        show.day = std::atoi(date.substr(8, 2).c_str());
        show.ticketsAvailable = whole(shows, row, "tickets", 0, 1) == 1;
        show.artist = text(shows, row, "artist");
        show.venue = text(shows, row, "venue");
        show.location = text(shows, row, "location");
        show.url = text(shows, row, "url");
        show.otherArtists = text(shows, row, "other_artists");
        catalog.sharedShows.emplace_back(text(shows, row, "username"), show);
    }
}

} // namespace

Catalog loadCatalog(const std::string& folder) {
    Catalog catalog;
    CsvTable places = open(folder, "places.csv");
    for (size_t row = 0; row < places.rows(); ++row) {
        catalog.places.push_back(Place{text(places, row, "city"), text(places, row, "region"),
                                       number(places, row, "latitude"),
                                       number(places, row, "longitude")});
    }
    PlaceIndex index;
    for (const Place& place : catalog.places)
        index[{nameKey(place.city), nameKey(place.region)}] = &place;

    CsvTable sites = open(folder, "sites.csv");
    for (size_t row = 0; row < sites.rows(); ++row) {
        catalog.sites.push_back(Site{whole(sites, row, "id", 1, 1L << 30), text(sites, row, "name"),
                                     number(sites, row, "latitude"),
                                     number(sites, row, "longitude"),
                                     number(sites, row, "reach_miles"),
                                     whole(sites, row, "tickets", 0, 1) == 1});
    }
    loadEvents(folder, index, catalog);

    CsvTable releases = open(folder, "releases.csv");
    for (size_t row = 0; row < releases.rows(); ++row) {
        catalog.releases.push_back(Release{
            isoDateFromToday(static_cast<int>(whole(releases, row, "days", -3650, 3650))),
            text(releases, row, "artist"), text(releases, row, "title"),
            list(releases, row, "formats"), text(releases, row, "asin"),
            text(releases, row, "store_url")});
    }

    CsvTable ranges = open(folder, "ip-ranges.csv");
    for (size_t row = 0; row < ranges.rows(); ++row) {
        IpRange range;
        if (!parseIpRange(ranges.field(row, "range"), range.first, range.last))
            throw CsvError(ranges.where(row) + ": range is not a.b.c.d/n or a.b.c.d-e.f.g.h");
        range.country = text(ranges, row, "country");
        range.region = text(ranges, row, "region");
        range.city = text(ranges, row, "city");
        catalog.ipRanges.push_back(std::move(range));
    }
    loadAccounts(folder, catalog);
    return catalog;
}

} // namespace service
