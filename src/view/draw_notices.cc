// Steps 13 to 17: the restart notice, the connection problem or the
// promotional line under the grid, the newer-version banner, the version
// text and the links at the top right. Each clickable text stores its
// rectangle; one that is not drawn gets an empty rectangle, which no point
// can hit.
#include <cstring>

#include "view/draw_steps.h"

namespace {

void drawConnectionLine(Frame& f) {
    CalVis& v = f.view;
    if (!f.store.getValid_internet_connection()) {
        v.retryLine.rect = f.layout.retry;
        v.promoLine.rect = Rect();
        f.write("Internet problem... (click here to retry your search)", f.layout.retry,
                {10, false, palette::warning, 10, kJustifyCentre}, v.retryLine.hovered);
        return;
    }
    v.retryLine.rect = Rect();
    v.promoLine.rect = f.layout.promo;
    const char* text =
        f.tab == kCdReleasesTab
            ? "To support Stagebeacon you can click on an album to buy it, pre-order it, or just "
              "find out more..."
            : "You can now use Stagebeacon to purchase your tickets! Click on any show with a "
              "ticket icon.";
    f.write(text, f.layout.promo, {10, false, palette::black, 10, kJustifyCentre},
            v.promoLine.hovered);
}

void drawBanner(Frame& f) {
    CalVis& v = f.view;
    if (f.store.getStagebeacon_version_update() && f.store.getValid_internet_connection() &&
        !f.highlighted) {
        v.versionUpdateBanner.rect = f.layout.banner;
        f.write("A Newer Version of Stagebeacon is Available. \n Click Here to Upgrade.",
                f.layout.banner, {12, false, palette::warning, 12, kJustifyCentre});
    } else {
        v.versionUpdateBanner.rect = Rect();
    }
}

// Right-aligned at the top: a link, and the separator just left of it.
void drawLink(Frame& f, HoverRegion& region, const Rect& r, const char* text, bool bold,
              Color color, bool separator) {
    region.rect = r;
    const TextStyle style{10, bold, color, 10, kJustifyRight};
    f.write(text, r, style, region.hovered);
    if (!separator) return;
    f.canvas->selectFont(10, bold);
    int textLeft = r.right - int(f.canvas->textWidth(text, strlen(text))) + 1;
    f.canvas->selectFont(13, false);
    f.write("  | ", makeRect(r.top, textLeft - 60, r.bottom, textLeft - 1),
            {10, false, palette::secondaryText, 10, kJustifyRight});
}

} // namespace

void drawNoticesAndLinks(Frame& f) {
    CalVis& v = f.view;
    if (f.store.getRestartingSearch())
        f.write("Restarting search, PLEASE WAIT...", f.layout.restarting,
                {13, false, palette::warning, 13, kJustifyLeft});
    drawConnectionLine(f);
    drawBanner(f);

    v.versionText.rect = f.layout.version;
    std::string version = format("Stagebeacon %d.%d", 2, 9);
    f.write(version.c_str(), f.layout.version,
            {10, false, palette::secondaryText, 10, kJustifyRight}, v.versionText.hovered);

    drawLink(f, v.preferencesLink, f.layout.preferences, "Edit Preferences", false, palette::link,
             true);
    drawLink(f, v.iPhoneLink, f.layout.iPhone, "iPhone App", true, palette::appLink, true);
    drawLink(f, v.androidLink, f.layout.android, "Android App", true, palette::appLink, false);
}
