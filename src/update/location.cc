// The network side of location resolution: coordinates from the service's
// zip-code page and a first city and state from the geolocation page. Both
// hold the internet lock from writing the request until the reply is read.
//
// Zip-code reply: "<NOTFOUND>" anywhere, or "<LAT>..</LAT>" and
// "<LON>..</LON>" in any order among any other text.
// Geolocation page: the first of the country markers below that occurs
// anywhere decides, followed by ", REGION, CITY</span>" (or ", CITY" where
// the region is fixed).
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

#include "model/fixed_text.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"
#include "update/location.h"
#include "net/service_config.h"
#include "net/text_helpers.h"

namespace {

struct CountryMarker {
    const char* marker;
    const char* fixedState; // null: the region named on the page
};

const CountryMarker kCountryMarkers[] = {
    {">UNITED STATES,", nullptr}, {">UNITED KINGDOM,", "UK"}, {">GERMANY,", "Germany"},
    {">CANADA,", nullptr},        {">ITALY,", "Italy"},
};

// Holds the engine's internet lock for one scope.
class InternetLock {
  public:
    explicit InternetLock(CalGetData& engine) : engine(engine) { engine.lockInternet(); }
    ~InternetLock() { engine.unlockInternet(); }
    InternetLock(const InternetLock&) = delete;
    InternetLock& operator=(const InternetLock&) = delete;

  private:
    CalGetData& engine;
};

// The text of `page` between byte indexes [from, to), cut to 255 bytes.
std::string between(const char* page, int from, int to) {
    if (to <= from) return std::string();
    size_t length = static_cast<size_t>(to - from);
    return std::string(page + from, length < kLocationTextSize ? length : kLocationTextSize - 1);
}

// The number between `open` and `close`, read as a float the way the
// service has always been read; an unreadable number counts as 0.
double readCoordinate(const char* page, const char* open, const char* close) {
    int start = strFind(page, open, 0) + static_cast<int>(strlen(open));
    std::string text = between(page, start, strFind(page, close, 0));
    float value = 0.0f;
    if (sscanf(text.c_str(), "%f", &value) != 1) value = 0.0f;
    return static_cast<double>(value);
}

} // namespace

int readCoordinatesReply(const char* page, double* lat, double* lon) {
    *lat = 0.0;
    *lon = 0.0;
    if (strstr(page, "<NOTFOUND>")) return 0;
    for (const char* tag : {"<LAT>", "</LAT>", "<LON>", "</LON>"}) {
        if (!strstr(page, tag)) return -1;
    }
    *lat = readCoordinate(page, "<LAT>", "</LAT>");
    *lon = readCoordinate(page, "<LON>", "</LON>");
    return 0;
}

int readGeolocationPage(const char* page, char* city, char* state) {
    const CountryMarker* found = nullptr;
    int pos = -1;
    for (const CountryMarker& country : kCountryMarkers) {
        pos = strFind(page, country.marker, 0);
        if (pos >= 0) {
            found = &country;
            break;
        }
    }
    if (!found) return -1;
    int markerEnd = pos + static_cast<int>(strlen(found->marker));
    int comma = strFind(page, ",", markerEnd);
    int end = strFind(page, "</span>", pos);
    if (comma < 0 || end < 0 || comma > end) return -1;

    copyText(state,
             found->fixedState ? found->fixedState : between(page, markerEnd, comma).c_str(),
             kLocationTextSize);
    copyText(city, between(page, comma + 1, end).c_str(), kLocationTextSize);
    (void)latLongStateAbbrev(state); // an unknown region is kept in its cleaned form
    cleanCity(city);

    return 0;
}

int latLongLoc(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    CalGetData& engine = app->calGetData;
    store.setCurLat(0.0);
    store.setCurLon(0.0);

    char state[kLocationTextSize];
    store.getCurState(state);
    if (latLongStateAbbrev(state) != 0) return -1;

    InternetLock lock(engine);
    char city[kLocationTextSize];
    store.getCurCity(city);
    cleanCity(city);
    replaceSpacesWithPluses(city);
    std::string url =
        serviceAddress("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=") + city + "&STATE=" + state;
    if (engine.fetchPage(url) != 0) return -1;

    double lat = 0.0, lon = 0.0;
    if (readCoordinatesReply(engine.fetchBuffer.get(), &lat, &lon) != 0) return -1;
    store.setCurLat(lat);
    store.setCurLon(lon);
    return 0;
}

int ipLoc(StagebeaconClass* app) {
    ProtectedData& store = app->protectedData;
    CalGetData& engine = app->calGetData;
    InternetLock lock(engine);
    if (engine.fetchPage(geolocationAddress()) != 0) return -1;

    char state[kLocationTextSize];
    char city[kLocationTextSize];
    if (readGeolocationPage(engine.fetchBuffer.get(), city, state) != 0) return -1;
    store.setCurCity(city);
    store.setCurCityDisplay(city);
    store.setCurState(state);
    store.setCurStateDisplay(state);
    engine.locatedFromNetwork = true;
    return 0;
}
