// The text writer and the y-flip: where text lands, how it is cut, and that
// it stays inside its rectangle.
#include "view/text_writer.h"

#include <gtest/gtest.h>

#include "platform/image_surface.h"
#include "view/cal_vis.h"
#include "view/layout.h"

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;

struct TextWriterTest : ::testing::Test {
    static constexpr int W = 400, H = 120;
    ImageSurface image{W, H};
    Rect port = make(0, 0, H, W);

    static Rect make(int top, int left, int bottom, int right) {
        Rect r;
        r.top = int16_t(top), r.left = int16_t(left), r.bottom = int16_t(bottom),
        r.right = int16_t(right);
        return r;
    }
    void clear() {
        Canvas canvas(image);
        macClearScreen(&canvas, &port);
    }
    void write(const char* text, Rect r, int justification, bool underline = false) {
        Canvas canvas(image);
        canvas.selectFont(13, false);
        macWriteToRect(&canvas, text, r, &port, 13, justification, underline, Color{});
    }
    bool inked(int x, int y) const { return (image.pixel(x, y) & 0xFFFFFF) != kWhite; }
    // Leftmost and rightmost inked columns within rows [top, bottom); -1 if none.
    std::pair<int, int> inkColumns(int top, int bottom) const {
        int lo = -1, hi = -1;
        for (int x = 0; x < W; ++x)
            for (int y = top; y < bottom; ++y)
                if (inked(x, y)) {
                    if (lo < 0) lo = x;
                    hi = x;
                    break;
                }
        return {lo, hi};
    }
    bool rowsInked(int top, int bottom) const { return inkColumns(top, bottom).first >= 0; }
};

TEST(ConvertRect, FlipsYAgainstThePortHeight) {
    Rect r;
    r.top = 10, r.left = 20, r.bottom = 30, r.right = 70;
    CanvasRect c = convertRect(r, 100);
    EXPECT_DOUBLE_EQ(20, c.x);
    EXPECT_DOUBLE_EQ(70, c.y); // 100 - bottom
    EXPECT_DOUBLE_EQ(50, c.width);
    EXPECT_DOUBLE_EQ(20, c.height);
    CanvasRect s = convertStrokeRect(r, 100);
    EXPECT_DOUBLE_EQ(20.5, s.x);
    EXPECT_DOUBLE_EQ(70.5, s.y);
    EXPECT_DOUBLE_EQ(49, s.width);
    EXPECT_DOUBLE_EQ(19, s.height);
}

TEST_F(TextWriterTest, FilledAndOutlinedRectanglesCoverExactlyTheirPixels) {
    clear();
    {
        Canvas canvas(image);
        fillScreenRect(&canvas, make(10, 20, 30, 60), &port, Color{});
        strokeScreenRect(&canvas, make(50, 100, 70, 140), &port, Color{});
    }
    EXPECT_TRUE(inked(20, 10) && inked(59, 29));
    EXPECT_FALSE(inked(19, 10) || inked(60, 29) || inked(20, 9) || inked(20, 30));
    EXPECT_EQ(0xFF000000u, image.pixel(100, 50)); // crisp, not blended
    EXPECT_EQ(0xFF000000u, image.pixel(139, 69));
    EXPECT_FALSE(inked(101, 51) || inked(140, 69) || inked(100, 70));
}

TEST_F(TextWriterTest, ClearScreenPaintsThePortWhite) {
    image.fill(0xFF000000);
    clear();
    EXPECT_EQ(0xFFFFFFFFu, image.pixel(0, 0));
    EXPECT_EQ(0xFFFFFFFFu, image.pixel(W - 1, H - 1));
}

TEST_F(TextWriterTest, JustificationPlacesTheLine) {
    const Rect r = make(0, 100, 20, 300);
    clear();
    write("Wilco", r, kJustifyLeft);
    auto left = inkColumns(0, 20);
    EXPECT_GE(left.first, 101);
    EXPECT_LE(left.first, 103);

    clear();
    write("Wilco", r, kJustifyRight);
    auto right = inkColumns(0, 20);
    EXPECT_LE(right.second, 301);
    EXPECT_GE(right.second, 296);

    clear();
    write("Wilco", r, kJustifyCentre);
    auto centre = inkColumns(0, 20);
    EXPECT_NEAR(200, (centre.first + centre.second) / 2.0, 3);
}

TEST_F(TextWriterTest, LinesStackAndStopAtTheBottom) {
    clear();
    write("one\ntwo\nthree", make(0, 10, 100, 200), kJustifyLeft);
    EXPECT_TRUE(rowsInked(0, 16));
    EXPECT_TRUE(rowsInked(16, 31));
    EXPECT_TRUE(rowsInked(31, 46));

    clear();
    write("one\ntwo\nthree", make(0, 10, 40, 200), kJustifyLeft); // room for two baselines
    EXPECT_TRUE(rowsInked(16, 31));
    EXPECT_FALSE(rowsInked(36, H));

    clear();
    write("none", make(0, 10, 14, 200), kJustifyLeft); // first baseline (15) below the bottom
    EXPECT_FALSE(rowsInked(0, H));
}

