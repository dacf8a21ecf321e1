// The reply texts, in the layouts the plug-in scans for. It reads them as
// plain text looking for fixed tags, so every value written between tags is
// passed through tagSafe first (no tag characters, no line breaks).
#pragma once

#include "storage.h"

#include <optional>
#include <string>
#include <vector>

namespace service {

// "<LAT>..</LAT><LON>..</LON>" or "<NOTFOUND>".
std::string latLonReply(const std::optional<Place>& place);

// One "<site ...>address</site>" line per site. Only sites that sell
// tickets carry the text "ticket=1" anywhere in their element.
std::string sitesReply(const std::vector<Site>& sites, const std::string& publicUrl);
// The address the plug-in appends "&city=..&state=..&radius=.." to.
std::string eventPageAddress(const std::string& publicUrl, int64_t siteId);

// Event page lines. Each record is complete on one line; the acts after the
// headliner go on "<artist>" lines of their own just before it, which the
// plug-in gathers into the record that follows. Relative event addresses
// are made absolute with `publicUrl`. A feed's time, address, ticket link
// and availability follow as tags of their own on the record's line.
void appendEventLines(std::string& page, const Event& event, const std::string& publicUrl);

// "<D>YYYY-MM-DD</D><A>..</A><T>..</T><F>a@@b@@</F><L>asin</L>" and a line feed.
void appendReleaseLine(std::string& page, const Release& release);

// GETLOCALUSERS: one "<entry>...</entry>" per user.
std::string localUsersReply(const std::vector<SharingUser>& users);

// DISPLAY_USER_SHOWS: one "<event>" block of nine "@@"-separated fields per
// show; relative show addresses are made absolute with `publicUrl`.
std::string userShowsReply(const std::vector<SharedShow>& shows, const std::string& publicUrl);

// The geolocation page: the location reads ">COUNTRY, REGION, CITY</span>".
struct Location {
    std::string country, region, city;
};
std::string ipLocationPage(const std::optional<Location>& location);

// A small HTML page; `bodyHtml` is inserted as it stands (callers escape).
std::string htmlPage(const std::string& title, const std::string& bodyHtml);
std::string htmlEscape(const std::string& text);

} // namespace service
