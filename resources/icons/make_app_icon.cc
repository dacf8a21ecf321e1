// Draws the app's icon for the desktop's hicolor theme: a scalable SVG and
// PNGs of the usual sizes, from one drawing in unit coordinates. A night-blue
// tile, a spotlight beam falling from the top left onto a calendar card whose
// red header carries two binder rings, and a note on the card.
//
// usage: make_app_icon OUTPUT_FOLDER
// writes OUTPUT_FOLDER/org.stagebeacon.Stagebeacon.svg and
// OUTPUT_FOLDER/org.stagebeacon.Stagebeacon-SIZE.png for each size.
#include <cairo-svg.h>
#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

const char kName[] = "org.stagebeacon.Stagebeacon";
const int kPngSizes[] = {16, 24, 32, 48, 64, 128, 256, 512};

void tile(cairo_t* cr, double x, double y, double w, double h, double radius) {
    const double quarter = M_PI / 2;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + radius, y + radius, radius, 2 * quarter, 3 * quarter);
    cairo_arc(cr, x + w - radius, y + radius, radius, 3 * quarter, 4 * quarter);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, quarter);
    cairo_arc(cr, x + radius, y + h - radius, radius, quarter, 2 * quarter);
    cairo_close_path(cr);
}

// Everything in a 1 x 1 square.
void drawIcon(cairo_t* cr) {
    // The tile: night blue, lighter at the top.
    cairo_pattern_t* sky = cairo_pattern_create_linear(0, 0, 0, 1);
    cairo_pattern_add_color_stop_rgb(sky, 0, 0.16, 0.22, 0.52);
    cairo_pattern_add_color_stop_rgb(sky, 1, 0.07, 0.08, 0.25);
    tile(cr, 0.04, 0.04, 0.92, 0.92, 0.18);
    cairo_set_source(cr, sky);
    cairo_fill(cr);
    cairo_pattern_destroy(sky);

    // The spotlight's beam, widening towards the card.
    cairo_pattern_t* beam = cairo_pattern_create_linear(0.12, 0.1, 0.6, 0.7);
    cairo_pattern_add_color_stop_rgba(beam, 0, 1.0, 0.93, 0.55, 0.95);
    cairo_pattern_add_color_stop_rgba(beam, 1, 1.0, 0.93, 0.55, 0.05);
    cairo_move_to(cr, 0.10, 0.12);
    cairo_line_to(cr, 0.18, 0.08);
    cairo_line_to(cr, 0.92, 0.58);
    cairo_line_to(cr, 0.52, 0.92);
    cairo_close_path(cr);
    cairo_set_source(cr, beam);
    cairo_fill(cr);
    cairo_pattern_destroy(beam);
    cairo_arc(cr, 0.14, 0.10, 0.06, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 1.0, 0.95, 0.7);
    cairo_fill(cr);

    // The calendar card and its red header.
    tile(cr, 0.34, 0.36, 0.52, 0.50, 0.06);
    cairo_set_source_rgb(cr, 0.98, 0.98, 0.96);
    cairo_fill(cr);
    tile(cr, 0.34, 0.36, 0.52, 0.14, 0.06);
    cairo_rectangle(cr, 0.34, 0.44, 0.52, 0.06);
    cairo_set_source_rgb(cr, 0.86, 0.20, 0.22);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 0.25, 0.25, 0.3);
    for (double x : {0.46, 0.74}) {
        cairo_rectangle(cr, x - 0.015, 0.32, 0.03, 0.09);
        cairo_fill(cr);
    }

    // A note on the card.
    cairo_set_source_rgb(cr, 0.16, 0.22, 0.52);
    cairo_arc(cr, 0.54, 0.74, 0.055, 0, 2 * M_PI);
    cairo_fill(cr);
    cairo_rectangle(cr, 0.578, 0.56, 0.03, 0.19);
    cairo_fill(cr);
    cairo_move_to(cr, 0.578, 0.56);
    cairo_curve_to(cr, 0.66, 0.58, 0.70, 0.62, 0.68, 0.68);
    cairo_curve_to(cr, 0.66, 0.64, 0.63, 0.62, 0.608, 0.62);
    cairo_close_path(cr);
    cairo_fill(cr);
}

bool finish(cairo_surface_t* surface, cairo_t* cr, const std::string& path) {
    cairo_status_t status = cairo_status(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        std::fprintf(stderr, "make_app_icon: %s: %s\n", path.c_str(),
                     cairo_status_to_string(status));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_app_icon OUTPUT_FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    const std::string svg = folder + "/" + kName + ".svg";
    cairo_surface_t* vector = cairo_svg_surface_create(svg.c_str(), 256, 256);
    cairo_t* cr = cairo_create(vector);
    cairo_scale(cr, 256, 256);
    drawIcon(cr);
    if (!finish(vector, cr, svg)) return 1;

    for (int size : kPngSizes) {
        const std::string png = folder + "/" + kName + "-" + std::to_string(size) + ".png";
        cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size);
        cr = cairo_create(image);
        cairo_scale(cr, size, size);
        drawIcon(cr);
        cairo_surface_flush(image);
        if (cairo_surface_write_to_png(image, png.c_str()) != CAIRO_STATUS_SUCCESS) {
            std::fprintf(stderr, "make_app_icon: cannot write %s\n", png.c_str());
            cairo_destroy(cr);
            cairo_surface_destroy(image);
            return 1;
        }
        if (!finish(image, cr, png)) return 1;
    }
    return 0;
}
