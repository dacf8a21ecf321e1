// The text side of location resolution: the region table and its lookup,
// the city-name cleaner and the distance between two coordinates.
#include <cctype>
#include <cmath>
#include <cstring>
#include <map>
#include <string>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "update/location.h"

namespace {

struct Region {
    const char* name; // cleaned: lower-case letters and digits only
    const char* abbreviation;
};

// Inserted in this order; a later name replaces an earlier one, so "iceland"
// ends as "ice" and "korea" as "kor", and "isl" and "sko" abbreviate nothing.
// Nova Scotia, New Brunswick, Prince Edward Island, the Northwest Territories
// and Nunavut are left out on purpose: the service covers none of them.
// clang-format off
const Region kRegions[] = {
    {"alabama", "al"}, {"alaska", "ak"}, {"alberta", "ab"}, {"algeria", "alg"},
    {"argentina", "arg"}, {"arizona", "az"}, {"arkansas", "ar"}, {"australia", "aus"},
    {"austria", "aut"}, {"bahamas", "bah"}, {"belgium", "bel"}, {"belize", "blz"}, {"benin", "ben"},
    {"brazil", "bra"}, {"britishcolumbia", "bc"}, {"burkinafaso", "bfa"}, {"california", "ca"},
    {"cambodia", "cam"}, {"capeverde", "cv"}, {"chile", "chl"}, {"china", "chn"},
    {"colorado", "co"}, {"connecticut", "ct"}, {"cyprus", "cyp"}, {"czechrepublic", "cze"},
    {"delaware", "de"}, {"denmark", "den"}, {"districtofcolumbia", "dc"},
    {"dominicanrepublic", "dr"}, {"elsalvador", "slv"}, {"estonia", "est"}, {"finland", "fin"},
    {"florida", "fl"}, {"france", "fra"}, {"gambia", "gam"}, {"georgia", "ga"}, {"germany", "ger"},
    {"ghana", "gha"}, {"greece", "gre"}, {"guinea", "gui"}, {"guyana", "guy"}, {"hawaii", "hi"},
    {"honduras", "hon"}, {"hungary", "hun"}, {"iceland", "isl"}, {"iceland", "ice"},
    {"idaho", "id"}, {"illinois", "il"}, {"india", "ind"}, {"indiana", "in"}, {"indonesia", "idn"},
    {"iowa", "ia"}, {"ireland", "ire"}, {"israel", "isr"}, {"italy", "ita"}, {"ivorycoast", "ivo"},
    {"jamaica", "jam"}, {"japan", "jpn"}, {"kansas", "ks"}, {"kentucky", "ky"}, {"korea", "sko"},
    {"korea", "kor"}, {"laos", "lao"}, {"latvia", "lat"}, {"liberia", "lib"},
    {"liechtenstein", "lie"}, {"louisiana", "la"}, {"luxembourg", "lux"}, {"macau", "mac"},
    {"maine", "me"}, {"malaysia", "mal"}, {"mali", "mli"}, {"manitoba", "mb"}, {"maryland", "md"},
    {"massachusetts", "ma"}, {"mexico", "mex"}, {"michigan", "mi"}, {"minnesota", "mn"},
    {"mississippi", "ms"}, {"missouri", "mo"}, {"montana", "mt"}, {"morocco", "mor"},
    {"nebraska", "ne"}, {"netherlands", "net"}, {"nevada", "nv"}, {"newfoundland", "nf"},
    {"newhampshire", "nh"}, {"newjersey", "nj"}, {"newmexico", "nm"}, {"newyork", "ny"},
    {"newzealand", "nz"}, {"niger", "nig"}, {"northcarolina", "nc"}, {"northdakota", "nd"},
    {"norway", "nor"}, {"ohio", "oh"}, {"oklahoma", "ok"}, {"ontario", "on"}, {"oregon", "or"},
    {"paraguay", "par"}, {"pennsylvania", "pa"}, {"peru", "per"}, {"philippines", "phi"},
    {"poland", "pol"}, {"portugal", "por"}, {"puertorico", "pr"}, {"quebec", "qc"},
    {"rhodeisland", "ri"}, {"russia", "rus"}, {"saskatchewan", "sk"}, {"senegal", "sen"},
    {"sierraleone", "sie"}, {"singapore", "sin"}, {"southafrica", "saf"}, {"southcarolina", "sc"},
    {"southdakota", "sd"}, {"spain", "spa"}, {"suriname", "sur"}, {"sweden", "swe"},
    {"switzerland", "swi"}, {"tennessee", "tn"}, {"texas", "tx"}, {"togo", "tog"},
    {"tunisia", "tun"}, {"turkey", "tur"}, {"unitedarabemirates", "uae"}, {"unitedkingdom", "uk"},
    {"utah", "ut"}, {"venezuela", "ven"}, {"vermont", "vt"}, {"virginia", "va"},
    {"washington", "wa"}, {"westvirginia", "wv"}, {"wisconsin", "wi"}, {"wyoming", "wy"},
    {"yukonterritory", "yt"},
};
// clang-format on
static_assert(sizeof kRegions / sizeof kRegions[0] == 136, "region table changed");

const std::map<std::string, std::string>& regionTable() {
    static const std::map<std::string, std::string> table = [] {
        std::map<std::string, std::string> built;
        for (const Region& region : kRegions)
            built[region.name] = region.abbreviation;
        return built;
    }();
    return table;
}

void setCase(char* text, int (*change)(int)) {
    for (; *text; ++text)
        *text = static_cast<char>(change(static_cast<unsigned char>(*text)));
}

bool isLowerLetter(char c) {
    return c >= 'a' && c <= 'z';
}

} // namespace

