#include "update/site_regions.h"

#include <iterator>

#include "model/artist_key.h"
#include "model/protected_data.h"
#include "update/location.h"
#include "net/region_abbreviation.h"

namespace {

// Names and codes as the concert sites know them. Some codes look odd
// (Austria "aus" beside Australia "au", Israel "irl", India "ina",
// Indonesia "ind", Singapore "sn", Slovak Republic "skr"): they are the ones
// the sites use, so they stay exactly as they are.
const RegionPair kSiteRegions[] = {
    {"alberta", "ab"}, {"alaska", "ak"}, {"alabama", "al"}, {"arkansas", "ar"},
    {"arizona", "az"}, {"britishcolumbia", "bc"}, {"california", "ca"}, {"colorado", "co"},
    {"connecticut", "ct"}, {"districtofcolumbia", "dc"}, {"delaware", "de"}, {"florida", "fl"},
    {"georgia", "ga"}, {"hawaii", "hi"}, {"iowa", "ia"}, {"idaho", "id"},
    {"illinois", "il"}, {"indiana", "in"}, {"kansas", "ks"}, {"kentucky", "ky"},
    {"louisiana", "la"}, {"massachusetts", "ma"}, {"manitoba", "mb"}, {"maryland", "md"},
    {"maine", "me"}, {"michigan", "mi"}, {"minnesota", "mn"}, {"missouri", "mo"},
    {"mississippi", "ms"}, {"montana", "mt"}, {"newbrunswick", "nb"}, {"northcarolina", "nc"},
    {"northdakota", "nd"}, {"nebraska", "ne"}, {"newfoundland", "nf"}, {"newhampshire", "nh"},
    {"newjersey", "nj"}, {"newmexico", "nm"}, {"novascotia", "ns"},
    {"northwestterritories", "nt"}, {"nevada", "nv"}, {"newyork", "ny"}, {"ohio", "oh"},
    {"oklahoma", "ok"}, {"ontario", "on"}, {"oregon", "or"}, {"pennsylvania", "pa"},
    {"princeedwardisland", "pe"}, {"quebec", "qc"}, {"rhodeisland", "ri"},
    {"southcarolina", "sc"}, {"southdakota", "sd"}, {"saskatchewan", "sk"},
    {"tennessee", "tn"}, {"texas", "tx"}, {"utah", "ut"}, {"virginia", "va"},
    {"vermont", "vt"}, {"washington", "wa"}, {"wisconsin", "wi"}, {"westvirginia", "wv"},
    {"wyoming", "wy"}, {"yukon", "yt"}, {"argentina", "arg"}, {"australia", "au"},
    {"austria", "aus"}, {"belgium", "bel"}, {"bermuda", "bmd"}, {"brazil", "br"},
    {"bahamas", "bs"}, {"chile", "cl"}, {"china", "cn"}, {"costarica", "cr"},
    {"czechrepublic", "cz"}, {"denmark", "den"}, {"dominicanrepublic", "dr"},
    {"estonia", "ee"}, {"ethiopia", "et"}, {"finland", "fin"}, {"france", "fra"},
    {"germany", "ger"}, {"ghana", "gh"}, {"greece", "gr"}, {"hungary", "hu"},
    {"india", "ina"}, {"indonesia", "ind"}, {"ireland", "ir"}, {"israel", "irl"},
    {"iceland", "is"}, {"italy", "ita"}, {"jamaica", "jm"}, {"japan", "jp"},
    {"southkorea", "kr"}, {"liechtenstein", "li"}, {"lithuania", "lt"}, {"luxembourg", "lu"},
    {"latvia", "lv"}, {"mexico", "mx"}, {"malaysia", "my"}, {"nigeria", "ng"},
    {"netherlands", "nl"}, {"norway", "nor"}, {"newzealand", "nz"}, {"peru", "per"},
    {"poland", "pl"}, {"portugal", "por"}, {"puertorico", "pr"}, {"russia", "rus"},
    {"slovakrepublic", "skr"}, {"singapore", "sn"}, {"spain", "spa"}, {"sweden", "swe"},
    {"switzerland", "swi"}, {"thailand", "th"}, {"turkey", "tr"},
    {"unitedarabemirates", "uae"}, {"unitedkingdom", "uk"}, {"virginislands", "vi"},
    {"southafrica", "za"},
};

static_assert(std::size(kSiteRegions) == 119, "the sites' region table has 119 entries");

} // namespace

SiteQueryValues siteQueryValues(ProtectedData& store) {
    char city[256], state[256];
    store.getCurCity(city);
    cleanCity(city);
    substringReplace(city, " ", "+");
    store.getCurState(state);
    (void)stateAbbrev_generic(state);
    return {city, state, std::to_string(store.getCurSearchRadius())};
}

int stateAbbrev_generic(char* buffer) {
    return abbreviateRegion(buffer, kSiteRegions, std::size(kSiteRegions));
}
