// Draws the two "buy tickets" images of the bundle, buyTicketsSmall.png
// (11 x 11, beside a show in a grid cell) and buyTicketsLarge.png (30 x 22,
// beside a show in the list): a tilted amber ticket with notched ends and a
// perforation. Run scripts/make-ticket-icons to rebuild them; the PNGs are
// committed so builds need not run this.
#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

// A ticket of w x h centred at the origin: rounded corners, a half-round
// notch in each short side.
void ticketPath(cairo_t* cr, double w, double h, double notch) {
    double x0 = -w / 2, y0 = -h / 2, x1 = w / 2, y1 = h / 2;
    cairo_new_path(cr);
    cairo_move_to(cr, x0, y0);
    cairo_line_to(cr, x1, y0);
    cairo_arc_negative(cr, x1, 0, notch, -M_PI / 2, M_PI / 2);
    cairo_line_to(cr, x1, y1);
    cairo_line_to(cr, x0, y1);
    cairo_arc_negative(cr, x0, 0, notch, M_PI / 2, 3 * M_PI / 2);
    cairo_close_path(cr);
}

bool drawTicket(const std::string& path, int width, int height, double w, double h, double notch,
                double angle, bool perforation) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t* cr = cairo_create(s);
    cairo_translate(cr, width / 2.0, height / 2.0);
    cairo_rotate(cr, angle);
    ticketPath(cr, w, h, notch);
    cairo_set_source_rgb(cr, 0.98, 0.73, 0.18); // amber
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0.62, 0.36, 0.04);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);
    if (perforation) {
        double x = w / 2 - w / 4;
        const double dash[] = {1.5, 1.5};
        cairo_set_dash(cr, dash, 2, 0);
        cairo_move_to(cr, x, -h / 2 + 1);
        cairo_line_to(cr, x, h / 2 - 1);
        cairo_stroke(cr);
        cairo_set_dash(cr, nullptr, 0, 0);
        // A star on the stub side.
        cairo_set_source_rgb(cr, 0.80, 0.12, 0.10);
        double cx = -w / 8, r = h / 4;
        for (int i = 0; i < 10; ++i) {
            double a = -M_PI / 2 + i * M_PI / 5, rr = i % 2 ? r * 0.45 : r;
            cairo_line_to(cr, cx + rr * std::cos(a), rr * std::sin(a));
        }
        cairo_close_path(cr);
        cairo_fill(cr);
    }
    cairo_destroy(cr);
    bool ok = cairo_surface_write_to_png(s, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(s);
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    std::string folder = argc > 1 ? argv[1] : ".";
    bool ok = drawTicket(folder + "/buyTicketsSmall.png", 11, 11, 10, 6.5, 1.5, -0.5, false) &&
              drawTicket(folder + "/buyTicketsLarge.png", 30, 22, 25, 13, 2.5, -0.35, true);
    if (!ok) fprintf(stderr, "make_ticket_icons: could not write the images\n");
    return ok ? 0 : 1;
}
