#include "model/library_lists.h"

#include <cstring>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "model/linked.h"

XMLARTIST::XMLARTIST(const char* text) { copyText(name, text); }

XMLALBUM::XMLALBUM(const char* text) { copyText(name, text); }

namespace {

// Sorted insertion shared by the two name lists: equal (per `compare`) ends
// without linking, the first greater name gets the record before it.
template <typename List, typename Node, typename Compare>
bool insertSorted(List& list, Node* node, Compare compare) {
    for (Node* n = list.head; n; n = n->next) {
        int order = compare(n->name, node->name);
        if (order == 0) return false;
        if (order > 0) {
            insertBefore(list, n, node);
            return true;
        }
    }
    appendNode(list, node);
    return true;
}

int compareKeys(const char* a, const char* b) {
    char keyA[kArtistKeySize];
    char keyB[kArtistKeySize];
    copyText(keyA, a);
    copyText(keyB, b);
    cleanArtist(keyA);
    cleanArtist(keyB);
    return strcmp(keyA, keyB);
}

} // namespace

bool XML_Artist_List::add(XMLARTIST* artist) {
    std::lock_guard<std::mutex> guard(mutex);
    return insertSorted(*this, artist, strcmp);
}

bool XML_Artist_List::addUncleaned(XMLARTIST* artist) {
    std::lock_guard<std::mutex> guard(mutex);
    return insertSorted(*this, artist, compareKeys);
}

XMLARTIST* XML_Artist_List::remove(const char* name) {
    std::lock_guard<std::mutex> guard(mutex);
    return unlinkNamed(*this, name);
}

bool XML_Album_List::add(XMLALBUM* album) {
    std::lock_guard<std::mutex> guard(mutex);
    return insertSorted(*this, album, strcmp);
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

