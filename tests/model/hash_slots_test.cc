// HashSlots at its edges: keys whose hashes collide or share their low bits
// (long probe runs, across the end of the array), growth in the middle of
// such runs, reserve and clear.
#include "model/hash_slots.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

TEST(HashSlots, FindsEveryValueThroughCollisionsAndGrowth) {
    struct Case {
        const char* name;
        uint64_t (*hashOf)(uint32_t);
    };
    const Case cases[] = {
        {"all one hash", [](uint32_t) -> uint64_t { return 42; }},
        {"same low bits", [](uint32_t v) -> uint64_t { return uint64_t(v) << 40 | 15; }},
        {"spread", [](uint32_t v) -> uint64_t { return v * 0x9e3779b97f4a7c15ull; }},
    };
    for (const Case& c : cases) {
        HashSlots<uint32_t> slots;
        EXPECT_EQ(slots.find(c.hashOf(1), [](uint32_t) { return true; }), 0u) << c.name;
        const uint32_t n = 300; // several doublings
        for (uint32_t v = 1; v <= n; ++v) slots.insert(c.hashOf(v), v);
        EXPECT_EQ(slots.size(), n);
        for (uint32_t v = 1; v <= n; ++v)
            ASSERT_EQ(slots.find(c.hashOf(v), [v](uint32_t s) { return s == v; }), v) << c.name;
        EXPECT_EQ(slots.find(c.hashOf(n + 1), [n](uint32_t s) { return s == n + 1; }), 0u);
        slots.clear();
        EXPECT_EQ(slots.size(), 0u);
        EXPECT_EQ(slots.find(c.hashOf(1), [](uint32_t s) { return s == 1; }), 0u) << c.name;
    }
}

TEST(HashSlots, ReserveKeepsWhatIsThere) {
    HashSlots<uint32_t> slots;
    for (uint32_t v = 1; v <= 10; ++v) slots.insert(v, v);
    slots.reserve(1000);
    slots.reserve(3); // smaller than what is there: nothing lost
    for (uint32_t v = 1; v <= 10; ++v)
        EXPECT_EQ(slots.find(v, [v](uint32_t s) { return s == v; }), v);
}

} // namespace
