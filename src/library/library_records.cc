#include "library/library_records.h"

#include <mutex>

#include "model/linked.h"

void LibraryRecords::release() {
    {
        std::lock_guard<std::mutex> guard(artists.mutex);
        deleteNodes(artists);
    }
    std::lock_guard<std::mutex> guard(albums.mutex);
    deleteNodes(albums);
}
