// Draws the two notification icons of the bundle, 64 x 64 each:
// Stagebeacon_icon_blue.png (an upcoming concert: a calendar card with a
// note on a blue tile) and Stagebeacon_icon_purple.png (an upcoming release:
// the card with a disc on a purple tile). Run scripts/make-notify-icons to
// rebuild them; the PNGs are committed so builds need not run this.
#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

constexpr int kSize = 64;

struct Colour {
    double r, g, b;
};

void roundedRect(cairo_t* cr, double x, double y, double w, double h, double r) {
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - r, y + r, r, -M_PI / 2, 0);
    cairo_arc(cr, x + w - r, y + h - r, r, 0, M_PI / 2);
    cairo_arc(cr, x + r, y + h - r, r, M_PI / 2, M_PI);
    cairo_arc(cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
}

// The tile and the calendar card common to both icons.
void tileAndCard(cairo_t* cr, Colour light, Colour dark) {
    cairo_pattern_t* fill = cairo_pattern_create_linear(0, 0, 0, kSize);
    cairo_pattern_add_color_stop_rgb(fill, 0, light.r, light.g, light.b);
    cairo_pattern_add_color_stop_rgb(fill, 1, dark.r, dark.g, dark.b);
    roundedRect(cr, 2, 2, kSize - 4, kSize - 4, 12);
    cairo_set_source(cr, fill);
    cairo_fill(cr);
    cairo_pattern_destroy(fill);

    roundedRect(cr, 13, 14, 38, 38, 5);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_fill(cr);
    // The card's header strip and its two rings.
    cairo_rectangle(cr, 13, 19, 38, 7);
    cairo_set_source_rgb(cr, dark.r, dark.g, dark.b);
    cairo_fill(cr);
    for (double x : {22.0, 42.0}) {
        roundedRect(cr, x - 2, 10, 4, 10, 2);
        cairo_set_source_rgb(cr, 0.93, 0.93, 0.95);
        cairo_fill(cr);
    }
}

void note(cairo_t* cr, Colour ink) {
    cairo_set_source_rgb(cr, ink.r, ink.g, ink.b);
    cairo_save(cr);
    cairo_translate(cr, 29, 44);
    cairo_scale(cr, 1.3, 1.0);
    cairo_arc(cr, 0, 0, 4, 0, 2 * M_PI);
    cairo_restore(cr);
    cairo_fill(cr);
    cairo_rectangle(cr, 33, 29, 2.2, 15);
    cairo_fill(cr);
    cairo_move_to(cr, 35.2, 29);
    cairo_curve_to(cr, 40, 31, 42, 34, 39, 38);
    cairo_curve_to(cr, 40, 35, 38, 33, 35.2, 33);
    cairo_close_path(cr);
    cairo_fill(cr);
}

void disc(cairo_t* cr, Colour ink) {
    cairo_set_source_rgb(cr, ink.r, ink.g, ink.b);
    cairo_arc(cr, 32, 39, 10, 0, 2 * M_PI);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 0.85, 0.85, 0.9);
    cairo_set_line_width(cr, 0.8);
    cairo_arc(cr, 32, 39, 7, 0, 2 * M_PI);
    cairo_stroke(cr);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_arc(cr, 32, 39, 2.2, 0, 2 * M_PI);
    cairo_fill(cr);
}

bool drawIcon(const std::string& path, Colour light, Colour dark, void (*glyph)(cairo_t*, Colour)) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kSize, kSize);
    cairo_t* cr = cairo_create(s);
    tileAndCard(cr, light, dark);
    glyph(cr, dark);
    cairo_destroy(cr);
    bool ok = cairo_surface_write_to_png(s, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(s);
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    std::string folder = argc > 1 ? argv[1] : ".";
    bool ok = drawIcon(folder + "/Stagebeacon_icon_blue.png", {0.33, 0.62, 0.96},
                       {0.10, 0.33, 0.72}, note) &&
              drawIcon(folder + "/Stagebeacon_icon_purple.png", {0.70, 0.45, 0.93},
                       {0.42, 0.18, 0.66}, disc);
    if (!ok)
        fprintf(stderr, "make_notify_icons: could not write the icons into %s\n", folder.c_str());
    return ok ? 0 : 1;
}
