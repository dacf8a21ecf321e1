#include "display_buffer.h"

#include <cairo.h>

#include <cstring>

namespace {

void frameReady(PlayerPort* port) {
    if (port && port->hostData) static_cast<DisplayBuffer*>(port->hostData)->takeFrame(port);
}

} // namespace

void DisplayBuffer::setRedrawRequest(RedrawRequest request, void* data) {
    std::lock_guard<std::mutex> guard(mutex);
    redraw = request;
    redrawData = data;
}

void DisplayBuffer::setCurrentPort(const PlayerPort* port, int newWidth, int newHeight) {
    std::lock_guard<std::mutex> guard(mutex);
    current = port;
    width = newWidth;
    height = newHeight;
    stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width);
    pixels.assign(static_cast<size_t>(stride) * static_cast<size_t>(height), 0);
    // Opaque black, as the port starts.
    for (int y = 0; y < height; ++y) {
        uint32_t* row =
            reinterpret_cast<uint32_t*>(pixels.data() + static_cast<size_t>(y) * stride);
        for (int x = 0; x < width; ++x)
            row[x] = 0xFF000000u;
    }
}

void DisplayBuffer::takeFrame(PlayerPort* port) {
    cairo_surface_t* surface = port->surface;
    if (!surface || cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) return;
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    int frameStride = cairo_image_surface_get_stride(surface);
    int frameWidth = cairo_image_surface_get_width(surface);
    int frameHeight = cairo_image_surface_get_height(surface);
    RedrawRequest request = nullptr;
    void* requestData = nullptr;
    {
        std::lock_guard<std::mutex> guard(mutex);
        if (port != current || !data || frameWidth != width || frameHeight != height) return;
        for (int y = 0; y < height; ++y)
            std::memcpy(pixels.data() + static_cast<size_t>(y) * stride,
                        data + static_cast<size_t>(y) * frameStride,
                        static_cast<size_t>(width) * 4);
        request = redraw;
        requestData = redrawData;
    }
    if (request) request(requestData);
}

bool DisplayBuffer::savePng(const std::string& path, std::string& error) {
    std::lock_guard<std::mutex> guard(mutex);
    if (width == 0 || height == 0) {
        error = "no window is shown";
        return false;
    }
    cairo_surface_t* image = cairo_image_surface_create_for_data(pixels.data(), CAIRO_FORMAT_ARGB32,
                                                                 width, height, stride);
    cairo_status_t status = cairo_surface_write_to_png(image, path.c_str());
    cairo_surface_destroy(image);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = std::string("cannot write ") + path + ": " + cairo_status_to_string(status);
        return false;
    }
    return true;
}

void DisplayBuffer::paint(cairo_t* cr) {
    std::lock_guard<std::mutex> guard(mutex);
    if (width == 0 || height == 0) return;
    cairo_surface_t* image = cairo_image_surface_create_for_data(pixels.data(), CAIRO_FORMAT_ARGB32,
                                                                 width, height, stride);
    cairo_set_source_surface(cr, image, 0, 0);
    cairo_paint(cr);
    // The source holds the surface; drop it before the pixels may change.
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_surface_destroy(image);
}

HostPort::HostPort(int width, int height, DisplayBuffer& display) {
    record.surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    record.frameReady = frameReady;
    record.hostData = &display;
    cairo_t* cr = cairo_create(record.surface);
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
}

HostPort::~HostPort() {
    cairo_surface_destroy(record.surface);
}

bool HostPort::valid() const {
    return cairo_surface_status(record.surface) == CAIRO_STATUS_SUCCESS;
}
