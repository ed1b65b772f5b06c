// Free lists: alignment, reuse, and who goes to the global allocator.
// What depends on the lists being built in is tested where they are.
#include "util/free_list.h"
#include "util/huge_pages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace kelm {
namespace {

TEST(free_list, every_size_gives_aligned_memory_that_can_be_filled) {
    for (std::size_t size = 0; size != 600; ++size) {
        SCOPED_TRACE(size);
        void* const memory = allocate_pooled(size);
        ASSERT_NE(memory, nullptr);
        const std::size_t rounded = (size + free_list::grain - 1) / free_list::grain * free_list::grain;
        const std::size_t needed = rounded % free_list::coarse == 0 ? free_list::coarse : free_list::grain;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % needed, 0U);
        std::memset(memory, 0xA5, size);
        free_pooled(memory, size);
    }
}

TEST(free_list, blocks_in_use_do_not_overlap) {
    struct taken {
        unsigned char* memory;
        std::size_t size;
        unsigned char mark;
    };
    std::vector<taken> all;
    for (std::size_t i = 0; i != 20000; ++i) {
        const std::size_t size = 1 + i * 37 % 300;
        auto* const memory = static_cast<unsigned char*>(allocate_pooled(size));
        const auto mark = static_cast<unsigned char>(i % 251);
        std::memset(memory, mark, size);
        all.push_back({memory, size, mark});
    }
    for (const taken& one : all)
        for (std::size_t i = 0; i != one.size; ++i) ASSERT_EQ(one.memory[i], one.mark);
    for (const taken& one : all) free_pooled(one.memory, one.size);
}

#if KELM_FREE_LISTS
TEST(free_list, a_freed_block_is_the_next_one_of_its_size_class) {
    void* const first = allocate_pooled(33);
    free_pooled(first, 33);
    void* const again = allocate_pooled(40); // 33 to 40 bytes are one class
    EXPECT_EQ(again, first);
    free_pooled(again, 40);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, blocks_of_another_size_class_are_left_alone) {
    void* const first = allocate_pooled(32);
    free_pooled(first, 32);
    void* const other = allocate_pooled(33);
    EXPECT_NE(other, first);
    free_pooled(other, 33);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, fresh_blocks_come_in_ascending_order_within_a_slab) {
    // Whatever is in the list is taken out first; what comes then is fresh.
    std::vector<void*> held;
    while (free_list::state.heads[free_list::list_of(208)]) held.push_back(allocate_pooled(208));
    std::size_t descents = 0;
    constexpr std::size_t count = 1000;
    for (std::size_t i = 0; i != count; ++i) {
        held.push_back(allocate_pooled(208));
        const std::size_t last = held.size() - 1;
        if (i != 0 && held[last] < held[last - 1]) ++descents;
    }
    EXPECT_LE(descents, 1 + count * 208 / free_list::slab_size);
    for (void* memory : held) free_pooled(memory, 208);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, the_rest_of_a_full_slab_is_not_lost) {
    // 256 does not divide what a slab has to give (its first 16 bytes chain the slabs): 240 bytes remain.
    std::vector<void*> held;
    const free_list::block* const slab = free_list::state.slabs;
    while (free_list::state.slabs == slab) held.push_back(allocate_pooled(256));
    for (std::size_t i = 0; i != (free_list::slab_size - 16) / 256 - 1; ++i)
        held.push_back(allocate_pooled(256));
    const auto* const rest = reinterpret_cast<const free_list::block*>(free_list::state.fresh);
    held.push_back(allocate_pooled(256));
    EXPECT_EQ(free_list::state.heads[free_list::list_of(240)], rest);
    for (void* memory : held) free_pooled(memory, 256);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, what_a_coarser_step_leaves_in_front_is_not_lost) {
    // A block of an odd number of grains leaves the fresh memory between two coarse steps.
    std::vector<void*> held;
    const auto is_between = [] {
        return reinterpret_cast<std::uintptr_t>(free_list::state.fresh) % free_list::coarse != 0;
    };
    while (free_list::state.heads[free_list::list_of(112)]) held.push_back(allocate_pooled(112));
    const std::size_t of_large = held.size();
    std::vector<void*> odd;
    do {
        odd.push_back(allocate_pooled(24));
    } while (!is_between() || free_list::state.fresh_end - free_list::state.fresh < 200);
    const auto* const in_front = reinterpret_cast<const free_list::block*>(free_list::state.fresh);
    held.push_back(allocate_pooled(112));
    EXPECT_EQ(static_cast<const std::byte*>(held[of_large]),
              reinterpret_cast<const std::byte*>(in_front) + free_list::grain);
    EXPECT_EQ(free_list::state.heads[free_list::list_of(free_list::grain)], in_front);
    for (void* memory : odd) free_pooled(memory, 24);
    for (void* memory : held) free_pooled(memory, 112);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, messages_lie_apart_from_what_readers_touch) {
    void* const recorded = allocate_pooled<free_list::recorded>(48);
    free_pooled<free_list::recorded>(recorded, 48);
    void* const held = allocate_pooled(48);
    EXPECT_NE(held, recorded);
    EXPECT_EQ(allocate_pooled<free_list::recorded>(48), recorded);
    free_pooled(held, 48);
    free_pooled<free_list::recorded>(recorded, 48);
}
#endif

