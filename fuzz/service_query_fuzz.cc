// The service's reading of a request target's query.
#include <string>
#include <vector>

#include "query.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<std::string> keys = {"TODO", "CITY", "STATE", "RADIUS",
                                                  "USERNAME", "URL", "VERSION"};
    std::string target(reinterpret_cast<const char*>(data), size);
    service::Query query(service::rawQuery(target), keys);
    (void)query.problem();
    (void)query.firstMissing(keys);
    for (const std::string& key : keys) (void)query.get(key);
    return 0;
}
