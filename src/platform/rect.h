// Screen rectangles in the view's coordinates (origin top left, y down).
//
// Threads: plain values; any thread.
#pragma once

#include <cstdint>

struct Rect {
    int16_t top = 0;
    int16_t left = 0;
    int16_t bottom = 0;
    int16_t right = 0;
};

// Strictly inside on all four sides: a point on an edge is outside.
inline bool strictlyInside(const Rect& r, int x, int y) {
    return x > r.left && x < r.right && y > r.top && y < r.bottom;
}
