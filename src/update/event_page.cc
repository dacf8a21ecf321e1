#include "update/event_page.h"

#include <cstdio>
#include <cstdlib>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "net/text_helpers.h"

namespace {

constexpr std::string_view kSiteOpen = "<site";
constexpr std::string_view kSiteClose = "</site>";
constexpr std::string_view kEventEnd = "</event>";

// One record being gathered. The six flags say which elements were seen.
struct Record {
    std::vector<std::string> artists;
    std::string date, venue, url, city, state;
    bool seenArtist = false, seenDate = false, seenVenue = false;
    bool seenUrl = false, seenCity = false, seenState = false;

    bool complete() const {
        return seenArtist && seenDate && seenVenue && seenUrl && seenCity && seenState;
    }
    void clearFlags() {
        seenArtist = seenDate = seenVenue = seenUrl = seenCity = seenState = false;
    }
    void read(std::string_view line) {
        std::string_view v;
        if (elementBetween(line, "<artist>", "</artist>", v)) {
            artists.emplace_back(v);
            seenArtist = true;
        }
        struct Field {
            std::string_view open, close;
            std::string* value;
            bool* seen;
        };
        const Field fields[] = {
            {"<event_date>", "</event_date>", &date, &seenDate},
            {"<venue_name>", "</venue_name>", &venue, &seenVenue},
            {"<event_url>", "</event_url>", &url, &seenUrl},
            {"<venue_city>", "</venue_city>", &city, &seenCity},
            {"<venue_state>", "</venue_state>", &state, &seenState},
        };
        for (const Field& f : fields) {
            if (elementBetween(line, f.open, f.close, v)) {
                f.value->assign(v);
                *f.seen = true;
            }
        }
    }
};

// Reads one piece as "%d" would (blanks, a sign, digits; what follows is
// ignored); 0 when it holds no number. strtol is what "%d" reads with, so
// even an overlong number ends the same, without scanf's cost per field.
int number(const std::string& piece) {
    return static_cast<int>(strtol(piece.c_str(), nullptr, 10));
}

// "month/day/year", split at the first "/" and the next one after it.
void readDate(const std::string& date, SHOWENTRY* e) {
    size_t first = date.find('/');
    size_t second = first == std::string::npos ? std::string::npos : date.find('/', first + 1);
    e->month = number(date.substr(0, first));
    e->day = first == std::string::npos ? 0 : number(date.substr(first + 1, second - first - 1));
    e->year = second == std::string::npos ? 0 : number(date.substr(second + 1));
}

std::string keyOf(const std::string& name) {
    char key[kArtistKeySize];
    copyText(key, name.c_str());
    cleanArtist(key);
    return key;
}

void fileRecord(const Record& record, const EventFiling& filing) {
    std::vector<std::string> keys;
    keys.reserve(record.artists.size());
    for (const std::string& name : record.artists) keys.push_back(keyOf(name));
    std::string location = record.city + ", " + record.state;

    for (size_t i = 0; i < record.artists.size(); ++i) {
        std::lock_guard<std::mutex> libraryGuard(filing.library->mutex);
        if (!filing.index->contains(keys[i])) continue;
        SHOWENTRY* e = new SHOWENTRY;
        copyText(e->artist, record.artists[i].c_str());
        copyText(e->artistKey, keys[i].c_str()); // the key of the same 255 characters
        copyText(e->venue, record.venue.c_str());
        readDate(record.date, e);
        copyText(e->otherArtists, otherActs(record.artists, keys, keys[i]).c_str());
        copyText(e->url, record.url.c_str());
        copyText(e->location, location.c_str());
        e->ticketsAvailable = filing.ticketsAvailable;
        copyText(e->source, filing.source ? filing.source : "");
        if (!filing.shows->addShow(e, filing.previous)) delete e;
    }
}

} // namespace

int countSiteTemplates(std::string_view reply) {
    int n = 0;
    for (size_t at = reply.find(kSiteOpen); at != std::string_view::npos;
         at = at + 6 <= reply.size() ? reply.find(kSiteOpen, at + 6) : std::string_view::npos)
        ++n;
    return n;
}

std::vector<SiteTemplate> splitSiteTemplates(std::string_view reply) {
    std::vector<SiteTemplate> sites;
    size_t start = reply.find(kSiteOpen);
    size_t end = reply.find(kSiteClose);
    while (start != std::string_view::npos && end != std::string_view::npos) {
        if (end < start) end = reply.find(kSiteClose, start);
        if (end == std::string_view::npos) break;
        std::string_view text = reply.substr(start, end - start);
        size_t gt = text.find('>');
        sites.push_back({text.find("ticket=1") != std::string_view::npos,
                         gt == std::string_view::npos ? std::string() : std::string(text.substr(gt + 1))});
        start = reply.find(kSiteOpen, end);
        if (start == std::string_view::npos) break;
        end = reply.find(kSiteClose, start);
    }
    return sites;
}

std::string otherActs(const std::vector<std::string>& artists, const std::vector<std::string>& keys,
                      const std::string& key) {
    std::string joined;
    for (size_t i = 0; i < artists.size(); ++i) {
        if (keys[i] == key) continue;
        joined += artists[i];
        joined += ", ";
    }
    // Only a bill with some other name gets past ", " alone (so "U2" stays).
    if (joined.size() <= 2) return std::string();
    joined.resize(joined.size() - 2);
    if (joined.size() > 1023) joined.resize(1023);
    return joined;
}

int parseEventPage(std::string_view page, const EventFiling& filing) {
    Record record;
    bool strict = false;
    size_t pos = 0;
    while (pos < page.size()) {
        size_t feed = page.find('\n', pos);
        if (feed == std::string_view::npos) break;
        std::string_view line = page.substr(pos, feed - pos);
        pos = feed + 1;

        record.read(line);
        if (line.find(kEventEnd) == std::string_view::npos && !strict) continue;
        if (!record.complete()) {
            strict = true;
            record.clearFlags();
            continue;
        }
        if (filing.stopRequested && filing.stopRequested()) return -1;
        fileRecord(record, filing);
        strict = false;
        record.clearFlags();
        record.artists.clear();
    }
    return 0;
}
