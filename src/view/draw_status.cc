// Step 3: the status strip at the top. While the update thread works it
// says what it fetches and shows the progress; otherwise which sources the
// last update could not reach (and how old the shows kept for them are), or
// else the date of the last search, once there has been one.
#include "view/draw_steps.h"

namespace {

struct StatusLine {
    bool (ProtectedData::*running)();
    const char* text;
};

// The first running task names the strip. Sharing has two texts (below).
const StatusLine kStatusLines[] = {
    {&ProtectedData::getUpdatingConcerts, "(Searching for upcoming shows...)\n"},
    {&ProtectedData::getUpdatingShared, nullptr},
    {&ProtectedData::getUpdatingAlbums, "(Searching for upcoming album releases...)"},
    {&ProtectedData::getUpdatingFriends, "(Searching for your friends' shared concerts...)"},
    {&ProtectedData::getUpdatingiPhone, "(Syncing with your phone...)"},
};

const char* runningStatus(ProtectedData& store) {
    for (const StatusLine& line : kStatusLines) {
        if (!(store.*line.running)()) continue;
        if (line.text) return line.text;
        return store.getShareAllShows() ? "(Sharing all your shows with your friends...)"
                                        : "(Sharing only your highlighted shows...)";
    }
    return nullptr;
}

void drawProgress(Frame& f) {
    const Rect& outline = f.layout.progressFrame;
    f.outline(outline, palette::outline);
    int width = int(2 * f.store.getUpdatingProgress()) - 1;
    if (width > 0)
        f.fill(makeRect(outline.top + 1, outline.left + 1, outline.bottom - 1,
                        outline.left + 1 + width),
               f.colors.accent);
}

} // namespace

void drawStatus(Frame& f) {
    if (const char* status = runningStatus(f.store)) {
        f.write(status, f.layout.statusText, {15, false, palette::black, 15, kJustifyCentre});
        drawProgress(f);
        return;
    }
    char note[ProtectedData::SourceNoteSize];
    f.store.getSourceNote(note);
    if (note[0]) {
        f.write(note, f.layout.lastUpdated, {10, false, palette::warning, 10, kJustifyCentre});
        return;
    }
    if (f.store.getLastSearch_y() >= 1971) {
        std::string text = format("Last updated: %d/%d/%d", f.store.getLastSearch_m(),
                                  f.store.getLastSearch_d(), f.store.getLastSearch_y());
        f.write(text.c_str(), f.layout.lastUpdated,
                {10, false, palette::secondaryText, 10, kJustifyCentre});
    }
}
