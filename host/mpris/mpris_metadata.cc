#include "mpris_metadata.h"

#include <cstring>

namespace {

// Unboxes nested variants ("v" inside "v"), as some players send them.
GVariant* unboxed(GVariant* value) {
    GVariant* current = g_variant_ref(value);
    while (g_variant_is_of_type(current, G_VARIANT_TYPE_VARIANT)) {
        GVariant* inner = g_variant_get_variant(current);
        g_variant_unref(current);
        current = inner;
    }
    return current;
}

void note(std::string& problems, const char* key, GVariant* value) {
    if (!problems.empty()) problems += "; ";
    problems += std::string(key) + " has type " + g_variant_get_type_string(value);
}

// The value under `key`, unboxed; null when there is none.
GVariant* lookupUnboxed(GVariant* dictionary, const char* key) {
    GVariant* raw = g_variant_lookup_value(dictionary, key, nullptr);
    if (!raw) return nullptr;
    GVariant* value = unboxed(raw);
    g_variant_unref(raw);
    return value;
}

// The first non-empty string of a string list; empty when the list has none
// or the value is no string list.
std::string firstName(GVariant* dictionary, const char* key, std::string& problems) {
    GVariant* value = lookupUnboxed(dictionary, key);
    if (!value) return "";
    std::string name;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY)) {
        gsize count = 0;
        const gchar** names = g_variant_get_strv(value, &count);
        for (gsize i = 0; i < count && name.empty(); ++i)
            name = names[i];
        g_free(names);
    } else {
        note(problems, key, value);
    }
    g_variant_unref(value);
    return name;
}

std::string text(GVariant* dictionary, const char* key, std::string& problems) {
    GVariant* value = lookupUnboxed(dictionary, key);
    if (!value) return "";
    std::string result;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING))
        result = g_variant_get_string(value, nullptr);
    else
        note(problems, key, value);
    g_variant_unref(value);
    return result;
}

} // namespace

bool mprisTrackFromMetadata(GVariant* metadata, MprisTrack& track, std::string& problems) {
    problems.clear();
    if (!metadata) {
        problems = "no metadata";
        return false;
    }
    GVariant* dictionary = unboxed(metadata);
    if (!g_variant_is_of_type(dictionary, G_VARIANT_TYPE_VARDICT)) {
        problems = std::string("metadata has type ") + g_variant_get_type_string(dictionary);
        g_variant_unref(dictionary);
        return false;
    }
    track = MprisTrack();
    track.artist = firstName(dictionary, "xesam:artist", problems);
    std::string albumArtist = firstName(dictionary, "xesam:albumArtist", problems);
    if (track.artist.empty()) track.artist = albumArtist;
    track.album = text(dictionary, "xesam:album", problems);
    track.title = text(dictionary, "xesam:title", problems);
    g_variant_unref(dictionary);
    return true;
}

bool mprisStatusFromVariant(GVariant* raw, MprisStatus& status) {
    if (!raw) return false;
    GVariant* value = unboxed(raw);
    bool known = false;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
        const char* s = g_variant_get_string(value, nullptr);
        known = true;
        if (std::strcmp(s, "Playing") == 0)
            status = MprisStatus::Playing;
        else if (std::strcmp(s, "Paused") == 0)
            status = MprisStatus::Paused;
        else if (std::strcmp(s, "Stopped") == 0)
            status = MprisStatus::Stopped;
        else
            known = false;
    }
    g_variant_unref(value);
    return known;
}
