#include "net/region_abbreviation.h"

#include <cctype>
#include <cstring>

#include "model/artist_key.h"

namespace {

// A pair is shadowed when a later pair carries the same name: its
// abbreviation is then no longer in the table.
bool shadowed(const RegionPair* table, size_t count, size_t i) {
    for (size_t j = i + 1; j < count; ++j)
        if (strcmp(table[j].name, table[i].name) == 0) return true;
    return false;
}

} // namespace

int abbreviateRegion(char* buffer, const RegionPair* table, size_t count) {
    size_t n = 0;
    for (; n < kArtistKeySize - 1 && buffer[n]; ++n)
        buffer[n] = static_cast<char>(tolower(static_cast<unsigned char>(buffer[n])));
    buffer[n] = '\0';
    substringErase(buffer);

    const char* found = nullptr;
    for (size_t i = count; i-- > 0 && !found;)
        if (strcmp(table[i].name, buffer) == 0) found = table[i].abbreviation;
    for (size_t i = 0; i < count && !found; ++i)
        if (strcmp(table[i].abbreviation, buffer) == 0 && !shadowed(table, count, i))
            found = table[i].abbreviation;
    if (!found) return -1;

    size_t i = 0;
    for (; found[i] && i < kArtistKeySize - 1; ++i)
        buffer[i] = static_cast<char>(toupper(static_cast<unsigned char>(found[i])));
    buffer[i] = '\0';
    return 0;
}
