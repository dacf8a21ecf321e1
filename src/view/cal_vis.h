// CalVis: the calendar view's state. Which month the grid shows, how far the
// show list is scrolled, the geometry of the last frame and every rectangle
// the last frame made clickable (with the hovered flags the mouse handlers
// keep), plus month navigation bounded by the current tab's list and Render,
// the one way any thread redraws the view.
//
// Drawing (view/draw_calendar.h) fills the layout fields and rectangles on
// each frame, so a hit test always meets what was drawn last.
//
// Threads: the view belongs to the thread that made it (the main thread).
// Only that thread draws, so the hit rectangles, hovered flags and scroll
// state that drawing writes and the mouse handlers read never cross threads:
// a click always tests the rectangles of the frame on screen. Render from
// another thread (the update thread, after each step) asks the main thread
// for a frame through its queue (platform/main_thread.h) and returns; such
// requests coalesce until the frame is drawn. Drawing runs under renderMutex
// and takes the list locks itself, so Render is never called with a list
// lock held.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/rect.h"

class StagebeaconClass;
struct SHOWENTRY;
struct VisualPluginData;

// What the view's clicks ask of the features beside it (preferences, export,
// sharing), wired by the plug-in entry at set-up time; an empty hook does
// nothing. Main thread.
struct ViewHooks {
    // The preferences link: opens the preferences window.
    std::function<void()> openPreferences;
    // A mark changed while only marked shows are exported.
    std::function<void()> exportMarkedShows;
    // A mark changed while only marked shows are shared: `show`, whose
    // `attending` flag is already the new one, is added to or withdrawn from
    // the user's shared calendar. A failed request is not reported; the next
    // update shares again.
    std::function<void(const SHOWENTRY* show)> shareMark;
};

// A rectangle the pointer can hover, with the flag the move handler keeps.
struct HoverRegion {
    Rect rect;
    bool hovered = false;
};

class CalVis {
  public:
    static constexpr int kCells = 35; // 5 weeks x 7 days, row by row

    // Shows the current local month.
    explicit CalVis(StagebeaconClass* owner);
    ~CalVis();
    CalVis(const CalVis&) = delete;
    CalVis& operator=(const CalVis&) = delete;

    StagebeaconClass* owner;
    ViewHooks hooks;
    int curVisMonth;              // 1..12
    int curVisYear;               // four digits
    int curVisShowListOffset = 0; // list scroll in pixels, 0 or negative after drawing
    int barSize = 15;             // weekday strip height; scroll button length
    int showRowHeight = 55;       // entries advance showRowHeight - 1
    int calLeft = 240;
    int calTop = 105;
    int calRight = 0;  // per frame
    int calBottom = 0; // per frame
    int outerMargin = 18;
    bool listOverflows = false;
    int listContentHeight = 1; // per frame, never below 1
    int scrollThumbLength = 0; // per frame
    int scrollThumbOffset = 0; // per frame, below the up button
    int scrollBarWidth = 14;
    int mouseX = 0; // pointer in port coordinates
    int mouseY = 0;

    HoverRegion nextMonthButton;
    HoverRegion prevMonthButton;
    HoverRegion cityField;
    HoverRegion stateField;
    HoverRegion radiusField;

    Rect listArea;
    Rect gridArea;
    Rect scrollUpButton;
    Rect scrollDownButton;
    Rect scrollThumb;

    bool draggingThumb = false;
    int dragStartY = 0;
    int dragStartOffset = 0;

    HoverRegion versionUpdateBanner;
    HoverRegion promoLine;
    HoverRegion retryLine;
    HoverRegion versionText;
    HoverRegion preferencesLink;
    HoverRegion iPhoneLink;
    HoverRegion androidLink;
    HoverRegion myShowsTab;
    HoverRegion friendShowsTab;
    HoverRegion cdReleasesTab;

    int cellScroll[kCells] = {}; // times the cell's "more" arrow was taken
    Rect cellBackRect[kCells];
    Rect cellMoreRect[kCells];
    bool cellHasBack[kCells] = {};
    bool cellHasMore[kCells] = {};
    Rect cellRect[kCells];

    // The host's instance block of the message being handled (set by the
    // entry point on every message). Null until the host has sent one.
    static std::atomic<VisualPluginData*> visualPluginData;
    // Serialises Render; whoever replaces the port or offscreen image holds it.
    static std::mutex renderMutex;

    // One month forwards or backwards, never past the month of the current
    // tab's last visible show nor before that of its first; an empty list
    // changes nothing. A move resets the per-cell scrolls and the list's
    // highlights and scrolls the list to the month.
    void incrementCurVisMonth();
    void decrementCurVisMonth();
    // Scrolls the list so that the visible month's first entry is at its top.
    void setOffsetToMatchCurVisMonth();

    // Offset changes; none clamps (the next drawing does).
    void scroll(int delta) { curVisShowListOffset += delta; }
    void setCurVisShowListOffset(int offset) { curVisShowListOffset = offset; }
    void scrollUp() { curVisShowListOffset += 20; }
    void scrollDown() { curVisShowListOffset -= 20; }

    // Draws the view into the offscreen image and copies it into the port in
    // one piece. Does nothing (0) while there is no port or image; otherwise
    // the drawing back end's status (0 = drawn). From another thread than
    // the view's: asks the view's thread for a frame and answers 0.
    int Render();

    // True once a frame has reached the port. Any thread.
    bool frameDrawn() const { return firstFrameDone.load(); }

  private:
    // A frame asked of the view's thread; `view` is cleared when the view
    // goes, so a request still queued then does nothing.
    struct FrameRequest {
        std::atomic<bool> queued{false};
        CalVis* view;
    };
    std::thread::id viewThread = std::this_thread::get_id();
    std::shared_ptr<FrameRequest> frameRequest;
    std::atomic<bool> firstFrameDone{false};
};
