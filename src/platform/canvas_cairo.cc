// Canvas on cairo, text through Pango.
//
// The Pango font map and context are made once and shared: building them
// costs milliseconds (fontconfig), and the view redraws on every idle tick
// from the main thread and now and then from a fresh update thread. Shaped
// lines are kept too (see ShapedText). A process-wide mutex, held for a
// canvas's lifetime, keeps all of it single-user.
#include "platform/canvas.h"

#include <cairo.h>
#include <pango/pangocairo.h>

#include <cmath>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/image_surface.h"

namespace {

// The family list asked of fontconfig; the first installed one wins.
constexpr const char* kFontFamilies =
    "Lucida Grande,Lucida Sans Unicode,Lucida Sans,DejaVu Sans Condensed,DejaVu Sans";

std::mutex& textEngineMutex() {
    static std::mutex m;
    return m;
}

// A shaped line of text. Shaping is most of the cost of a frame, and from
// one frame to the next nearly every text is the same, so shaped lines are
// kept and reused.
struct ShapedText {
    PangoLayout* layout = nullptr;
    double width = 0;    // advance width, pixels
    double baseline = 0; // from the layout's top, pixels

    ShapedText() = default;
    ShapedText(const ShapedText&) = delete;
    ShapedText& operator=(const ShapedText&) = delete;
    ShapedText(ShapedText&& o) noexcept
        : layout(std::exchange(o.layout, nullptr)), width(o.width), baseline(o.baseline) {}
    ~ShapedText() {
        if (layout) g_object_unref(layout);
    }
};

// Shared text state, touched only with textEngineMutex() held.
struct TextEngine {
    // Lines kept: two generations of up to this many each; a line not used
    // while a whole generation filled is dropped. A frame uses a few hundred.
    static constexpr size_t kGeneration = 2048;

    PangoContext* context = nullptr;
    std::map<std::pair<double, bool>, PangoFontDescription*> fonts;
    std::unordered_map<std::string, ShapedText> recent, older;

    TextEngine() {
        PangoFontMap* map = pango_cairo_font_map_new();
        context = pango_font_map_create_context(map);
        g_object_unref(map); // the context keeps it
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
        pango_cairo_context_set_font_options(context, options);
        cairo_font_options_destroy(options);
    }

    const PangoFontDescription* font(double size, bool bold) {
        auto key = std::make_pair(size, bold);
        auto it = fonts.find(key);
        if (it != fonts.end()) return it->second;
        PangoFontDescription* d = pango_font_description_from_string(kFontFamilies);
        pango_font_description_set_absolute_size(d, size * PANGO_SCALE);
        pango_font_description_set_weight(d, bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
        fonts.emplace(key, d);
        return d;
    }

    // `utf8` shaped in `face`, from the cache when it was shaped lately.
    const ShapedText& shape(const std::string& utf8, const PangoFontDescription* face) {
        std::string key(reinterpret_cast<const char*>(&face), sizeof face);
        key += utf8;
        auto hit = recent.find(key);
        if (hit != recent.end()) return hit->second;
        if (recent.size() >= kGeneration) {
            older = std::move(recent);
            recent.clear();
        }
        auto old = older.find(key);
        if (old != older.end()) {
            ShapedText moved(std::move(old->second));
            older.erase(old);
            return recent.emplace(std::move(key), std::move(moved)).first->second;
        }
        ShapedText shaped;
        shaped.layout = pango_layout_new(context);
        pango_layout_set_single_paragraph_mode(shaped.layout, TRUE);
        pango_layout_set_font_description(shaped.layout, face);
        pango_layout_set_text(shaped.layout, utf8.data(), int(utf8.size()));
        PangoRectangle logical;
        pango_layout_get_extents(shaped.layout, nullptr, &logical);
        shaped.width = double(logical.width) / PANGO_SCALE;
        shaped.baseline = double(pango_layout_get_baseline(shaped.layout)) / PANGO_SCALE;
        return recent.emplace(std::move(key), std::move(shaped)).first->second;
    }
};

TextEngine& textEngine() {
    static TextEngine* engine = new TextEngine; // lives for the process
    return *engine;
}

// 8-bit text as UTF-8: valid UTF-8 stays, other bytes are read as Latin-1.
void toUtf8(const char* text, size_t length, std::string& out) {
    out.assign(text, length);
    if (g_utf8_validate(out.data(), gssize(out.size()), nullptr)) return;
    out.clear();
    for (size_t i = 0; i < length; ++i) {
        auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            out += char(c);
        } else {
            out += char(0xC0 | (c >> 6));
            out += char(0x80 | (c & 0x3F));
        }
    }
}

void setColor(cairo_t* cr, Color c) {
    cairo_set_source_rgb(cr, c.red, c.green, c.blue);
}

} // namespace

