#include "model/protected_data.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string>

#include "model/fixed_text.h"

namespace {

using Guard = std::lock_guard<std::mutex>;

std::atomic<ProtectedData*> registeredStore{nullptr};

void appendLimited(char* text, char c, size_t limit) {
    size_t n = strlen(text);
    if (n < limit) {
        text[n] = c;
        text[n + 1] = '\0';
    }
}

void dropLast(char* text) {
    size_t n = strlen(text);
    if (n > 0) text[n - 1] = '\0';
}

constexpr size_t kLocationTextLimit = 254;
constexpr size_t kRadiusTextLimit = 4;
constexpr int kMaxSearchRadius = 300;
constexpr size_t kFilterNameLength = 63;

} // namespace

ProtectedData* sharedStore() { return registeredStore.load(std::memory_order_acquire); }

void setSharedStore(ProtectedData* store) { registeredStore.store(store, std::memory_order_release); }

ProtectedData::ProtectedData() {
    Guard guard(mutex);
#define SB_INIT_STRING(Name, member, size, initial) copyText(member, initial, size);
    SB_STRING_FIELDS(SB_INIT_STRING)
#undef SB_INIT_STRING
#define SB_INIT_VALUE(Type, Name, member, initial) member = initial;
    SB_VALUE_FIELDS(SB_INIT_VALUE)
#undef SB_INIT_VALUE
}

ProtectedData::~ProtectedData() { deleteNames(&formatFilters); }

#define SB_DEFINE_STRING(Name, member, size, initial)                                              \
    void ProtectedData::get##Name(char* dst) {                                                     \
        Guard guard(mutex);                                                                        \
        copyText(dst, member, size);                                                               \
    }                                                                                              \
    void ProtectedData::set##Name(const char* src) {                                               \
        Guard guard(mutex);                                                                        \
        copyText(member, src, size);                                                               \
    }
SB_STRING_FIELDS(SB_DEFINE_STRING)
#undef SB_DEFINE_STRING

#define SB_DEFINE_VALUE(Type, Name, member, initial)                                               \
    Type ProtectedData::get##Name() {                                                              \
        Guard guard(mutex);                                                                        \
        return member;                                                                             \
    }                                                                                              \
    void ProtectedData::set##Name(Type value) {                                                    \
        Guard guard(mutex);                                                                        \
        member = value;                                                                            \
    }
SB_VALUE_FIELDS(SB_DEFINE_VALUE)
#undef SB_DEFINE_VALUE

void ProtectedData::addLetterCurCityDisplay(char c) {
    Guard guard(mutex);
    appendLimited(curCityDisplay, c, kLocationTextLimit);
}

void ProtectedData::addLetterCurStateDisplay(char c) {
    Guard guard(mutex);
    appendLimited(curStateDisplay, c, kLocationTextLimit);
}

void ProtectedData::addLetterCurSearchRadiusDisplay(char c) {
    Guard guard(mutex);
    appendLimited(curSearchRadiusDisplay, c, kRadiusTextLimit);
}

void ProtectedData::removeLetterCurCityDisplay() {
    Guard guard(mutex);
    dropLast(curCityDisplay);
}

void ProtectedData::removeLetterCurStateDisplay() {
    Guard guard(mutex);
    dropLast(curStateDisplay);
}

void ProtectedData::removeLetterCurSearchRadiusDisplay() {
    Guard guard(mutex);
    dropLast(curSearchRadiusDisplay);
}

void ProtectedData::limitCurSearchRadiusDisplay() {
    Guard guard(mutex);
    int radius = 0;
    if (sscanf(curSearchRadiusDisplay, "%d", &radius) == 1 && radius > kMaxSearchRadius)
        snprintf(curSearchRadiusDisplay, sizeof curSearchRadiusDisplay, "%d", kMaxSearchRadius);
}

void ProtectedData::setUpdatingProgress(double p) {
    Guard guard(mutex);
    updatingProgress = p < 0.0 ? 0.0 : (p > 100.0 ? 100.0 : p);
}

void ProtectedData::incUpdatingProgress(double d) {
    Guard guard(mutex);
    updatingProgress += d;
    if (updatingProgress > 100.0) updatingProgress = 100.0;
}

double ProtectedData::getUpdatingProgress() {
    Guard guard(mutex);
    return updatingProgress;
}

void ProtectedData::addFormatFilter(const char* name) {
    Guard guard(mutex);
    char cut[kFilterNameLength + 1];
    copyText(cut, name, sizeof cut);
    FRIENDNAME* filter = new FRIENDNAME(cut);
    if (!formatFilters.add(filter)) delete filter;
}

void ProtectedData::removeFormatFilter(const char* name) {
    Guard guard(mutex);
    delete formatFilters.remove(name);
}

bool ProtectedData::isFilterOn(const char* name) { return formatFilters.contains(name); }

bool ProtectedData::isFilterOn(FRIENDLIST* names) {
    Guard guard(mutex);
    for (FRIENDNAME* n = names->head; n; n = n->next)
        if (formatFilters.contains(n->name)) return true;
    return false;
}

void ProtectedData::getFilterString(char* dst) {
    Guard guard(mutex);
    std::string joined;
    formatFilters.lock();
    for (FRIENDNAME* n = formatFilters.head; n; n = n->next) {
        joined += n->name;
        joined += "@@";
    }
    formatFilters.unlock();
    copyText(dst, joined.c_str(), FilterStringSize);
}
