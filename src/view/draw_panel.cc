// Steps 10 and 12: the detail panel of the show under the pointer and the
// city, state and radius fields the user types the search location into.
#include "view/draw_steps.h"

namespace {

constexpr int kPanelPadding = 2;

} // namespace

void drawDetailPanel(Frame& f) {
    SHOWENTRY* e = f.highlighted;
    if (!e) return;
    const Rect& panel = f.layout.detailPanel;
    f.fill(panel, palette::white);
    f.outline(panel, palette::outline);
    f.fill(makeRect(panel.top + 2, panel.left + 2, panel.bottom - 2, panel.right - 2),
           f.colors.entry);

    auto band = [&](int& y, int height) {
        Rect r = makeRect(y, panel.left + kPanelPadding, y + height, panel.right - kPanelPadding);
        y += height;
        return r;
    };
    int y = panel.top + kPanelPadding;
    f.write(dateLine(e).c_str(), band(y, 15), {11, false, palette::black, 11, kJustifyCentre});
    f.write(e->artist, band(y, 20), {15, false, palette::black, 15, kJustifyCentre});
    if (e->otherArtists[0]) {
        std::string playing = format("playing with\n%s", e->otherArtists);
        f.write(playing.c_str(), band(y, 24), {10, false, palette::black, 10, kJustifyCentre});
    }
    if (e->tags->head) {
        std::string tags =
            (f.tab == kCdReleasesTab ? "Format: " : "Your Friends: ") + joinedTags(e);
        f.write(tags.c_str(),
                makeRect(y, panel.left + kPanelPadding, panel.bottom, panel.right - kPanelPadding),
                {9, false, palette::black, 9, kJustifyCentre});
    }
}

namespace {

struct LocationField {
    const char* label;
    const char* placeholder;
    void (ProtectedData::*display)(char*);
    HoverRegion CalVis::*region;
};

// In the order of the editing flags below.
const LocationField kFields[3] = {
    {"City: ", "click here to enter a city..", &ProtectedData::getCurCityDisplay,
     &CalVis::cityField},
    {"State: ", "click here to enter a state.", &ProtectedData::getCurStateDisplay,
     &CalVis::stateField},
    {"Radius:", "click here to enter", &ProtectedData::getCurSearchRadiusDisplay,
     &CalVis::radiusField},
};

} // namespace

void drawLocationFields(Frame& f) {
    const bool editing[3] = {f.store.getUpdatingCity(), f.store.getUpdatingState(),
                             f.store.getUpdatingSearchRadius()};
    const bool anyEditing = editing[0] || editing[1] || editing[2];
    const TextStyle style{13, false, palette::black, 13, kJustifyLeft};

    for (int i = 0; i < 3; ++i) {
        const LocationField& field = kFields[i];
        HoverRegion& region = f.view.*field.region;
        const Rect& value = f.layout.fieldValues[i];
        region.rect = value;
        char text[256];
        (f.store.*field.display)(text);
        std::string shown = editing[i] ? format("%s|", text) : text[0] ? text : field.placeholder;

        f.write(field.label, f.layout.fieldLabels[i], style);
        f.write(shown.c_str(), value, style);
        if (editing[i] || (!anyEditing && region.hovered)) f.outline(value, palette::outline);
    }
}
