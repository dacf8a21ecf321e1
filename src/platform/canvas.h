// Canvas: the drawing back end of the calendar view (shapes, text and images
// on an ImageSurface), with cairo and Pango underneath.
//
// Coordinates are those of the view's drawing code: origin at the image's
// bottom left, y upwards, in pixels, so that a rectangle converted from
// screen coordinates (view/text_writer.h, convertRect) lands where the
// screen rectangle is. Colours are RGB in 0..1, always opaque.
//
// Text: one font family list, "Lucida Grande" first and DejaVu Sans last, in
// a regular and a bold face at any pixel size. Text is 8-bit: valid UTF-8 is
// taken as it is, anything else is read as Latin-1.
//
// Threads: any thread. A Canvas holds a process-wide lock from construction
// to destruction (the text engine's font caches are shared), so canvases on
// two threads take turns. It is an inner lock: take list locks before making
// a canvas, never while one is open (the state store's accessors are fine).
#pragma once

#include <cstddef>
#include <memory>

class ImageSurface;

struct CanvasRect {
    double x = 0, y = 0, width = 0, height = 0; // (x, y): bottom-left corner
};

struct CanvasPoint {
    double x = 0, y = 0;
};

struct Color {
    double red = 0, green = 0, blue = 0;
};

// A colour from 0..255 components.
constexpr Color rgb255(int red, int green, int blue) {
    return Color{red / 255.0, green / 255.0, blue / 255.0};
}

class Canvas {
  public:
    // Starts drawing on `image`; check ok() before drawing.
    explicit Canvas(ImageSurface& image);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // 0 when the canvas can draw, otherwise a non-zero back-end status.
    int status() const;
    bool ok() const { return status() == 0; }
    int width() const;
    int height() const;

    void fillRect(const CanvasRect& r, Color c);
    // A one-pixel line along the rectangle's path (pass a path on pixel
    // centres for crisp lines).
    void strokeRect(const CanvasRect& r, Color c);
    void fillPolygon(const CanvasPoint* points, int n, Color c);
    // One-pixel lines from point to point; `closed` joins the last to the first.
    void strokePolyline(const CanvasPoint* points, int n, bool closed, Color c);

    // Limits the following drawing to `r` until unclip().
    void clipTo(const CanvasRect& r);
    void unclip();

    // Font for the following text calls: size in pixels, regular or bold.
    void selectFont(double size, bool bold);
    // Advance width of the first `length` bytes of `text` in the current font.
    double textWidth(const char* text, size_t length);
    // Draws the first `length` bytes of `text` with its baseline starting at (x, y).
    void showText(double x, double y, const char* text, size_t length, Color c);

    // Draws `image` with its bottom-left corner at (x, y).
    void drawImage(const ImageSurface& image, double x, double y);

  private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};