struct Canvas::Impl {
    std::unique_lock<std::mutex> hold{textEngineMutex()};
    cairo_t* cr = nullptr;
    int width = 0;
    int height = 0;
    const PangoFontDescription* face = nullptr;
    std::string utf8;

    // Cairo's y from the canvas's upward y.
    double flip(double y) const { return height - y; }
};

Canvas::Canvas(ImageSurface& image) : impl(new Impl) {
    if (!image.valid()) return;
    impl->cr = cairo_create(image.cairoSurface());
    impl->width = image.width();
    impl->height = image.height();
    cairo_set_line_width(impl->cr, 1.0);
    impl->face = textEngine().font(13, false);
}

Canvas::~Canvas() {
    if (impl->cr) {
        cairo_surface_flush(cairo_get_target(impl->cr));
        cairo_destroy(impl->cr);
    }
}

int Canvas::status() const {
    if (!impl->cr) return -1;
    return cairo_status(impl->cr) == CAIRO_STATUS_SUCCESS ? 0 : int(cairo_status(impl->cr));
}

int Canvas::width() const {
    return impl->width;
}
int Canvas::height() const {
    return impl->height;
}

void Canvas::fillRect(const CanvasRect& r, Color c) {
    if (!impl->cr || r.width <= 0 || r.height <= 0) return;
    setColor(impl->cr, c);
    cairo_rectangle(impl->cr, r.x, impl->flip(r.y + r.height), r.width, r.height);
    cairo_fill(impl->cr);
}

void Canvas::strokeRect(const CanvasRect& r, Color c) {
    if (!impl->cr || r.width < 0 || r.height < 0) return;
    setColor(impl->cr, c);
    cairo_rectangle(impl->cr, r.x, impl->flip(r.y + r.height), r.width, r.height);
    cairo_stroke(impl->cr);
}

void Canvas::fillPolygon(const CanvasPoint* points, int n, Color c) {
    if (!impl->cr || n < 3) return;
    setColor(impl->cr, c);
    for (int i = 0; i < n; ++i)
        cairo_line_to(impl->cr, points[i].x, impl->flip(points[i].y));
    cairo_close_path(impl->cr);
    cairo_fill(impl->cr);
}

void Canvas::strokePolyline(const CanvasPoint* points, int n, bool closed, Color c) {
    if (!impl->cr || n < 2) return;
    setColor(impl->cr, c);
    for (int i = 0; i < n; ++i)
        cairo_line_to(impl->cr, points[i].x, impl->flip(points[i].y));
    if (closed) cairo_close_path(impl->cr);
    cairo_stroke(impl->cr);
}

void Canvas::clipTo(const CanvasRect& r) {
    if (!impl->cr) return;
    cairo_reset_clip(impl->cr);
    cairo_rectangle(impl->cr, r.x, impl->flip(r.y + r.height), r.width, r.height);
    cairo_clip(impl->cr);
}

void Canvas::unclip() {
    if (impl->cr) cairo_reset_clip(impl->cr);
}

void Canvas::selectFont(double size, bool bold) {
    impl->face = textEngine().font(size, bold);
}

double Canvas::textWidth(const char* text, size_t length) {
    if (!impl->cr || length == 0) return 0;
    toUtf8(text, length, impl->utf8);
    return textEngine().shape(impl->utf8, impl->face).width;
}

void Canvas::showText(double x, double y, const char* text, size_t length, Color c) {
    if (!impl->cr || length == 0) return;
    toUtf8(text, length, impl->utf8);
    const ShapedText& shaped = textEngine().shape(impl->utf8, impl->face);
    setColor(impl->cr, c);
    cairo_move_to(impl->cr, x, impl->flip(y) - shaped.baseline);
    pango_cairo_show_layout(impl->cr, shaped.layout);
    cairo_new_path(impl->cr);
}

void Canvas::drawImage(const ImageSurface& image, double x, double y) {
    if (!impl->cr || !image.valid()) return;
    double top = impl->flip(y + image.height());
    cairo_set_source_surface(impl->cr, image.cairoSurface(), x, top);
    cairo_rectangle(impl->cr, x, top, image.width(), image.height());
    cairo_fill(impl->cr);
}
