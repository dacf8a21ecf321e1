// Loading and drawing the ticket images.
#include "view/ticket_icons.h"

#include <mutex>
#include <string>

#include "platform/canvas.h"
#include "platform/image_surface.h"
#include "platform/resources_folder.h"

const ImageSurface* buyTicketsSmallImage = nullptr;
const ImageSurface* buyTicketsLargeImage = nullptr;

namespace {

// Kept for the life of the process, like the bundle they come from.
const ImageSurface* load(const std::string& folder, const char* name) {
    auto* image = new ImageSurface(ImageSurface::fromPng((folder + "/" + name).c_str()));
    return image;
}

void loadOnce() {
    static std::once_flag once;
    std::call_once(once, [] {
        std::string folder = resourcesFolder();
        buyTicketsSmallImage = load(folder, "buyTicketsSmall.png");
        buyTicketsLargeImage = load(folder, "buyTicketsLarge.png");
    });
}

void drawAt(Canvas* canvas, Rect* port, const ImageSurface* image, int x, int y) {
    if (!image || !image->valid()) return;
    int portHeight = port->bottom - port->top;
    canvas->drawImage(*image, x, portHeight - y - image->height());
}

} // namespace

void drawSmallTicketIcon(Canvas* canvas, Rect* port, int x, int y) {
    loadOnce();
    drawAt(canvas, port, buyTicketsSmallImage, x, y);
}

void drawLargeTicketIcon(Canvas* canvas, Rect* port, int x, int y) {
    loadOnce();
    drawAt(canvas, port, buyTicketsLargeImage, x, y);
}
