#include "library/artist_forms.h"

#include "model/artist_key.h"

std::string cleanedName(std::string_view text) {
    char key[kArtistKeySize];
    size_t n = text.copy(key, kArtistKeySize - 1);
    key[n] = '\0';
    cleanArtist(key);
    return key;
}

ArtistForms artistFormsOf(std::string_view text) {
    ArtistForms forms;
    size_t comma = text.find(',');
    if (comma == std::string_view::npos || comma == 0 || comma + 1 == text.size()) {
        forms.stored = cleanedName(text);
        return forms;
    }
    std::string before(text.substr(0, comma));
    std::string after(text.substr(comma + 1));
    forms.reordered = cleanedName(after + before);
    forms.asWritten = cleanedName(before + after);
    forms.stored = forms.reordered + "," + forms.asWritten;
    forms.split = true;
    return forms;
}
