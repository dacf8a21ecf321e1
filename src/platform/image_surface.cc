// Cairo image surfaces behind ImageSurface and the one-piece frame copy.
#include "platform/image_surface.h"

#include <cairo.h>

#include <cstddef>
#include <utility>

ImageSurface::ImageSurface(int width, int height) {
    if (width < 1 || height < 1) return;
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    if (cairo_surface_status(s) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(s);
        return;
    }
    surface = s;
    w = width;
    h = height;
}

ImageSurface::ImageSurface(cairo_surface_t* adopted) {
    if (cairo_surface_status(adopted) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(adopted);
        return;
    }
    surface = adopted;
    w = cairo_image_surface_get_width(adopted);
    h = cairo_image_surface_get_height(adopted);
}

Port Port::sharing(cairo_surface_t* hostSurface) {
    if (!hostSurface || cairo_surface_get_type(hostSurface) != CAIRO_SURFACE_TYPE_IMAGE)
        return Port(0, 0);
    return Port(cairo_surface_reference(hostSurface));
}

ImageSurface::~ImageSurface() {
    if (surface) cairo_surface_destroy(surface);
}

ImageSurface::ImageSurface(ImageSurface&& other) noexcept
    : surface(std::exchange(other.surface, nullptr)), w(std::exchange(other.w, 0)),
      h(std::exchange(other.h, 0)) {}

ImageSurface& ImageSurface::operator=(ImageSurface&& other) noexcept {
    if (this != &other) {
        if (surface) cairo_surface_destroy(surface);
        surface = std::exchange(other.surface, nullptr);
        w = std::exchange(other.w, 0);
        h = std::exchange(other.h, 0);
    }
    return *this;
}

ImageSurface ImageSurface::fromPng(const char* path) {
    return ImageSurface(cairo_image_surface_create_from_png(path));
}

void ImageSurface::fill(uint32_t argb) {
    if (!surface) return;
    cairo_surface_flush(surface);
    unsigned char* data = cairo_image_surface_get_data(surface);
    int stride = cairo_image_surface_get_stride(surface);
    for (int y = 0; y < h; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
        for (int x = 0; x < w; ++x)
            row[x] = argb;
    }
    cairo_surface_mark_dirty(surface);
}

uint32_t ImageSurface::pixel(int x, int y) const {
    if (!surface || x < 0 || y < 0 || x >= w || y >= h) return 0;
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    int stride = cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(y) * stride)[x];
}

bool ImageSurface::savePng(const char* path) const {
    return surface && cairo_surface_write_to_png(surface, path) == CAIRO_STATUS_SUCCESS;
}

void copyBits(const OffscreenImage& source, const Rect& from, Port& port, const Rect& to) {
    int sw = from.right - from.left, sh = from.bottom - from.top;
    int dw = to.right - to.left, dh = to.bottom - to.top;
    if (!source.valid() || !port.valid() || sw <= 0 || sh <= 0 || dw <= 0 || dh <= 0) return;
    cairo_t* cr = cairo_create(port.cairoSurface());
    cairo_rectangle(cr, to.left, to.top, dw, dh);
    cairo_clip(cr);
    cairo_translate(cr, to.left, to.top);
    if (sw != dw || sh != dh) cairo_scale(cr, double(dw) / sw, double(dh) / sh);
    cairo_set_source_surface(cr, source.cairoSurface(), -from.left, -from.top);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
    cairo_destroy(cr);
}
