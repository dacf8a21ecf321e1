// The two "buy tickets" images of the bundle, drawn beside shows with
// tickets on sale: the large one in the show list, the small one in the
// grid. Each is read once, on first use, from the resources folder
// ($STAGEBEACON_RESOURCES, else "resources" beside the plug-in library); a
// missing image is simply not drawn.
//
// Threads: whoever holds the canvas; the first load is guarded.
#pragma once

#include "platform/rect.h"

class Canvas;
class ImageSurface;

extern const ImageSurface* buyTicketsSmallImage;
extern const ImageSurface* buyTicketsLargeImage;

// Draw the image with its top-left corner at screen point (x, y).
void drawSmallTicketIcon(Canvas* canvas, Rect* port, int x, int y);
void drawLargeTicketIcon(Canvas* canvas, Rect* port, int x, int y);

// Pixel sizes the drawing keeps free for them.
constexpr int kSmallTicketSpace = 13;
constexpr int kLargeTicketSpace = 34;