#if KELM_FREE_LISTS
TEST(free_list, slabs_of_a_large_heap_stand_side_by_side_in_pieces) {
    std::vector<void*> held;
    while (!free_list::state.cut_end) held.push_back(allocate_pooled(256));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(free_list::state.cut_end) % huge_page_size, 0U);
    for (std::size_t i = 0; i != 2 * huge_page_size / 256; ++i) { // two pieces at least
        held.push_back(allocate_pooled(256));
        std::memset(held.back(), 0xA5, 256);
    }
    EXPECT_EQ(std::set<void*>(held.begin(), held.end()).size(), held.size());
    for (void* memory : held) free_pooled(memory, 256);
}
#endif

TEST(free_list, freeing_null_does_nothing) {
    for (const std::size_t size : {0U, 1U, 16U, 256U, 257U, 100000U}) free_pooled(nullptr, size);
}

struct small_thing : pooled<> {
    explicit small_thing(int n) : number(n) {}
    virtual ~small_thing() = default;
    int number;
};

struct larger_thing final : small_thing {
    using small_thing::small_thing;
    unsigned char more[100] = {};
};

static_assert(sizeof(pooled<>) == 1, "the base is empty");

#if KELM_FREE_LISTS
TEST(free_list, a_pooled_class_gives_its_memory_back_in_its_true_size) {
    std::unique_ptr<small_thing> thing = std::make_unique<larger_thing>(7);
    EXPECT_EQ(thing->number, 7);
    const void* const memory = thing.get();
    thing.reset();
    const std::unique_ptr<small_thing> again = std::make_unique<larger_thing>(8);
    EXPECT_EQ(again.get(), memory);
}
#endif

TEST(free_list, the_allocator_serves_containers) {
    std::list<int, pool_allocator<int>> list;
    std::map<int, int, std::less<>, pool_allocator<std::pair<const int, int>>> map;
    std::vector<int, pool_allocator<int>> vector;
    for (int i = 0; i != 1000; ++i) {
        list.push_back(i);
        map[i] = -i;
        vector.push_back(i);
    }
    EXPECT_EQ(list.size(), 1000U);
    EXPECT_EQ(map.at(999), -999);
    EXPECT_EQ(vector.at(500), 500);
    EXPECT_TRUE(pool_allocator<int>{} == pool_allocator<long>{});
}

TEST(free_list, the_allocator_refuses_counts_whose_size_has_no_number) {
    pool_allocator<std::uint64_t> allocator;
    EXPECT_THROW(static_cast<void>(allocator.allocate(static_cast<std::size_t>(-1) / 4)),
                 std::bad_array_new_length);
}

} // namespace
} // namespace kelm
