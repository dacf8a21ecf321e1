// ImageSurface: a 32-bit ARGB pixel image, the thing the view draws into
// (the offscreen image) and the thing the host shows (the port). Cairo image
// surfaces sit underneath; this header keeps cairo's own headers out of the
// code that only passes images around.
//
// OffscreenImage is the plug-in's frame buffer, sized like the host's
// destination rectangle. Port is the host's surface; the plug-in never owns
// the one it is handed. copyBits() puts a finished frame into the port in one
// piece, so the host never shows a half-drawn frame.
//
// Threads: any thread, but one thread at a time per image. Nothing blocks.
#pragma once

#include <cstdint>

#include "platform/rect.h"

// Cairo's own spelling of its surface type; a repeated typedef is harmless.
typedef struct _cairo_surface cairo_surface_t;

class ImageSurface {
  public:
    // A width x height image, transparent black. A size below 1 gives an
    // image that is not valid() and that every operation leaves alone.
    ImageSurface(int width, int height);
    ~ImageSurface();
    ImageSurface(ImageSurface&& other) noexcept;
    ImageSurface& operator=(ImageSurface&& other) noexcept;
    ImageSurface(const ImageSurface&) = delete;
    ImageSurface& operator=(const ImageSurface&) = delete;

    // Reads a PNG file; the result is not valid() when it cannot be read.
    static ImageSurface fromPng(const char* path);

    bool valid() const { return surface != nullptr; }
    int width() const { return w; }
    int height() const { return h; }

    // Every pixel set to `argb` (0xAARRGGBB, opaque colours only).
    void fill(uint32_t argb);
    // The pixel at (x, y) as 0xAARRGGBB; 0 outside the image.
    uint32_t pixel(int x, int y) const;
    // Writes the image as a PNG file; false on failure.
    [[nodiscard]] bool savePng(const char* path) const;

    cairo_surface_t* cairoSurface() const { return surface; }

  protected:
    // Takes over one reference to `adopted`.
    explicit ImageSurface(cairo_surface_t* adopted);

  private:

    cairo_surface_t* surface = nullptr;
    int w = 0;
    int h = 0;
};

class OffscreenImage : public ImageSurface {
  public:
    using ImageSurface::ImageSurface;
};

// The host's surface. The host creates and keeps it; windowed, the player
// shows it in its widget after each copy.
class Port : public ImageSurface {
  public:
    using ImageSurface::ImageSurface;
    // A view of the host's own image surface, which must be an image
    // surface; the host keeps its reference, this one is released with the
    // Port.
    static Port sharing(cairo_surface_t* hostSurface);

  private:
    explicit Port(cairo_surface_t* adopted) : ImageSurface(adopted) {}
};

// Paints `source`'s rectangle `from` into `port`'s rectangle `to`, replacing
// what was there (no blending, no mask); pixels of the port outside `to` are
// left alone. Rectangles of different sizes scale the image.
void copyBits(const OffscreenImage& source, const Rect& from, Port& port, const Rect& to);
