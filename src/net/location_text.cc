// The text side of location resolution: the region table and its lookup,
// the city-name cleaner and the distance between two coordinates.
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>

#include "model/fixed_text.h"
#include "net/location_text.h"
#include "net/region_abbreviation.h"

namespace {

// Inserted in this order; a later name replaces an earlier one, so "iceland"
// ends as "ice" and "korea" as "kor", and "isl" and "sko" abbreviate nothing.
// Nova Scotia, New Brunswick, Prince Edward Island, the Northwest Territories
// and Nunavut are left out on purpose: the service covers none of them.
// clang-format off
const RegionPair kRegions[] = {
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

bool isLowerLetter(char c) {
    return c >= 'a' && c <= 'z';
}

} // namespace

int latLongStateAbbrev(char* text) {
    return abbreviateRegion(text, kRegions, sizeof kRegions / sizeof kRegions[0]);
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
