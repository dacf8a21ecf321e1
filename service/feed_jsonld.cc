// schema.org events in JSON-LD, through nlohmann-json: the
// <script type="application/ld+json"> blocks of an event page (or a bare
// JSON document), holding an Event or MusicEvent, an array of them, or an
// @graph. Values may be a string, an object or an array of either, or null,
// as real pages write them; every accessor here takes all of those.
#include "feed_event.h"

#include <nlohmann/json.hpp>

#include <cctype>
#include <cstdlib>

namespace service {
namespace {

using nlohmann::json;

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// "https://schema.org/InStock" or "schema:InStock" -> "InStock".
std::string schemaTerm(const std::string& value) {
    size_t cut = value.find_last_of("/:");
    return cut == std::string::npos ? value : value.substr(cut + 1);
}

// A text value: strings as they are, numbers written out, the first of an array.
std::string textOf(const json& node) {
    if (node.is_string()) return node.get<std::string>();
    if (node.is_number_integer()) return std::to_string(node.get<long long>());
    if (node.is_number()) return std::to_string(node.get<double>());
    if (node.is_array() && !node.empty()) return textOf(node.front());
    return std::string();
}

std::string field(const json& node, const char* key) {
    if (!node.is_object()) return std::string();
    auto found = node.find(key);
    return found == node.end() ? std::string() : textOf(*found);
}

const json* member(const json& node, const char* key) {
    if (!node.is_object()) return nullptr;
    auto found = node.find(key);
    return found == node.end() || found->is_null() ? nullptr : &*found;
}

bool isEventType(const json& node) {
    const json* type = member(node, "@type");
    if (!type) return false;
    auto matches = [](const json& one) {
        const std::string term = one.is_string() ? schemaTerm(one.get<std::string>()) : "";
        return term == "Festival" ||
               (term.size() >= 5 && term.compare(term.size() - 5, 5, "Event") == 0);
    };
    if (type->is_array()) {
        for (const json& one : *type)
            if (matches(one)) return true;
        return false;
    }
    return matches(*type);
}

// Calls `visit` for each element: an array's items, or the one value.
template <typename Visit> void eachOf(const json* node, Visit visit) {
    if (!node) return;
    if (node->is_array()) {
        for (const json& item : *node)
            if (!item.is_null()) visit(item);
    } else {
        visit(*node);
    }
}

void readLocation(const json& place, FeedEvent& event) {
    if (!event.venue.empty() || !event.location.empty()) return; // the first place wins
    if (place.is_string()) {
        event.location = place.get<std::string>();
        return;
    }
    event.venue = field(place, "name");
    const json* address = member(place, "address");
    if (address && address->is_string()) {
        // "79 Washington St., Providence, RI": read like a LOCATION line.
        event.location = event.venue.empty() ? address->get<std::string>()
                                             : event.venue + ", " + address->get<std::string>();
    } else if (address) {
        event.address = field(*address, "streetAddress");
        event.city = field(*address, "addressLocality");
        event.state = field(*address, "addressRegion");
        if (event.state.empty()) event.state = field(*address, "addressCountry");
    }
    if (const json* geo = member(place, "geo")) {
        // Numbers or numeric texts, as pages write both.
        const std::string lat = field(*geo, "latitude"), lon = field(*geo, "longitude");
        char* end = nullptr;
        event.latitude = std::strtod(lat.c_str(), &end);
        bool good = !lat.empty() && end && *end == '\0';
        event.longitude = std::strtod(lon.c_str(), &end);
        event.hasGeo = good && !lon.empty() && end && *end == '\0';
    }
}

void readEvent(const json& node, const ParseLimits& limits, std::vector<FeedEvent>& out) {
    if (lower(field(node, "eventStatus")).find("cancelled") != std::string::npos) return;
    FeedEvent event;
    if (!splitDateTime(field(node, "startDate"), event.date, event.time)) return;
    event.summary = field(node, "name");
    event.url = field(node, "url");
    const json* performers = member(node, "performer");
    if (!performers) performers = member(node, "performers");
    eachOf(performers, [&event](const json& performer) {
        std::string name = performer.is_string() ? performer.get<std::string>()
                                                 : field(performer, "name");
        if (!name.empty()) event.performers.push_back(name);
    });
    eachOf(member(node, "location"), [&event](const json& place) { readLocation(place, event); });
    eachOf(member(node, "offers"), [&event](const json& offer) {
        if (event.ticketUrl.empty()) event.ticketUrl = field(offer, "url");
        if (event.availability.empty()) event.availability = schemaTerm(field(offer, "availability"));
    });
    if (out.size() >= limits.maxEvents)
        throw FeedError("more than " + std::to_string(limits.maxEvents) + " events");
    out.push_back(std::move(event));
}

void walk(const json& node, const ParseLimits& limits, std::vector<FeedEvent>& out, int depth) {
    if (depth > 32) return; // JSON-LD worth reading is never this deep
    if (node.is_array()) {
        for (const json& item : node) walk(item, limits, out, depth + 1);
        return;
    }
    if (!node.is_object()) return;
    if (isEventType(node)) readEvent(node, limits, out);
    if (const json* graph = member(node, "@graph")) walk(*graph, limits, out, depth + 1);
}

// The contents of every script element whose type is application/ld+json.
std::vector<std::string> scriptBlocks(const std::string& page) {
    const std::string folded = lower(page);
    std::vector<std::string> blocks;
    size_t at = 0;
    while ((at = folded.find("<script", at)) != std::string::npos) {
        const size_t tagEnd = folded.find('>', at);
        if (tagEnd == std::string::npos) break;
        const size_t close = folded.find("</script", tagEnd);
        if (close == std::string::npos) break;
        if (folded.substr(at, tagEnd - at).find("application/ld+json") != std::string::npos)
            blocks.push_back(page.substr(tagEnd + 1, close - tagEnd - 1));
        at = close;
    }
    return blocks;
}

} // namespace

std::vector<FeedEvent> parseJsonLd(const std::string& text, const ParseLimits& limits) {
    std::vector<std::string> blocks;
    size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (first != std::string::npos && (text[first] == '{' || text[first] == '['))
        blocks.push_back(text);
    else
        blocks = scriptBlocks(text);
    if (blocks.empty()) throw FeedError("no application/ld+json script in the page");
    std::vector<FeedEvent> events;
    size_t readable = 0;
    std::string firstProblem;
    for (size_t i = 0; i < blocks.size(); ++i) {
        json document = json::parse(blocks[i], nullptr, /*allow_exceptions=*/false);
        if (document.is_discarded()) {
            if (firstProblem.empty())
                firstProblem = "script block " + std::to_string(i + 1) + " is not valid JSON";
            continue;
        }
        ++readable;
        walk(document, limits, events, 0);
    }
    // One broken block among good ones costs only its own events.
    if (readable == 0) throw FeedError(firstProblem);
    return events;
}

} // namespace service
