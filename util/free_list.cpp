// The slow path of the free lists: a fresh block, and a fresh slab.
// Taking and giving back are inline in the header.
#include "util/free_list.h"

#include <cstdint>

namespace kelm::free_list {

constinit lists state{};

namespace {

/// What is left of the old slab is a multiple of the grain, too small for the block that was asked for: a block
/// of a smaller size, so that nothing is lost.
void keep_rest() noexcept {
    const auto rest = static_cast<std::size_t>(state.fresh_end - state.fresh);
    if (rest == 0) return;
    block*& head = state.heads[list_of(rest)];
    head = ::new (static_cast<void*>(state.fresh)) block{head};
    state.fresh = state.fresh_end;
}

/// Gives the grain in front of a block that must stand on a coarser step to the list of the smallest.
void align_fresh(std::size_t size) noexcept {
    if (size % coarse != 0 || reinterpret_cast<std::uintptr_t>(state.fresh) % coarse == 0) return;
    block*& head = state.heads[list_of(grain)];
    head = ::new (static_cast<void*>(state.fresh)) block{head};
    state.fresh += grain;
}

void add_slab() {
    void* const memory = ::operator new(slab_size);
    keep_rest();
    state.slabs = ::new (memory) block{state.slabs};
    state.fresh = static_cast<std::byte*>(memory) + coarse;
    state.fresh_end = static_cast<std::byte*>(memory) + slab_size;
}

static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ >= coarse && slab_size % coarse == 0,
              "what is left of a slab is aligned as a block of its size must be");
static_assert(sizeof(block) <= grain);

} // namespace

void* take_fresh(std::size_t list) {
    const std::size_t size = (list + 1) * grain;
    if (static_cast<std::size_t>(state.fresh_end - state.fresh) >= grain) align_fresh(size);
    if (static_cast<std::size_t>(state.fresh_end - state.fresh) < size) add_slab();
    void* const taken = state.fresh;
    state.fresh += size;
    return taken;
}

} // namespace kelm::free_list
