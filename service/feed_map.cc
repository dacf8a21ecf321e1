// Feed events into site events: see feed_map.h.
#include "feed_map.h"

#include "text.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

namespace service {
namespace {

void appendUtf8(std::string& out, unsigned long code) {
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Length of a well-formed UTF-8 sequence at `at`, 0 when there is none.
size_t utf8Length(const std::string& text, size_t at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 0;
    const unsigned char second = static_cast<unsigned char>(text[at + 1]);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F))
        return 0;
    return length;
}

// "&amp;", "&#233;", "&#x2019;" and the few named ones pages use in names.
size_t decodeReference(const std::string& text, size_t at, std::string& out) {
    static const std::map<std::string, unsigned long> kNamed = {
        {"amp", '&'}, {"lt", '<'},  {"gt", '>'},      {"quot", '"'},
        {"apos", '\''}, {"nbsp", ' '}, {"#39", '\''}};
    const size_t end = text.find(';', at);
    if (end == std::string::npos || end - at > 10) return 0;
    const std::string name = text.substr(at + 1, end - at - 1);
    unsigned long code = 0;
    auto named = kNamed.find(name);
    if (named != kNamed.end()) code = named->second;
    else if (name.size() > 2 && (name[1] == 'x' || name[1] == 'X') && name[0] == '#')
        code = std::strtoul(name.c_str() + 2, nullptr, 16);
    else if (name.size() > 1 && name[0] == '#')
        code = std::strtoul(name.c_str() + 1, nullptr, 10);
    else
        return 0;
    appendUtf8(out, code);
    return end - at + 1;
}

std::string trim(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "Venue, 12 Main St, Springfield, IL 62701": the venue first, then the
// street, the city and the region (a trailing postcode dropped).
void splitLocation(const std::string& location, std::string& venue, std::string& address,
                   std::string& city, std::string& state) {
    std::vector<std::string> parts;
    for (const std::string& part : split(location, ",")) {
        std::string clean = trim(part);
        if (!clean.empty()) parts.push_back(clean);
    }
    // A postcode of its own at the end ("Lynn, MA, 01901") says nothing we keep.
    if (parts.size() > 1 && parts.back().find_first_not_of("0123456789- ") == std::string::npos)
        parts.pop_back();
    if (parts.empty()) return;
    if (venue.empty()) venue = parts.front();
    if (parts.size() < 3 || !city.empty()) return;
    std::string region = parts.back();
    const size_t blank = region.find(' ');
    if (blank != std::string::npos && region.find_first_of("0123456789") != std::string::npos)
        region = region.substr(0, blank); // "IL 62701" -> "IL"
    state = region;
    city = parts[parts.size() - 2];
    std::vector<std::string> street(parts.begin() + 1, parts.end() - 2);
    if (address.empty()) address = join(street, ", ");
}

std::string lowerKey(const std::string& text) {
    std::string key;
    for (unsigned char c : text) {
        if (c >= 'A' && c <= 'Z') key += static_cast<char>(c - 'A' + 'a');
        else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c >= 0x80) key += static_cast<char>(c);
    }
    return key;
}

} // namespace

// Most texts are already clean: printable ASCII, single blanks, no
// references, short enough.
static bool isClean(const std::string& text) {
    if (text.size() > kMaxFieldBytes || (!text.empty() && (text.front() == ' ' || text.back() == ' ')))
        return false;
    char previous = 0;
    for (char c : text) {
        if (c < 0x20 || c == 0x7F || c == '&' || (c == ' ' && previous == ' ')) return false;
        previous = c;
    }
    return true; // bytes >= 0x80 are negative chars and fail c < 0x20 above
}

