// CalGetData::noteFailedSources: what an update could not reach, said on the
// calendar's status line in plain words, with the date of the shows that
// were kept in their place (the date of the last list saved whole).
#include <cstdio>

#include "model/stagebeacon_class.h"
#include "update/cal_get_data.h"

void CalGetData::noteFailedSources(int count, const std::string& sentence, const char* kept) {
    ProtectedData& store = app->protectedData;
    failedSources += count;
    std::string text = sentence;
    if (store.getLastSearch_y() > 1970) {
        char date[64];
        snprintf(date, sizeof date, "; %s are from %d/%d/%d", kept,
                 store.getLastSearch_m(), store.getLastSearch_d(), store.getLastSearch_y());
        text += date;
    }
    char note[ProtectedData::SourceNoteSize];
    store.getSourceNote(note);
    std::string joined = note[0] ? std::string(note) + ". " + text : text;
    store.setSourceNote(joined.c_str());
    fprintf(stderr, "update: %s\n", text.c_str());
}
