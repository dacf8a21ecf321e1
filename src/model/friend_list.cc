#include "model/friend_list.h"

#include "model/fixed_text.h"

#include <cctype>
#include <cstring>

FRIENDNAME::FRIENDNAME(const char* text) { copyText(name, text); }

namespace {

bool equalIgnoringCase(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b)
        if (tolower(static_cast<unsigned char>(*a)) != tolower(static_cast<unsigned char>(*b)))
            return false;
    return *a == *b;
}

} // namespace

bool FRIENDLIST::containsIgnoringCase(const char* name) const {
    for (FRIENDNAME* n = head; n; n = n->next)
        if (equalIgnoringCase(n->name, name)) return true;
    return false;
}

bool FRIENDLIST::add(FRIENDNAME* name, bool lock) {
    std::unique_lock<std::mutex> guard(mutex, std::defer_lock);
    if (lock) guard.lock();
    if (containsIgnoringCase(name->name)) return false;
    appendNode(*this, name);
    return true;
}

void FRIENDLIST::combine(FRIENDLIST* other) {
    std::lock_guard<std::mutex> guard(mutex);
    for (FRIENDNAME* n = other->head; n; n = n->next) {
        FRIENDNAME* copy = new FRIENDNAME(n->name);
        if (!add(copy, false)) delete copy;
    }
}

FRIENDNAME* FRIENDLIST::remove(const char* name) {
    std::lock_guard<std::mutex> guard(mutex);
    return unlinkNamed(*this, name);
}

bool FRIENDLIST::contains(const char* name) {
    std::lock_guard<std::mutex> guard(mutex);
    for (FRIENDNAME* n = tail; n; n = n->prev)
        if (strcmp(n->name, name) == 0) return true;
    return false;
}

void deleteNames(FRIENDLIST* list) {
    std::lock_guard<std::mutex> guard(list->mutex);
    deleteNodes(*list);
}
