/* The contract between the plug-in and its calendar helper module
 * ("Stagebeacon_iCalExport.so" in the resources folder). The plug-in loads
 * the module with dlopen and finds the four entry points below by name with
 * dlsym, so their names and argument lists are fixed; everything behind them
 * is the module's own business.
 *
 * Texts are NUL-terminated 8-bit strings (the show's own bytes; the module
 * makes UTF-8 of them). A calendar handle is an object the caller releases
 * with sbnRelease once done, like any other handle the module hands out.
 *
 * Threads: the plug-in calls the entry points from the update thread (after
 * a search) or from the main thread (after a click), never from both at once
 * with the same handle. A handle is used by one thread only. The module
 * keeps no state between calls besides what InitializeCocoa prepares.
 *
 * Plain C, so that the module could be written in anything that exports C
 * symbols. */
#ifndef STAGEBEACON_CALENDAR_STORE_API_H
#define STAGEBEACON_CALENDAR_STORE_API_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Every handle starts with this header; the module fills in `release`. */
typedef struct SbnObject {
    void (*release)(struct SbnObject* object);
} SbnObject;

typedef SbnObject* SbnCalendarRef;

/* Releases a handle; null is ignored. */
static inline void sbnRelease(SbnObject* object) {
    if (object && object->release) object->release(object);
}

/* Prepares the module's runtime. Called once per export, before anything
 * else, when present. */
typedef void (*InitializeCocoaFunction)(void);

/* Finds or makes the calendar called `title`, ready to receive events. The
 * events added through the handle replace the calendar's contents when it is
 * saved. Null on failure (no title, no place to keep calendars). */
typedef SbnCalendarRef (*CreateNewCalendarFunction)(const char* title);

/* Adds one all-day event on year-month-day. The texts are, in order: the
 * artist, the other acts, the venue, the click-through address, the location
 * and a note (the plug-in passes an empty one). An impossible date adds
 * nothing. */
typedef void (*AddEventFunction)(SbnCalendarRef calendar, const char* artist, const char* otherActs,
                                 const char* venue, const char* clickThrough, const char* location,
                                 const char* note, uint32_t year, uint32_t month, uint32_t day,
                                 uint8_t ticketsAvailable);

/* Writes the calendar with the events added so far; a failure leaves the
 * calendar as it was and is not reported. */
typedef void (*SaveCalendarFunction)(SbnCalendarRef calendar);

#define SBN_INITIALIZE_NAME "InitializeCocoa"
#define SBN_CREATE_CALENDAR_NAME "Sbn_CreateNewCalendar"
#define SBN_ADD_EVENT_NAME "Sbn_AddEvent"
#define SBN_SAVE_CALENDAR_NAME "Sbn_SaveCalendar"

#ifdef __cplusplus
}
#endif

#endif
