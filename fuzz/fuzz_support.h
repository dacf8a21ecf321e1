// Shared by the fuzz targets: files kept in memory (so each input costs no
// disk write) and one application object per process, with a small library,
// put back to a known state after each input.
//
// Threads: libFuzzer runs each target on one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "model/friend_list.h"
#include "model/library_lists.h"
#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

// An anonymous memory file reached by a path, rewritten for every input.
class MemoryFile {
  public:
    MemoryFile() : fd(memfd_create("stagebeacon-fuzz", MFD_CLOEXEC)) {
        if (fd < 0) abort();
        path = "/proc/self/fd/" + std::to_string(fd);
    }
    ~MemoryFile() { close(fd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void write(const uint8_t* data, size_t size) {
        if (ftruncate(fd, 0) != 0) abort();
        size_t done = 0;
        while (done < size) {
            ssize_t n = pwrite(fd, data + done, size - done, static_cast<off_t>(done));
            if (n <= 0) abort();
            done += static_cast<size_t>(n);
        }
    }
    void write(const std::string& text) {
        write(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    }
    const char* name() const { return path.c_str(); }

  private:
    int fd;
    std::string path;
};

// The application object every target shares. Its home is a fresh temporary
// folder, so nothing the targets do reaches the user's files.
inline std::unique_ptr<StagebeaconClass>& fuzzAppSlot() {
    static std::unique_ptr<StagebeaconClass> app = [] {
        char home[] = "/tmp/stagebeacon-fuzz.XXXXXX";
        if (!mkdtemp(home)) abort();
        setenv("HOME", home, 1);
        setenv("STAGEBEACON_SERVICE", "http://127.0.0.1:9", 1);
        return std::make_unique<StagebeaconClass>();
    }();
    return app;
}
inline StagebeaconClass& fuzzApp() { return *fuzzAppSlot(); }

// The library the page parsers match against: a few names of the kinds
// sites write (articles, "&", accents, a comma-reordered name).
inline void fillFuzzLibrary(StagebeaconClass& app) {
    if (app.calGetData.xmlArtists.head) return;
    for (const char* name : {"radiohead", "national", "beyonce", "simongarfunkel", "sigurros",
                             "mgmt", "bjork"}) {
        app.calGetData.xmlArtists.add(new XMLARTIST(name));
    }
}

// Drops what inputs left in the lists and the store (friends, filters), so
// memory stays flat over millions of inputs: a fresh object every so often.
inline void resetFuzzApp() {
    static unsigned inputs = 0;
    if (++inputs % 256 == 0) fuzzAppSlot() = std::make_unique<StagebeaconClass>();
}