int latLongStateAbbrev(char* text) {
    char work[kLocationTextSize];
    copyText(work, text, sizeof work);
    setCase(work, tolower);
    substringErase(work);

    const auto& table = regionTable();
    int result = -1;
    auto byName = table.find(work);
    if (byName != table.end()) {
        copyText(work, byName->second.c_str());
        result = 0;
    } else {
        for (const auto& entry : table) {
            if (entry.second == work) {
                result = 0;
                break;
            }
        }
    }
    if (result == 0) setCase(work, toupper);
    copyText(text, work, kLocationTextSize);
    return result;
}

void cleanCity(char* text) {
    std::string city(text, strnlen(text, kLocationTextSize));
    for (char& c : city)
        c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    for (size_t i = 1; i < city.size(); ++i) {
        if (city[i - 1] == ' ' && isLowerLetter(city[i])) city[i] = static_cast<char>(city[i] - 32);
    }
    std::string shrunk;
    for (char c : city) {
        if (c == ' ' && (shrunk.empty() || shrunk.back() == ' ')) continue;
        shrunk += c;
    }
    if (!shrunk.empty() && shrunk.back() == ' ') shrunk.pop_back();
    if (!shrunk.empty() && isLowerLetter(shrunk[0])) shrunk[0] = static_cast<char>(shrunk[0] - 32);
    copyText(text, shrunk.c_str(), kLocationTextSize);
}

double lat_lon_distance(double lat1, double lon1, double lat2, double lon2) {
    constexpr double kPi = 3.14159265;
    constexpr double kEarthRadiusKm = 6378.0;
    constexpr double kMilesPerKm = 0.621371192;
    auto radians = [](double degrees) { return degrees * kPi / 180.0; };
    double dlat = radians(lat2) - radians(lat1);
    double dlon = radians(lon2) - radians(lon1);
    double a = sin(dlat * 0.5) * sin(dlat * 0.5) +
               cos(radians(lat1)) * cos(radians(lat2)) * sin(dlon * 0.5) * sin(dlon * 0.5);
    double c = 2.0 * atan2(sqrt(a), sqrt(1.0 - a));
    return c * kEarthRadiusKm * kMilesPerKm;
}
