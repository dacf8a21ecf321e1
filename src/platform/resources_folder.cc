#include "platform/resources_folder.h"

#include <dlfcn.h>

#include <cstdlib>

std::string resourcesFolder() {
    if (const char* env = getenv("STAGEBEACON_RESOURCES"); env && *env) return env;
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&resourcesFolder), &info) && info.dli_fname) {
        std::string path = info.dli_fname;
        size_t slash = path.rfind('/');
        return (slash == std::string::npos ? std::string(".") : path.substr(0, slash)) +
               "/resources";
    }
    return "resources";
}

std::string resourcePath(const char* name) { return resourcesFolder() + "/" + name; }
