#include "library/pref_fields.h"

#include <cstdio>

std::vector<std::string_view> separatedFields(std::string_view line, std::string_view* rest) {
    std::vector<std::string_view> fields;
    size_t from = 0;
    for (size_t at = line.find("@@"); at != std::string_view::npos; at = line.find("@@", from)) {
        fields.push_back(line.substr(from, at - from));
        from = at + 2;
    }
    if (rest) *rest = line.substr(from);
    return fields;
}

bool readInt(std::string_view field, int* value) {
    // sscanf needs a terminated string; fields of interest are short.
    char text[32];
    size_t n = field.size() < sizeof text - 1 ? field.size() : sizeof text - 1;
    field.copy(text, n);
    text[n] = '\0';
    return sscanf(text, "%d", value) == 1;
}
