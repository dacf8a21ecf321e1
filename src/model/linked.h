// The shell and the link surgery shared by the hand-linked record lists. A
// list has `head`, `tail`, `count` and its own mutex; a record has `next`
// and `prev`. The surgery functions expect the caller to hold the mutex.
//
// Threads: any thread that holds the list's mutex.
#pragma once

#include <cstdint>
#include <cstring>
#include <mutex>

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

// Unlinks and returns the first record whose `name` equals `name` exactly;
// null when there is none.
template <typename List> auto unlinkNamed(List& list, const char* name) -> decltype(list.head) {
    auto* node = list.head;
    while (node && strcmp(node->name, name) != 0) node = node->next;
    if (node) unlinkNode(list, node);
    return node;
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

// What every record list has: a count, a mutex, head and tail. Walkers take
// the mutex through lock()/unlock() for the length of a walk.
template <typename Node> class RecordList {
  public:
    uint32_t count = 0;
    std::mutex mutex;
    Node* head = nullptr;
    Node* tail = nullptr;

    RecordList() = default;
    RecordList(const RecordList&) = delete;
    RecordList& operator=(const RecordList&) = delete;

    uint32_t size() {
        std::lock_guard<std::mutex> guard(mutex);
        return count;
    }
    // Forgets every record without releasing it.
    void clear() {
        std::lock_guard<std::mutex> guard(mutex);
        forgetNodes(*this);
    }
    void lock() { mutex.lock(); }
    void unlock() { mutex.unlock(); }
};
