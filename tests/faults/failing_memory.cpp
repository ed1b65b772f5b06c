// The global operators new and delete, over malloc, so that sanitizers see each block.
// Which allocation fails is told by the tests.
#include "tests/faults/failing_memory.h"

#include <cstdlib>
#include <new>

namespace kelm::test {

namespace {

memory_plan memory_to_fail;
long failed_allocations = 0;
long live = 0;

bool is_slab(std::size_t size) { return free_list::enabled && size == free_list::slab_size; }

bool must_fail(std::size_t size) {
    if (memory_to_fail.until_failure == 0 ||
        (memory_to_fail.only_of_size != 0 && memory_to_fail.only_of_size != size))
        return false;
    if (memory_to_fail.until_failure > 1) {
        --memory_to_fail.until_failure;
        return false;
    }
    if (!memory_to_fail.stays_exhausted) memory_to_fail.until_failure = 0;
    ++failed_allocations;
    return true;
}

/// Every block has its size in front of it, to be left out of the count again when it was.
constexpr std::size_t front = 16;

void* allocate(std::size_t size) {
    if (must_fail(size)) return nullptr;
    auto* const memory = static_cast<std::byte*>(std::malloc(size + front));
    if (!memory) return nullptr;
    *reinterpret_cast<std::size_t*>(memory) = size;
    if (!is_slab(size)) ++live;
    return memory + front;
}

void* allocate_or_throw(std::size_t size) {
    if (void* const memory = allocate(size)) return memory;
    throw std::bad_alloc{};
}

void release(void* memory) {
    if (!memory) return;
    auto* const begin = static_cast<std::byte*>(memory) - front;
    if (!is_slab(*reinterpret_cast<std::size_t*>(begin))) --live;
    std::free(begin);
}

/// Puts the blocks of one list in front of those of another.
void put_in_front(free_list::block*& list, free_list::block* newer) {
    free_list::block** at = &newer;
    while (*at) at = &(*at)->next;
    *at = list;
    list = newer;
}

} // namespace

long live_blocks() { return live; }

failing_memory::failing_memory(const memory_plan& wanted) {
    failed_allocations = 0;
    memory_to_fail = wanted;
}
failing_memory::~failing_memory() { memory_to_fail = {}; }
long failing_memory::failures() { return failed_allocations; }

short_lists::short_lists(free_list::lists& which, std::size_t room) : which_(which), put_aside_(which) {
    if (!free_list::enabled) return;
    which_ = {};
    which_.slabs = put_aside_.slabs;
    if (room == 0) return;
    // Like a slab it is never given back: blocks of it are in the lists from now on.
    auto* const memory = static_cast<std::byte*>(std::malloc(room + free_list::coarse));
    which_.slabs = ::new (memory) free_list::block{which_.slabs};
    which_.fresh = memory + free_list::coarse;
    which_.fresh_end = which_.fresh + room;
}

// The rest of the newer slab is given up: it is lost to the program of these tests alone.
short_lists::~short_lists() {
    if (!free_list::enabled) return;
    for (std::size_t i = 0; i != put_aside_.heads.size(); ++i)
        put_in_front(put_aside_.heads[i], which_.heads[i]);
    put_aside_.slabs = which_.slabs;
    which_ = put_aside_;
}

} // namespace kelm::test

void* operator new(std::size_t size) { return kelm::test::allocate_or_throw(size); }
void* operator new[](std::size_t size) { return kelm::test::allocate_or_throw(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return kelm::test::allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return kelm::test::allocate(size); }
void operator delete(void* memory) noexcept { kelm::test::release(memory); }
void operator delete[](void* memory) noexcept { kelm::test::release(memory); }
void operator delete(void* memory, std::size_t) noexcept { kelm::test::release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { kelm::test::release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { kelm::test::release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { kelm::test::release(memory); }
