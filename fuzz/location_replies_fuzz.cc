// The service's coordinates reply and the geolocation page.
#include <string>

#include "update/location.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Both replies are read as NUL-terminated text, as the fetch buffer is.
    std::string page(reinterpret_cast<const char*>(data), size);
    double lat = 0.0, lon = 0.0;
    (void)readCoordinatesReply(page.c_str(), &lat, &lon);
    char city[kLocationTextSize];
    char state[kLocationTextSize];
    (void)readGeolocationPage(page.c_str(), city, state);
    return 0;
}