TEST_F(TextWriterTest, UnderlineRunsTwoPixelsBelowTheBaseline) {
    clear();
    write("Underlined", make(20, 10, 60, 300), kJustifyLeft, true);
    const int row = 20 + 15 + 2; // baseline at top + lineHeight + 2
    auto ink = inkColumns(row, row + 1);
    ASSERT_GE(ink.first, 0);
    for (int x = ink.first; x <= ink.second; ++x)
        EXPECT_EQ(0xFF000000u, image.pixel(x, row));
    EXPECT_GT(ink.second - ink.first, 40);
}

TEST_F(TextWriterTest, LongTextIsCutInsideItsRectangle) {
    clear();
    const Rect r = make(0, 50, 20, 130);
    write("A text far too long to fit into eighty pixels", r, kJustifyLeft);
    auto ink = inkColumns(0, 20);
    EXPECT_GE(ink.first, 50);
    EXPECT_LE(ink.second, 130);
}

TEST_F(TextWriterTest, FitLineCutsToTheLongestFittingForm) {
    Canvas canvas(image);
    canvas.selectFont(13, false);
    const std::string text = "The Decemberists with Neko Case and friends";
    double width = 0;
    EXPECT_EQ(text, macFitLine(&canvas, text, 1000, &width));
    EXPECT_DOUBLE_EQ(canvas.textWidth(text.data(), text.size()), width);

    std::string cut = macFitLine(&canvas, text, 100, &width);
    ASSERT_GE(cut.size(), 4u);
    EXPECT_EQ("...", cut.substr(cut.size() - 3));
    EXPECT_LE(width, 100);
    const std::string kept = cut.substr(0, cut.size() - 3);
    EXPECT_EQ(0u, text.find(kept));
    std::string longer = text.substr(0, kept.size() + 1) + "...";
    EXPECT_GT(canvas.textWidth(longer.data(), longer.size()), 100);
}

TEST_F(TextWriterTest, FitLineNeverCutsBelowFourCharacters) {
    Canvas canvas(image);
    canvas.selectFont(13, false);
    double width = 0;
    EXPECT_EQ("T...", macFitLine(&canvas, "The National", 2, &width));
    EXPECT_EQ("Wilc", macFitLine(&canvas, "Wilc", 2, &width)); // under 5: left whole
}

TEST_F(TextWriterTest, FitLineKeepsUtf8CharactersWhole) {
    Canvas canvas(image);
    canvas.selectFont(13, false);
    double width = 0;
    const std::string text = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";
    for (double max = 10; max < 80; max += 3) {
        std::string cut = macFitLine(&canvas, text, max, &width);
        std::string kept = cut.substr(0, cut.size() - (cut.size() < text.size() ? 3 : 0));
        EXPECT_EQ(0u, kept.size() % 2) << max; // whole two-byte characters only
    }
}

} // namespace

namespace {

// At the window sizes people use, the version text and the ticket line fit
// their one-line rectangles whole (set smaller where needed, never cut), a
// text with room for two lines wraps, and one with no room at all is left
// for the writer to cut.
TEST(TextFit, TextsFitAtCommonWindowSizesByShrinkingOrWrapping) {
    ImageSurface image{1920, 1080};
    Canvas canvas(image);
    const TextStyle small{10, false, Color{}, 10, kJustifyRight};
    const std::string ticketLine =
        "You can now use Stagebeacon to purchase your tickets! Click on any show with a "
        "ticket icon.";
    for (auto [width, height] : {std::pair<int, int>{800, 600}, {1100, 700}, {1920, 1080}}) {
        CalVis view(nullptr);
        Rect port;
        port.top = 0, port.left = 0, port.bottom = int16_t(height), port.right = int16_t(width);
        ViewLayout layout = computeLayout(view, port, 0, kMyShowsTab);
        for (auto [text, r] : {std::pair<std::string, Rect>{"Stagebeacon 2.9", layout.version},
                               {ticketLine, layout.promo}}) {
            double size = 0;
            std::string fitted = fitText(&canvas, text, r, small, size);
            double drawnWidth = 0;
            // What the writer draws at the size chosen: the whole line.
            EXPECT_EQ(macFitLine(&canvas, fitted, r.right - r.left - 2, &drawnWidth), text)
                << width << "x" << height << " at " << size;
            EXPECT_GE(size, 6) << text << " " << width;
        }
    }
    Rect twoLines;
    twoLines.top = 0, twoLines.left = 0, twoLines.bottom = 26, twoLines.right = 200;
    double size = 0;
    const std::string promo = "You can now use Stagebeacon to purchase your tickets!";
    std::string wrapped = fitText(&canvas, promo, twoLines, small, size);
    ASSERT_NE(wrapped.find('\n'), std::string::npos) << wrapped;
    for (size_t start = 0, end; start <= wrapped.size(); start = end + 1) {
        end = wrapped.find('\n', start);
        if (end == std::string::npos) end = wrapped.size();
        EXPECT_LE(canvas.textWidth(wrapped.data() + start, end - start), 198) << wrapped;
    }
    Rect tiny = twoLines;
    tiny.bottom = 12, tiny.right = 60;
    EXPECT_EQ(fitText(&canvas, promo, tiny, small, size), promo);
    EXPECT_EQ(size, 10);
}

} // namespace
