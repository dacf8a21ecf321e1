// Where the plug-in's requests go. The service host and the geolocation page
// come from the environment so that a deployment, or a test with a loopback
// server, can point every request elsewhere:
//   STAGEBEACON_SERVICE      base address of the service host
//                            (default http://127.0.0.1:8470)
//   STAGEBEACON_GEOLOCATION  the IP-geolocation page
//                            (default the service's /ip-location page)
// Both are read on every call, so a change applies to the next request.
//
// Threads: any; the environment must not be changed while another thread
// builds an address.
#pragma once

#include <string>

constexpr const char* kDefaultServiceHost = "http://127.0.0.1:8470";

// The service host without a trailing "/".
std::string serviceHost();
// The service host followed by `pathAndQuery` (which starts with "/").
std::string serviceAddress(const char* pathAndQuery);
// The page that names the visitor's country, region and city.
std::string geolocationAddress();
