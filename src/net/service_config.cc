// Reads the service host and geolocation page from the environment.
#include "net/service_config.h"

#include <cstdlib>

std::string serviceHost() {
    const char* configured = getenv("STAGEBEACON_SERVICE");
    std::string host = configured && *configured ? configured : kDefaultServiceHost;
    while (!host.empty() && host.back() == '/')
        host.pop_back();
    return host;
}

std::string serviceAddress(const char* pathAndQuery) {
    return serviceHost() + pathAndQuery;
}

std::string geolocationAddress() {
    const char* configured = getenv("STAGEBEACON_GEOLOCATION");
    if (configured && *configured) return configured;
    return serviceAddress("/ip-location");
}
