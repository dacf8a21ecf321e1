#include "model/library_lists.h"

#include <cstring>

#include "model/fixed_text.h"
#include "model/linked.h"

XMLARTIST::XMLARTIST(const char* text) { copyText(name, text); }

XMLALBUM::XMLALBUM(const char* text) { copyText(name, text); }

bool XML_Artist_List::add(XMLARTIST* artist) {
    std::lock_guard<std::mutex> guard(mutex);
    return index.insert(*this, artist, NameOrder::bytes);
}

bool XML_Artist_List::addUncleaned(XMLARTIST* artist) {
    std::lock_guard<std::mutex> guard(mutex);
    return index.insert(*this, artist, NameOrder::artistKeys);
}

XMLARTIST* XML_Artist_List::remove(const char* name) {
    std::lock_guard<std::mutex> guard(mutex);
    XMLARTIST* removed = unlinkNamed(*this, name);
    if (removed) index.forget(removed);
    return removed;
}

bool XML_Album_List::add(XMLALBUM* album) {
    std::lock_guard<std::mutex> guard(mutex);
    return index.insert(*this, album, NameOrder::bytes);
}

bool XML_Album_List::contains(const char* name) {
    std::lock_guard<std::mutex> guard(mutex);
    for (XMLALBUM* n = head; n; n = n->next)
        if (strcmp(n->name, name) == 0) return true;
    return false;
}

void Artist_Info_List::add(ARTISTINFO* info) {
    std::lock_guard<std::mutex> guard(mutex);
    appendNode(*this, info);
}

