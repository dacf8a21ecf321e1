// Reply texts: see replies.h.
#include "replies.h"

#include "geo.h"
#include "text.h"

#include <cstdio>
#include <utility>

namespace service {
namespace {

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

void appendTag(std::string& out, const char* tag, const std::string& value) {
    out += '<';
    out += tag;
    out += '>';
    out += tagSafe(value);
    out += "</";
    out += tag;
    out += '>';
}

// Field of a DISPLAY_USER_SHOWS block: "@@" would shift every later field.
std::string showField(const std::string& value) {
    std::string safe = tagSafe(value);
    size_t found;
    while ((found = safe.find("@@")) != std::string::npos) safe.erase(found, 1);
    return safe;
}

// Demo data names our own pages by path; the plug-in needs whole addresses.
std::string absolute(const std::string& url, const std::string& publicUrl) {
    return !url.empty() && url[0] == '/' ? publicUrl + url : url;
}

} // namespace

std::string latLonReply(const std::optional<Place>& place) {
    if (!place) return "<NOTFOUND>\n";
    return "<LAT>" + number(place->latitude) + "</LAT><LON>" + number(place->longitude) +
           "</LON>\n";
}

std::string eventPageAddress(const std::string& publicUrl, int64_t siteId) {
    return publicUrl + "/events/events.php?site=" + std::to_string(siteId);
}

std::string sitesReply(const std::vector<Site>& sites, const std::string& publicUrl) {
    // No enclosing element: the plug-in counts every "<site" in the reply.
    std::string reply;
    for (const Site& site : sites) {
        reply += "<site id=\"" + std::to_string(site.id) + "\"";
        reply += site.sellsTickets ? " ticket=1>" : ">";
        reply += eventPageAddress(publicUrl, site.id);
        reply += "</site>\n";
    }
    return reply;
}

void appendEventLines(std::string& page, const Event& event, const std::string& publicUrl) {
    if (event.artists.empty()) return;
    for (size_t i = 1; i < event.artists.size(); ++i) {
        appendTag(page, "artist", event.artists[i]);
        page += '\n';
    }
    page += "<event>";
    appendTag(page, "artist", event.artists[0]);
    appendTag(page, "event_date", slashDate(event.date));
    appendTag(page, "venue_name", event.venue);
    appendTag(page, "event_url", absolute(event.url, publicUrl));
    appendTag(page, "venue_city", event.city);
    appendTag(page, "venue_state", event.state);
    // What feeds add; the plug-in reads only its six tags and skips these.
    const std::pair<const char*, std::string> extras[] = {
        {"event_time", event.time},
        {"venue_address", event.address},
        {"ticket_url", absolute(event.ticketUrl, publicUrl)},
        {"ticket_availability", event.availability}};
    for (const auto& extra : extras)
        if (!extra.second.empty()) appendTag(page, extra.first, extra.second);
    page += "</event>\n";
}

void appendReleaseLine(std::string& page, const Release& release) {
    appendTag(page, "D", release.date);
    appendTag(page, "A", release.artist);
    appendTag(page, "T", release.title);
    page += "<F>";
    for (const std::string& format : release.formats) {
        page += showField(format);
        page += "@@";
    }
    page += "</F>";
    appendTag(page, "L", release.asin);
    page += '\n';
}

std::string localUsersReply(const std::vector<SharingUser>& users) {
    std::string reply = "<users>\n";
    for (const SharingUser& user : users) {
        reply += "<entry>";
        appendTag(reply, "USERNAME", user.username);
        appendTag(reply, "CITY", user.city);
        appendTag(reply, "STATE", user.state);
        appendTag(reply, "FIRSTNAME", user.firstName);
        appendTag(reply, "LASTNAME", user.lastName);
        reply += "</entry>\n";
    }
    reply += "</users>\n";
    return reply;
}

std::string userShowsReply(const std::vector<SharedShow>& shows, const std::string& publicUrl) {
    std::string reply = "<shows>\n";
    for (const SharedShow& show : shows) {
        reply += "<event>";
        reply += std::to_string(show.year) + "@@" + std::to_string(show.month) + "@@" +
                 std::to_string(show.day) + "@@" + (show.ticketsAvailable ? "1" : "0") + "@@";
        reply += showField(show.artist) + "@@" + showField(show.venue) + "@@" +
                 showField(show.location) + "@@" + showField(absolute(show.url, publicUrl)) + "@@" +
                 showField(show.otherArtists);
        // The reader drops the block's last character from the ninth field.
        reply += "\n</event>\n";
    }
    reply += "</shows>\n";
    return reply;
}

std::string ipLocationPage(const std::optional<Location>& location) {
    std::string where = "UNKNOWN";
    if (location) {
        // The reader takes the region up to the next comma: none may be inside.
        std::string country = tagSafe(location->country), region = tagSafe(location->region);
        for (char& c : country)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        for (char& c : region)
            if (c == ',') c = ' ';
        where = country + ", " + region + ", " + tagSafe(location->city);
    }
    return htmlPage("Where you are", "<p>Your location: <span class=\"location\">" + where +
                                         "</span></p>");
}

std::string htmlEscape(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '&': escaped += "&amp;"; break;
        case '"': escaped += "&quot;"; break;
        default: escaped += c;
        }
    }
    return escaped;
}

std::string htmlPage(const std::string& title, const std::string& bodyHtml) {
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + htmlEscape(title) +
           "</title></head>\n<body><h1>" + htmlEscape(title) + "</h1>\n" + bodyHtml +
           "\n</body></html>\n";
}

} // namespace service
