// What the plug-in reads on every search: coordinates of a place, the sites
// that cover it, each site's event page, the release pages, the version
// check and the geolocation page.
#include "feed_map.h"
#include "geo.h"
#include "query.h"
#include "replies.h"
#include "server.h"
#include "text.h"

#include <httplib.h>

#include <algorithm>
#include <unordered_set>

namespace service {
namespace {

constexpr long kMaxRadiusMiles = 5000;
constexpr int kReleasePages = 10;

bool checkedTodo(const Query& query, const char* todo, httplib::Response& response) {
    if (query.get("TODO") == todo) return true;
    replyError(response, 400, "unknown TODO");
    return false;
}

bool checkedRadius(const Query& query, const char* key, long& radius,
                   httplib::Response& response) {
    if (parseInt(query.get(key), 0, kMaxRadiusMiles, radius)) return true;
    replyError(response, 400, "radius must be a whole number of miles from 0 to " +
                                  std::to_string(kMaxRadiusMiles));
    return false;
}

void latLon(const RouteContext& context, const httplib::Request& request,
            httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "CITY", "STATE"});
    if (!query || !checkedTodo(*query, "GETLATLON", response)) return;
    reply(response, latLonReply(context.storage.findPlace(query->get("CITY"), query->get("STATE"))));
}

// A site serves a search when its reach and the search circle overlap.
void sites(const RouteContext& context, const httplib::Request& request,
           httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "CITY", "STATE", "RADIUS"},
                              {"VERSION"});
    long radius = 0;
    if (!query || !checkedTodo(*query, "GETSITES", response) ||
        !checkedRadius(*query, "RADIUS", radius, response))
        return;
    std::vector<Site> serving;
    if (auto place = context.storage.findPlace(query->get("CITY"), query->get("STATE"))) {
        for (Site& site : context.storage.allSites()) {
            double miles = milesBetween(place->latitude, place->longitude, site.latitude,
                                        site.longitude);
            if (miles <= site.reachMiles + static_cast<double>(radius))
                serving.push_back(std::move(site));
        }
    }
    reply(response, sitesReply(serving, context.publicUrl));
}

void events(const RouteContext& context, const httplib::Request& request,
            httplib::Response& response) {
    auto query = checkedQuery(request, response, {"site", "city", "state", "radius"});
    long siteId = 0, radius = 0;
    if (!query || !checkedRadius(*query, "radius", radius, response)) return;
    if (!parseInt(query->get("site"), 1, 1L << 30, siteId)) {
        replyError(response, 404, "no such site");
        return;
    }
    std::string page;
    std::vector<Event> events;
    auto place = context.storage.findPlace(query->get("city"), query->get("state"));
    if (place) {
        Box box = boxAround(place->latitude, place->longitude, static_cast<double>(radius));
        events = context.storage.siteEvents(siteId, isoDateFromToday(0), box.minLat, box.maxLat,
                                            box.minLon, box.maxLon);
    }
    // Only an empty answer needs the extra look-up of whether the site exists.
    if (events.empty() && !context.storage.site(siteId)) {
        replyError(response, 404, "no such site");
        return;
    }
    // The same show listed by two feeds (or a feed and the catalogue) is
    // served once: an artist already listed on that date at that venue is
    // dropped from later records.
    std::unordered_set<std::string> listed;
    for (Event& event : events) {
        if (milesBetween(place->latitude, place->longitude, event.latitude, event.longitude) >
            static_cast<double>(radius))
            continue;
        std::vector<std::string> fresh;
        for (std::string& artist : event.artists)
            if (listed.insert(showKey(event.date, artist, event.venue)).second)
                fresh.push_back(std::move(artist));
        if (fresh.empty()) continue;
        event.artists = std::move(fresh);
        appendEventLines(page, event, context.publicUrl);
    }
    reply(response, page);
}

// Upcoming releases in date order, cut into ten nearly equal runs.
void releasePage(const RouteContext& context, int pageNumber, httplib::Response& response) {
    std::vector<Release> releases = context.storage.releasesFrom(isoDateFromToday(0));
    const size_t perPage = (releases.size() + kReleasePages - 1) / kReleasePages;
    const size_t first = std::min(releases.size(), perPage * static_cast<size_t>(pageNumber));
    const size_t last = std::min(releases.size(), first + perPage);
    std::string page;
    for (size_t i = first; i < last; ++i) appendReleaseLine(page, releases[i]);
    reply(response, page, "text/html; charset=ISO-8859-1");
}

// "2.9" -> 209; anything unreadable counts as oldest.
long versionNumber(const std::string& text) {
    int major = 0, minor = 0;
    if (std::sscanf(text.c_str(), "%d.%d", &major, &minor) < 1) return -1;
    return static_cast<long>(major) * 100 + minor;
}

void currentVersion(const RouteContext& context, const httplib::Request& request,
                    httplib::Response& response) {
    Query query(rawQuery(request.target), {"VERSION", "OS"});
    const std::string& current = context.config.currentVersion;
    if (versionNumber(query.get("VERSION")) >= versionNumber(current)) {
        reply(response, "<current>\n");
        return;
    }
    reply(response, "<message>Stagebeacon " + tagSafe(current) +
                        " is available, with new concert sites and fixes. Choose Download to "
                        "get it.</message>\n");
}

bool isLoopback(const std::string& address) {
    auto parsed = parseIpv4(address);
    return address == "::1" || (parsed && (*parsed >> 24) == 127);
}

void ipLocation(const RouteContext& context, const httplib::Request& request,
                httplib::Response& response) {
    std::optional<Location> location;
    if (auto address = parseIpv4(request.remote_addr)) {
        for (const IpRange& range : context.storage.ipRanges()) {
            if (*address >= range.first && *address <= range.last) {
                location = Location{range.country, range.region, range.city};
                break;
            }
        }
    }
    if (!location && isLoopback(request.remote_addr))
        location = Location{context.config.loopbackCountry, context.config.loopbackRegion,
                            context.config.loopbackCity};
    reply(response, ipLocationPage(location), "text/html; charset=ISO-8859-1");
}

// Serves a successful reply again, unchanged, for the cache's lifetime. The
// key is the whole request target, query as sent.
Handler cached(ReplyCache& cache, Handler handler) {
    return [&cache, handler](const httplib::Request& request, httplib::Response& response) {
        if (auto kept = cache.find(request.target)) {
            reply(response, kept->body, kept->type.c_str());
            return;
        }
        handler(request, response);
        if (response.status == 200)
            cache.store(request.target,
                        {response.body, response.get_header_value("Content-Type")});
    };
}

} // namespace

void addCatalogRoutes(RouteTable& routes, const RouteContext& context) {
    const RouteContext* c = &context;
    routes["/zipcodes/zipcodes.php"] =
        cached(c->cache, [c](const auto& q, auto& r) { latLon(*c, q, r); });
    routes["/datasources/datasources.php"] =
        cached(c->cache, [c](const auto& q, auto& r) { sites(*c, q, r); });
    routes["/events/events.php"] =
        cached(c->cache, [c](const auto& q, auto& r) { events(*c, q, r); });
    routes["/current_version.php"] = [c](const auto& q, auto& r) { currentVersion(*c, q, r); };
    routes["/ip-location"] = [c](const auto& q, auto& r) { ipLocation(*c, q, r); };
    for (int n = 0; n < kReleasePages; ++n) {
        routes["/CDReleases/data/cdReleasesData_" + std::to_string(n) + ".html"] =
            cached(c->cache, [c, n](const auto&, auto& r) { releasePage(*c, n, r); });
    }
}

} // namespace service
