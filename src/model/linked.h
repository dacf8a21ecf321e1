// Link surgery shared by the hand-linked record lists. A list has `head`,
// `tail` and `count`; a record has `next` and `prev`. Callers hold the
// list's mutex.
#pragma once

template <typename List, typename Node> void appendNode(List& list, Node* node) {
    node->next = nullptr;
    node->prev = list.tail;
    if (list.tail)
        list.tail->next = node;
    else
        list.head = node;
    list.tail = node;
    ++list.count;
}

// Links `node` just before `at`, which is in the list.
template <typename List, typename Node> void insertBefore(List& list, Node* at, Node* node) {
    node->next = at;
    node->prev = at->prev;
    if (at->prev)
        at->prev->next = node;
    else
        list.head = node;
    at->prev = node;
    ++list.count;
}

template <typename List, typename Node> void unlinkNode(List& list, Node* node) {
    if (node->prev)
        node->prev->next = node->next;
    else
        list.head = node->next;
    if (node->next)
        node->next->prev = node->prev;
    else
        list.tail = node->prev;
    node->next = node->prev = nullptr;
    --list.count;
}

// Forgets every record without releasing it (records may still be reached
// through other pointers; see list_generations.h).
template <typename List> void forgetNodes(List& list) {
    list.head = list.tail = nullptr;
    list.count = 0;
}

// Releases every record and leaves the list empty.
template <typename List> void deleteNodes(List& list) {
    for (auto* node = list.head; node;) {
        auto* next = node->next;
        delete node;
        node = next;
    }
    forgetNodes(list);
}
