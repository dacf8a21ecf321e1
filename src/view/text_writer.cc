// Screen-rectangle drawing and the view's one text writer.
#include "view/text_writer.h"

#include <cmath>
#include <cstring>
#include <algorithm>
#include <string>
#include <vector>

CanvasRect convertRect(const Rect& r, int portHeight) {
    return CanvasRect{double(r.left), double(portHeight - r.bottom), double(r.right - r.left),
                      double(r.bottom - r.top)};
}

CanvasRect convertStrokeRect(const Rect& r, int portHeight) {
    CanvasRect c = convertRect(r, portHeight);
    return CanvasRect{c.x + 0.5, c.y + 0.5, c.width - 1, c.height - 1};
}

void fillScreenRect(Canvas* canvas, const Rect& r, const Rect* port, Color c) {
    canvas->fillRect(convertRect(r, port->bottom - port->top), c);
}

void strokeScreenRect(Canvas* canvas, const Rect& r, const Rect* port, Color c) {
    canvas->strokeRect(convertStrokeRect(r, port->bottom - port->top), c);
}

void macClearScreen(Canvas* canvas, const Rect* port) {
    int width = port->right - port->left;
    int height = std::abs(port->bottom - port->top);
    canvas->fillRect(CanvasRect{0, 0, double(width), double(height)}, Color{1, 1, 1});
}

namespace {

constexpr size_t kLineLimit = 1023; // longest line read
constexpr size_t kDrawLimit = 255;  // longest line drawn

// Byte offsets at which characters start: every byte that is not a UTF-8
// continuation byte, so a cut never splits a character of UTF-8 text.
size_t charCount(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s)
        n += (c & 0xC0) != 0x80;
    return n;
}

// The first `chars` characters of `s`.
std::string charPrefix(const std::string& s, size_t chars) {
    size_t i = 0;
    for (size_t seen = 0; i < s.size(); ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80 && seen++ == chars) break;
    }
    return s.substr(0, i);
}

// Bytes of at most `limit`, not ending inside a character.
std::string boundedCopy(const char* text, size_t length, size_t limit) {
    std::string s(text, std::min(length, limit));
    if (length > limit) {
        size_t end = s.size();
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        s.resize(end);
    }
    return s;
}

double widthOf(Canvas* canvas, const std::string& s) {
    return canvas->textWidth(s.data(), s.size());
}

} // namespace

// Cutting one character at a time and ending in "..." until the line fits or
// is 4 characters long. A cut to n characters keeps n - 3 of the line; the
// longest cut that fits is found by halving, since width grows with length.
std::string macFitLine(Canvas* canvas, const std::string& line, double maxWidth, double* width) {
    *width = widthOf(canvas, line);
    size_t length = charCount(line);
    if (*width <= maxWidth || length < 5) return line;
    auto cut = [&](size_t n) { return charPrefix(line, n - 3) + "..."; };
    size_t lo = 5, hi = length - 1, best = 4; // candidates lo..hi
    while (lo <= hi) {
        size_t mid = lo + (hi - lo) / 2;
        if (widthOf(canvas, cut(mid)) <= maxWidth) {
            best = mid;
            lo = mid + 1;
        } else {
            hi = mid - 1;
        }
    }
    std::string out = cut(best);
    *width = widthOf(canvas, out);
    return out;
}

void macWriteToRect(Canvas* canvas, const char* text, Rect r, const Rect* port, int lineHeight,
                    int justification, bool underline, Color color) {
    if (!text) return;
    const int portHeight = port->bottom - port->top;
    const double maxWidth = r.right - r.left - 2;
    const int pitch = lineHeight + 2;
    int baseline = r.top + pitch; // screen y of the first baseline
    for (const char* start = text;; baseline += pitch) {
        if (baseline > r.bottom) break;
        const char* end = strchr(start, '\n');
        size_t length = end ? size_t(end - start) : strlen(start);
        std::string line = boundedCopy(start, std::min(length, kLineLimit), kDrawLimit);
        double width = 0;
        line = macFitLine(canvas, line, maxWidth, &width);
        double x = r.left + 1;
        if (justification == kJustifyCentre)
            x = r.left + (r.right - r.left) / 2 - width / 2 + 1;
        else if (justification == kJustifyRight)
            x = r.right - width + 1;
        x = std::floor(x + 0.5); // whole pixels keep glyphs crisp
        canvas->showText(x, portHeight - baseline, line.data(), line.size(), color);
        if (underline && width > 0)
            canvas->fillRect(CanvasRect{x, double(portHeight - baseline - 3), width, 1}, Color{});
        if (!end) break;
        start = end + 1;
    }
}

namespace {

// The smallest a text is shrunk to, as a share of its size and absolutely,
// where the rectangle has room to wrap.
constexpr double kShrinkShare = 0.75;
constexpr double kSmallestSize = 7.5;
// A rectangle one line high cannot wrap, so shrinking is all that keeps its
// line from being cut. It may go down to 6: at that size the fallback fonts'
// small letters are still about 4 pixels high and their strokes apart, which
// reads on screen; below it letters run together and a cut line says more.
constexpr double kSmallestSingleLineSize = 6;

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    lines.push_back(text.substr(start));
    return lines;
}

