#include "update/release_page.h"

#include <cstdio>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "net/text_helpers.h"

namespace {

constexpr size_t kLongestReleaseLine = 2046;

// Every format is followed by "@@"; text after the last "@@" is not one.
void addFormats(std::string_view formats, FRIENDLIST* tags) {
    size_t start = 0;
    for (size_t at = formats.find("@@"); at != std::string_view::npos;
         at = formats.find("@@", start)) {
        std::string name(formats.substr(start, at - start));
        FRIENDNAME* format = new FRIENDNAME(name.c_str());
        if (!tags->add(format)) delete format;
        start = at + 2;
    }
}

std::string clickThrough(const ReleaseFiling& filing, std::string_view asin) {
    return filing.serviceHost + "/CDReleases/cdreleaseclickthrough.php?ASIN=" + std::string(asin) +
           "&CITY=" + filing.city + "&STATE=" + filing.state;
}

bool fileLine(std::string_view line, const ReleaseFiling& filing) {
    std::string_view date, artist, title, formats, asin;
    if (!elementBetween(line, "<D>", "</D>", date) || !elementBetween(line, "<A>", "</A>", artist) ||
        !elementBetween(line, "<T>", "</T>", title) || !elementBetween(line, "<F>", "</F>", formats) ||
        !elementBetween(line, "<L>", "</L>", asin))
        return false;

    std::string name(artist);
    char key[kArtistKeySize];
    copyText(key, name.c_str());
    cleanArtist(key);

    std::lock_guard<std::mutex> libraryGuard(filing.library->mutex);
    if (!filing.index->contains(key)) return false;
    SHOWENTRY* e = new SHOWENTRY;
    copyText(e->artist, name.c_str());
    copyText(e->venue, std::string(title).c_str());
    int year = 0, month = 0, day = 0;
    sscanf(std::string(date).c_str(), "%d-%d-%d", &year, &month, &day);
    e->year = year;
    e->month = month;
    e->day = day;
    copyText(e->url, clickThrough(filing, asin).c_str());
    addFormats(formats, e->tags);
    if (!filing.releases->addShow(e, filing.previous)) delete e;
    return true;
}

} // namespace

int parseReleasePage(std::string_view page, const ReleaseFiling& filing) {
    int filed = 0;
    size_t pos = 0;
    for (size_t feed = page.find('\n'); feed != std::string_view::npos; feed = page.find('\n', pos)) {
        std::string_view line = page.substr(pos, feed - pos);
        if (line.size() > kLongestReleaseLine) break;
        if (fileLine(line, filing)) ++filed;
        pos = feed + 1;
    }
    return filed;
}