std::string cleanText(const std::string& text) {
    if (isClean(text)) return text;
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size() && out.size() < kMaxFieldBytes;) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '&') {
            size_t used = decodeReference(text, i, out);
            if (used) {
                i += used;
                continue;
            }
        }
        if (c < 0x80) {
            out += (c < 0x20 || c == 0x7F) ? ' ' : static_cast<char>(c);
            ++i;
        } else if (size_t length = utf8Length(text, i)) {
            out.append(text, i, length);
            i += length;
        } else {
            appendUtf8(out, c); // a Latin-1 byte
            ++i;
        }
    }
    // One blank between words, none at the ends; never a cut character.
    std::string single;
    for (char c : out) {
        if (c == ' ' && (single.empty() || single.back() == ' ')) continue;
        single += c;
    }
    while (!single.empty() && single.back() == ' ') single.pop_back();
    if (single.size() > kMaxFieldBytes) {
        single.resize(kMaxFieldBytes);
        size_t last = single.size() - 1; // start of the last character
        while (last > 0 && (static_cast<unsigned char>(single[last]) & 0xC0) == 0x80) --last;
        if (static_cast<unsigned char>(single[last]) >= 0x80 &&
            utf8Length(single, last) != single.size() - last)
            single.resize(last);
    }
    return single;
}

std::string showKey(const std::string& date, const std::string& artist, const std::string& venue) {
    std::string key = lowerKey(artist);
    if (key.compare(0, 3, "the") == 0 && key.size() > 3) key.erase(0, 3);
    return date + "|" + key + "|" + lowerKey(venue);
}

std::vector<std::string> performersFromSummary(const std::string& summary, std::string* venue) {
    std::vector<std::string> names;
    if (summary.find(" / ") != std::string::npos) {
        for (const std::string& name : split(summary, " / "))
            if (!trim(name).empty()) names.push_back(trim(name));
        return names;
    }
    const size_t at = summary.rfind(" at ");
    if (at != std::string::npos && at > 0) {
        if (venue && venue->empty()) *venue = trim(summary.substr(at + 4));
        names.push_back(trim(summary.substr(0, at)));
        return names;
    }
    if (!trim(summary).empty()) names.push_back(trim(summary));
    return names;
}

std::vector<Event> eventsFromFeed(const std::vector<FeedEvent>& feed, const Site& site,
                                  Storage& storage, const std::string& today, MapCounts& counts) {
    std::vector<Event> events;
    std::set<std::string> seen;
    std::map<std::string, std::optional<Place>> places; // one look-up per city
    for (const FeedEvent& entry : feed) {
        if (entry.date < today) {
            ++counts.past;
            continue;
        }
        Event event;
        event.siteId = site.id;
        event.date = entry.date;
        event.time = entry.time;
        std::string venue = cleanText(entry.venue), address = cleanText(entry.address);
        std::string city = cleanText(entry.city), state = cleanText(entry.state);
        splitLocation(cleanText(entry.location), venue, address, city, state);
        std::vector<std::string> named = entry.performers;
        if (named.empty()) named = performersFromSummary(cleanText(entry.summary), &venue);
        for (const std::string& name : named) {
            std::string clean = cleanText(name);
            if (!clean.empty()) event.artists.push_back(clean);
        }
        if (event.artists.empty()) {
            ++counts.noArtist;
            continue;
        }
        if (!seen.insert(showKey(event.date, event.artists[0], venue)).second) {
            ++counts.duplicates;
            continue;
        }
        event.venue = venue;
        event.address = address;
        event.city = city;
        event.state = state;
        event.url = cleanText(entry.url);
        event.ticketUrl = cleanText(entry.ticketUrl);
        event.availability = cleanText(entry.availability);
        if (event.url.empty()) event.url = event.ticketUrl;
        event.latitude = site.latitude;
        event.longitude = site.longitude;
        if (entry.hasGeo && entry.latitude >= -90 && entry.latitude <= 90 &&
            entry.longitude >= -180 && entry.longitude <= 180) {
            event.latitude = entry.latitude;
            event.longitude = entry.longitude;
        } else if (!city.empty()) {
            auto found = places.find(city + "\n" + state);
            if (found == places.end())
                found = places.emplace(city + "\n" + state, storage.findPlace(city, state)).first;
            if (found->second) {
                event.latitude = found->second->latitude;
                event.longitude = found->second->longitude;
            }
        }
        events.push_back(std::move(event));
    }
    return events;
}

} // namespace service
