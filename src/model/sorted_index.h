// SortedIndex: an ordered index beside a sorted name list (XML_Artist_List,
// XML_Album_List), so that adding a name costs O(log n) instead of a walk
// from the head, while the list stays an ordinary linked list for walkers.
//
// The list is sorted by one of two orders: the names' bytes (add) or their
// artist keys (addUncleaned). The index holds each linked record under its
// sort text, so the record a walk from the head would stop at (the first one
// not smaller) is the index's lower bound. Two cases fall back to that walk,
// which stays exact whatever the list holds: a list filled with one order
// and then added to with the other, and a list changed behind the index's
// back (records linked or freed directly); either lasts until the list is
// empty again.
//
// Threads: the owning list's mutex guards the index too.
#pragma once

#include <cstring>
#include <map>
#include <string>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "model/linked.h"

enum class NameOrder { bytes, artistKeys };

// `name` as it sorts in `order`.
inline std::string sortText(const char* name, NameOrder order) {
    if (order == NameOrder::bytes) return name;
    char key[kArtistKeySize];
    copyText(key, name);
    cleanArtist(key);
    return key;
}

template <typename Node> class SortedIndex {
  public:
    // Links `node` into `list` at its place in `order`; false (not linked)
    // when a record of the same sort text is present. The caller holds the
    // list's mutex.
    template <typename List> bool insert(List& list, Node* node, NameOrder order) {
        if (list.count == 0) reset(order);
        if (list.count != byText.size() || order != indexOrder) walkOnly = true;
        std::string text = sortText(node->name, order);
        if (walkOnly) return walkInsert(list, node, text, order);
        auto at = byText.lower_bound(text);
        if (at != byText.end() && at->first == text) return false;
        if (at == byText.end())
            appendNode(list, node);
        else
            insertBefore(list, at->second, node);
        byText.emplace_hint(at, std::move(text), node);
        return true;
    }

    // `node` was unlinked from the list.
    void forget(const Node* node) {
        if (walkOnly) return;
        auto at = byText.find(sortText(node->name, indexOrder));
        if (at != byText.end() && at->second == node)
            byText.erase(at);
        else
            walkOnly = true;
    }

  private:
    void reset(NameOrder order) {
        byText.clear();
        indexOrder = order;
        walkOnly = false;
    }

    // The walk from the head: a record of equal text ends it without
    // linking, the first greater one gets the new record before it.
    template <typename List>
    static bool walkInsert(List& list, Node* node, const std::string& text, NameOrder order) {
        for (Node* n = list.head; n; n = n->next) {
            int c = strcmp(sortText(n->name, order).c_str(), text.c_str());
            if (c == 0) return false;
            if (c > 0) {
                insertBefore(list, n, node);
                return true;
            }
        }
        appendNode(list, node);
        return true;
    }

    std::map<std::string, Node*> byText;
    NameOrder indexOrder = NameOrder::bytes;
    bool walkOnly = false;
};
