// Text and rectangles on the canvas in screen terms: the view thinks in
// screen rectangles (y down), the canvas draws with y up, so every rectangle
// is flipped on its way (convertRect, convertStrokeRect) and text is placed
// by baselines counted from the port's height.
//
// Threads: whoever holds the canvas.
#pragma once

#include <string>

#include "platform/rect.h"
#include "platform/canvas.h"

enum Justification { kJustifyLeft = 0, kJustifyCentre = 1, kJustifyRight = 2 };

// The canvas rectangle covering the screen rectangle `r` in a port of
// `portHeight`: y becomes portHeight - bottom.
CanvasRect convertRect(const Rect& r, int portHeight);
// The same for outlines: the path runs through the centres of the
// rectangle's edge pixels, so a one-pixel outline covers exactly them.
CanvasRect convertStrokeRect(const Rect& r, int portHeight);

// Fills the whole port white.
void macClearScreen(Canvas* canvas, const Rect* port);

// Writes `text` into `r` in the canvas's current font: one line per "\n",
// `lineHeight` + 2 apart, stopping at r.bottom. A line wider than the
// rectangle (less 2) is cut, a character at a time, and ends in "..."; it is
// never cut below 5 characters. Underlines in black 2 pixels below the
// baseline when asked.
void macWriteToRect(Canvas* canvas, const char* text, Rect r, const Rect* port, int lineHeight,
                    int justification, bool underline, Color color);

// The line as macWriteToRect draws it within `maxWidth` in the current font:
// whole, or cut to the longest "..."-ended form that fits (at least 4
// characters). Sets `width` to the drawn width.
std::string macFitLine(Canvas* canvas, const std::string& line, double maxWidth, double* width);

// How the view's texts are set: font, colour, line height, alignment.
struct TextStyle {
    double size = 13;
    bool bold = false;
    Color color{};
    int lineHeight = 13;
    int justification = kJustifyLeft;
};

// Selects the style's font and writes `text` with it; the regular face is
// selected again afterwards. A line too wide for `r` is first wrapped at
// blanks onto the lines `r` has room for, then set smaller (to three
// quarters of the size at least, 7.5 at the least; in a rectangle one line
// high, which cannot wrap, down to 6), and only then cut.
void writeText(Canvas* canvas, const char* text, const Rect& r, const Rect* port,
               const TextStyle& style, bool underline = false);

// What writeText draws: `text` wrapped or shrunk to fit `r`, or unchanged
// when nothing helps; `size` is the size it is set in, which the canvas has
// selected on return.
std::string fitText(Canvas* canvas, const std::string& text, const Rect& r,
                    const TextStyle& style, double& size);

// Fill and outline of a screen rectangle.
void fillScreenRect(Canvas* canvas, const Rect& r, const Rect* port, Color c);
void strokeScreenRect(Canvas* canvas, const Rect& r, const Rect* port, Color c);
