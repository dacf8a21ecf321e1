// The service's reply with a friend's shared calendar.
#include <string_view>

#include "fuzz_support.h"
#include "sharing/friend_shows.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ShowListRef shows = makeShowList();
    ShowListRef previous = makeShowList();
    (void)fileFriendShows(std::string_view(reinterpret_cast<const char*>(data), size), "pat",
                          shows.get(), previous.get());
    return 0;
}
