#include "plugin_loader.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>

bool openPluginLibrary(const std::string& path, PluginLibrary& library, std::string& error) {
    // dlopen searches the library path for a bare name; a plug-in named on
    // the command line is a file, so look for it where the user is.
    std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* reason = dlerror();
        error = "cannot load plug-in " + path + ": " + (reason ? reason : "unknown error");
        return false;
    }
    dlerror();
    void* symbol = dlsym(handle, kPlayerPluginEntryPointName);
    if (!symbol) {
        dlclose(handle);
        error = path + " has no entry point " + kPlayerPluginEntryPointName;
        return false;
    }
    char resolved[PATH_MAX];
    library.path = realpath(file.c_str(), resolved) ? resolved : file;
    library.handle = handle;
    library.entry = reinterpret_cast<PlayerPluginMainProc>(symbol);
    return true;
}
