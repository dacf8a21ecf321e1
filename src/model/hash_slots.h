// HashSlots: an open-addressing table of (hash, value) slots for the indexes
// that sit beside the lists. Looking a key up costs one probe into one array
// (the stored hash rejects almost every other key without touching it), where
// a node-based map costs a bucket, a node and the key's bytes, each likely a
// cache miss. The caller keeps the keys; `same(value)` says whether a value
// holds the key being looked for.
//
// Threads: no locking of its own; its owner's lock covers it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

template <typename Value> class HashSlots {
  public:
    // The value under `hash` for which same(value) holds; Value() if none.
    template <typename Same> Value find(uint64_t hash, Same same) const {
        if (used == 0) return Value();
        for (size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& s = slots[i];
            if (s.value == Value()) return Value();
            if (s.hash == hash && same(s.value)) return s.value;
        }
    }

    // Adds `value` (never Value()) under `hash`; the caller has checked that
    // its key is not there yet.
    void insert(uint64_t hash, Value value) {
        if ((used + 1) * 4 > slots.size() * 3) grow(slots.size() * 2);
        size_t i = hash & mask;
        while (slots[i].value != Value()) i = (i + 1) & mask;
        slots[i] = {hash, value};
        ++used;
    }

    // Room for `n` values without growing.
    void reserve(size_t n) {
        if (n * 4 > slots.size() * 3) grow(n * 4 / 3 + 1);
    }

    void clear() {
        slots.clear();
        mask = 0;
        used = 0;
    }

    size_t size() const { return used; }

  private:
    struct Slot {
        uint64_t hash;
        Value value;
    };
    std::vector<Slot> slots;
    size_t mask = 0;
    size_t used = 0;

    void grow(size_t atLeast) {
        size_t n = 16;
        while (n < atLeast) n *= 2;
        std::vector<Slot> old(n, Slot{0, Value()});
        old.swap(slots);
        mask = n - 1;
        for (const Slot& s : old) {
            if (s.value == Value()) continue;
            size_t i = s.hash & mask;
            while (slots[i].value != Value()) i = (i + 1) & mask;
            slots[i] = s;
        }
    }
};
