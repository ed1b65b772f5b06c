// The slow path of the free lists: a fresh block, and a fresh slab.
// Taking and giving back are inline in the header.
#include "util/free_list.h"

#include "util/huge_pages.h"

#include <cstdint>
#include <utility>

namespace kelm::free_list {

constinit lists state{};
constinit lists recorded{};

namespace {

/// What is left of the old slab is a multiple of the grain, too small for the block that was asked for: a block
/// of a smaller size, so that nothing is lost.
void keep_rest(lists& in) noexcept {
    const auto rest = static_cast<std::size_t>(in.fresh_end - in.fresh);
    if (rest == 0) return;
    block*& head = in.heads[list_of(rest)];
    head = ::new (static_cast<void*>(in.fresh)) block{head};
    in.fresh = in.fresh_end;
}

/// Gives the grain in front of a block that must stand on a coarser step to the list of the smallest.
void align_fresh(lists& in, std::size_t size) noexcept {
    if (size % coarse != 0 || reinterpret_cast<std::uintptr_t>(in.fresh) % coarse == 0) return;
    block*& head = in.heads[list_of(grain)];
    head = ::new (static_cast<void*>(in.fresh)) block{head};
    in.fresh += grain;
}

/// \returns a slab: alone while there are few of them, then cut from a piece of a huge page's size
void* take_slab(lists& in) {
    if (in.cut != in.cut_end) return std::exchange(in.cut, in.cut + slab_size);
    if (++in.slabs_alone <= huge_page_size / slab_size) return ::operator new(slab_size);
    auto* const piece =
        static_cast<std::byte*>(::operator new (huge_page_size, std::align_val_t{huge_page_size}));
    ask_for_huge_pages(piece, huge_page_size);
    in.cut = piece + slab_size;
    in.cut_end = piece + huge_page_size;
    return piece;
}

void add_slab(lists& in) {
    void* const memory = take_slab(in);
    keep_rest(in);
    in.slabs = ::new (memory) block{in.slabs};
    in.fresh = static_cast<std::byte*>(memory) + coarse;
    in.fresh_end = static_cast<std::byte*>(memory) + slab_size;
}

static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ >= coarse && slab_size % coarse == 0,
              "what is left of a slab is aligned as a block of its size must be");
static_assert(sizeof(block) <= grain);

} // namespace

void* take_fresh(lists& from, std::size_t list) {
    const std::size_t size = (list + 1) * grain;
    if (static_cast<std::size_t>(from.fresh_end - from.fresh) >= grain) align_fresh(from, size);
    if (static_cast<std::size_t>(from.fresh_end - from.fresh) < size) add_slab(from);
    void* const taken = from.fresh;
    from.fresh += size;
    return taken;
}

} // namespace kelm::free_list
