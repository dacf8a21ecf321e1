// The notification window without a display: texts kept for one log line,
// timers that never fire. Chosen by default.
#include <atomic>
#include <string>

#include "platform/headless.h"
#include "export/notify_window.h"

namespace {

struct HeadlessWindow {
    std::string texts[6];
};

HeadlessWindow* headlessWindow(NotifyWindow* window) {
    return reinterpret_cast<HeadlessWindow*>(window);
}

// Sizes the headless window pretends to have; only the log ever sees them.
constexpr int kScreenWidth = 1280;
constexpr int kScreenHeight = 800;
constexpr int kWindowWidth = 340;
constexpr int kWindowHeight = 90;

class HeadlessNotifyWindowBackend : public NotifyWindowBackend {
  public:
    NotifyWindow* createWindow(const char*) override {
        return reinterpret_cast<NotifyWindow*>(new HeadlessWindow);
    }
    int installEventHandler(NotifyWindow*, NotifyEventProc, void*) override { return 0; }
    bool setImage(NotifyWindow*, const char*) override { return true; }
    void setText(NotifyWindow* window, int index, const char* text) override {
        if (index >= 0 && index < 6) headlessWindow(window)->texts[index] = text ? text : "";
    }
    void screenSize(int* width, int* height) override {
        *width = kScreenWidth;
        *height = kScreenHeight;
    }
    void windowSize(NotifyWindow*, int* width, int* height) override {
        *width = kWindowWidth;
        *height = kWindowHeight;
    }
    void move(NotifyWindow*, int, int) override {}
    void setAlpha(NotifyWindow*, float) override {}
    void show(NotifyWindow* handle) override {
        HeadlessWindow* window = headlessWindow(handle);
        std::string line = "notify window:";
        for (int i = 0; i < 3; ++i)
            line += std::string(i ? " | " : " ") + window->texts[i] + " " + window->texts[i + 3];
        headlessLog(line);
    }
    void hide(NotifyWindow* window) override { delete headlessWindow(window); }
    NotifyMainLoop* mainLoop() override { return nullptr; }
    NotifyTimer* installTimer(NotifyMainLoop*, double, double, NotifyTimerProc, void*) override {
        // Any non-null handle will do: the timer never fires.
        static char neverFires;
        return reinterpret_cast<NotifyTimer*>(&neverFires);
    }
    void removeTimer(NotifyTimer*) override {}
};

std::atomic<NotifyWindowBackend*> chosenBackend{nullptr};

} // namespace

NotifyWindowBackend& headlessNotifyWindowBackend() {
    static HeadlessNotifyWindowBackend backend;
    return backend;
}

NotifyWindowBackend& notifyWindowBackend() {
    NotifyWindowBackend* backend = chosenBackend.load();
    return backend ? *backend : headlessNotifyWindowBackend();
}

void setNotifyWindowBackend(NotifyWindowBackend* backend) {
    chosenBackend.store(backend);
}
