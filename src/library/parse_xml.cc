// The library scan behind CalGetData::parseXML: library_scan.h over the
// streamed file, then the user's include and exclude band lists, then the names that
// would match every compilation ("various"), and finally the engine's two
// sorted lists.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "library/artist_forms.h"
#include "library/file_io.h"
#include "library/library_reader.h"
#include "library/library_scan.h"
#include "library/parse_xml.h"
#include "model/protected_data.h"

namespace {

// Band list lines are names typed by the user.
constexpr size_t kBandLineLimit = 1 << 16;

constexpr const char* kCompilationNames[] = {"various", "variousartists"};

// Include list: every line counts, an empty one too (it is offered to the
// list as the empty name).
void includeBands(const char* path, std::unordered_set<std::string>& artists) {
    LineReader reader(path, kBandLineLimit);
    std::string_view line;
    while (reader.next(&line)) {
        ArtistForms forms = artistFormsOf(line);
        if (forms.split) {
            artists.insert(forms.reordered);
            artists.insert(forms.asWritten);
        } else {
            artists.insert(forms.stored);
        }
    }
}

// Exclude list: lines whose cleaned form is empty are skipped.
void excludeBands(const char* path, std::unordered_set<std::string>& artists) {
    LineReader reader(path, kBandLineLimit);
    std::string_view line;
    while (reader.next(&line)) {
        ArtistForms forms = artistFormsOf(line);
        if (!forms.split) {
            if (!forms.stored.empty()) artists.erase(forms.stored);
            continue;
        }
        if (!forms.reordered.empty()) artists.erase(forms.reordered);
        if (!forms.asWritten.empty()) artists.erase(forms.asWritten);
    }
}

// In order, so each name goes at the tail: the list's index (sorted_index.h)
// then grows at its end.
template <typename List, typename Record>
void fillSorted(List& list, const std::unordered_set<std::string>& names) {
    std::vector<const std::string*> sorted;
    sorted.reserve(names.size());
    for (const std::string& name : names) sorted.push_back(&name);
    std::sort(sorted.begin(), sorted.end(),
              [](const std::string* a, const std::string* b) { return *a < *b; });
    for (const std::string* name : sorted) {
        Record* record = new Record(name->c_str());
        if (!list.add(record)) delete record;
    }
}

} // namespace

int scanLibraryFile(ProtectedData& store, LibraryRecords& records, XML_Artist_List& xmlArtists,
                    XML_Album_List& xmlAlbums, const std::function<bool()>& stopRequested) {
    char path[ProtectedData::iTunes_xml_pathSize];
    store.getiTunes_xml_path(path);
    LibraryReader reader(path);
    if (!reader.isOpen()) {
        records.release();
        return 1;
    }

    LibraryScan scan;
    std::string_view line;
    // A stop is noticed within a few milliseconds of scanning.
    constexpr unsigned kLinesBetweenStopChecks = 1u << 14;
    for (unsigned n = 1; reader.next(&line, !scan.inPlaylist()); ++n) {
        scan.takeLine(line);
        if (n % kLinesBetweenStopChecks == 0 && stopRequested && stopRequested()) return -1;
    }
    scan.finish();
    if (scan.versionFound()) store.setiTunesVersion(scan.version());

    char includePath[ProtectedData::StagebeaconIncludeBandsListSize];
    char excludePath[ProtectedData::StagebeaconExcludeBandsListSize];
    store.getStagebeaconIncludeBandsList(includePath);
    store.getStagebeaconExcludeBandsList(excludePath);
    includeBands(includePath, scan.artists);
    excludeBands(excludePath, scan.artists);
    for (const char* name : kCompilationNames) scan.artists.erase(name);

    records.release();
    fillSorted<XML_Artist_List, XMLARTIST>(xmlArtists, scan.artists);
    fillSorted<XML_Album_List, XMLALBUM>(xmlAlbums, scan.albums);
    return 0;
}
