// The calendar-store route: the plug-in's side of the helper module
// contract. The module is looked up afresh on every export, so a module
// installed or replaced while the player runs is picked up at the next one.
#include "export/calendar_store.h"

#include <dlfcn.h>

#include <cstdio>
#include <mutex>
#include <string>

#include "export/calendar_store_api.h"
#include "export/ical_export.h"
#include "model/list_generations.h"
#include "platform/resources_folder.h"
#include "model/stagebeacon_class.h"

namespace {

// Owns one dlopen reference.
class ModuleHandle {
  public:
    explicit ModuleHandle(void* handle) : handle(handle) {}
    ~ModuleHandle() {
        if (handle) dlclose(handle);
    }
    ModuleHandle(const ModuleHandle&) = delete;
    ModuleHandle& operator=(const ModuleHandle&) = delete;

    template <typename Function> Function find(const char* name) const {
        return reinterpret_cast<Function>(dlsym(handle, name));
    }

  private:
    void* handle;
};

// Owns a calendar handle from the module.
class CalendarHandle {
  public:
    explicit CalendarHandle(SbnCalendarRef calendar) : calendar(calendar) {}
    ~CalendarHandle() { sbnRelease(calendar); }
    CalendarHandle(const CalendarHandle&) = delete;
    CalendarHandle& operator=(const CalendarHandle&) = delete;

    SbnCalendarRef get() const { return calendar; }

  private:
    SbnCalendarRef calendar;
};

} // namespace

void LoadPrivateFrameworkBundle(const char* name, void** bundle) {
    if (!bundle) return;
    const std::string path = resourcePath(name);
    // RTLD_NODELETE: the module's libraries may keep per-thread state whose
    // destructors run at thread exit, after an unload would have removed
    // them.
    *bundle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!*bundle) fprintf(stderr, "calendar helper not loaded: %s\n", dlerror());
}

int performExportTo_iCalCalendarStore(StagebeaconClass* app) {
    void* loaded = nullptr;
    LoadPrivateFrameworkBundle(kCalendarHelperModule, &loaded);
    if (!loaded) return 0;
    ModuleHandle module(loaded);

    auto initialize = module.find<InitializeCocoaFunction>(SBN_INITIALIZE_NAME);
    auto createCalendar = module.find<CreateNewCalendarFunction>(SBN_CREATE_CALENDAR_NAME);
    auto addEvent = module.find<AddEventFunction>(SBN_ADD_EVENT_NAME);
    auto saveCalendar = module.find<SaveCalendarFunction>(SBN_SAVE_CALENDAR_NAME);
    if (initialize) initialize();
    // Only the first is optional; a module without the others is no helper.
    if (!createCalendar || !addEvent || !saveCalendar) return 0;

    CalendarHandle calendar(createCalendar(kConcertCalendarTitle));
    if (!calendar.get()) return 0;

    ProtectedData& store = app->protectedData;
    const bool allShows = store.getExportAllShows();
    const std::string clickThrough = clickThroughAddress();
    ShowListRef list = app->concerts.current();
    std::lock_guard<SHOWLIST> guard(*list);
    for (SHOWENTRY* show = list->head; show; show = show->next) {
        if (!show->attending && !allShows) continue;
        const std::string showPage = clickThrough + show->url;
        addEvent(calendar.get(), show->artist, show->otherArtists, show->venue, showPage.c_str(),
                 show->location, "", static_cast<uint32_t>(show->year),
                 static_cast<uint32_t>(show->month), static_cast<uint32_t>(show->day),
                 show->ticketsAvailable ? 1 : 0);
    }
    saveCalendar(calendar.get());
    return 0;
}