// Breaks each line at blanks so that every piece fits `maxWidth` (a single
// word wider than that stays whole). Empty when more than `room` lines result.
std::vector<std::string> wrapLines(Canvas* canvas, const std::vector<std::string>& lines,
                                   double maxWidth, size_t room) {
    std::vector<std::string> out;
    for (const std::string& line : lines) {
        std::string current;
        size_t start = 0;
        while (start <= line.size()) {
            size_t end = line.find(' ', start);
            if (end == std::string::npos) end = line.size();
            std::string word = line.substr(start, end - start);
            std::string longer = current.empty() ? word : current + " " + word;
            if (!current.empty() && widthOf(canvas, longer) > maxWidth) {
                out.push_back(current);
                if (out.size() >= room) return {}; // and `current` still to place
                current = word;
            } else {
                current = longer;
            }
            start = end + 1;
        }
        out.push_back(current);
        if (out.size() > room) return {};
    }
    return out;
}

// The width of the widest line.
double widest(Canvas* canvas, const std::vector<std::string>& lines) {
    double width = 0;
    for (const std::string& line : lines)
        width = std::max(width, widthOf(canvas, line));
    return width;
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i)
        text += (i ? "\n" : "") + lines[i];
    return text;
}

} // namespace

// Makes `text` fit `r` where the rectangle allows: wrapped onto the lines it
// has room for, else set smaller (down to kShrinkShare of the size, or to
// kSmallestSingleLineSize in a one-line rectangle), wrapped again if need be.
// Sizes go down in steps of 0.5; the largest that fits wins. Leaves text and
// size alone when nothing helps; the writer then cuts the line as it always
// did. The canvas ends with `size` selected.
//
// Every try measures with Pango, and a first frame measures every text
// afresh, and every new size loads a font, so the search is kept short: a
// text that can wrap but does not fit even at the smallest size is given up
// after one try there, and a text that cannot wrap starts near the size at
// which its width, which grows about in proportion to the size, would fit.
std::string fitText(Canvas* canvas, const std::string& text, const Rect& r,
                    const TextStyle& style, double& size) {
    const double maxWidth = r.right - r.left - 2;
    const size_t room = size_t(std::max(1, (r.bottom - r.top) / (style.lineHeight + 2)));
    std::vector<std::string> lines = splitLines(text);
    size = style.size;
    canvas->selectFont(size, style.bold); // whatever the caller left selected
    if (lines.size() > room) return text;
    const double width = widest(canvas, lines);
    if (width <= maxWidth) return text;

    const bool canWrap = lines.size() < room;
    const double lowest = room == 1 ? std::min(style.size, kSmallestSingleLineSize)
                                   : std::max(kSmallestSize, style.size * kShrinkShare);
    const double step = 0.5;
    const double smallest = style.size - step * std::floor((style.size - lowest) / step);
    // The text as it fits at size s, or empty.
    auto fittedAt = [&](double s) -> std::string {
        canvas->selectFont(s, style.bold);
        if (widest(canvas, lines) <= maxWidth) return text;
        if (!canWrap) return "";
        std::vector<std::string> wrapped = wrapLines(canvas, lines, maxWidth, room);
        return !wrapped.empty() && widest(canvas, wrapped) <= maxWidth ? joinLines(wrapped) : "";
    };

    double first = style.size - step;
    if (canWrap) {
        std::vector<std::string> wrapped = wrapLines(canvas, lines, maxWidth, room);
        if (!wrapped.empty() && widest(canvas, wrapped) <= maxWidth) return joinLines(wrapped);
        if (fittedAt(smallest).empty()) first = smallest - step; // hopeless
    } else {
        // A step above the proportional guess, in case hinting makes the text
        // narrower than the guess says; a guess far below the smallest size
        // is not tried at all.
        double guess = style.size * maxWidth / width;
        first = std::min(first, smallest + step * (std::ceil((guess - smallest) / step) + 1));
    }
    for (double s = first; s >= smallest; s -= step) {
        std::string fitted = fittedAt(s);
        if (!fitted.empty()) {
            size = s;
            return fitted;
        }
    }
    canvas->selectFont(style.size, style.bold);
    return text;
}

void writeText(Canvas* canvas, const char* text, const Rect& r, const Rect* port,
               const TextStyle& style, bool underline) {
    canvas->selectFont(style.size, style.bold);
    double size = style.size;
    std::string fitted = text ? fitText(canvas, text, r, style, size) : std::string();
    macWriteToRect(canvas, text ? fitted.c_str() : nullptr, r, port, style.lineHeight,
                   style.justification, underline, style.color);
    if (style.bold || size != style.size) canvas->selectFont(13, false);
}
