// Memory for the many small things of the library: free lists by size over slabs that are never given back.
// For one thread only, and not for arrays of unknown size: whoever frees tells the size.
#pragma once

#include <array>
#include <cstddef>
#include <new>

#ifndef KELM_FREE_LISTS
#define KELM_FREE_LISTS 1
#endif

namespace kelm {

namespace free_list {

/// Sizes are rounded up to it.  A size that is then a multiple of `coarse` is aligned to that, and any other to
/// the grain: no type needs more, since its size is a multiple of its alignment.
inline constexpr std::size_t grain = 8;
inline constexpr std::size_t coarse = 16;
inline constexpr std::size_t largest = 256; ///< what is larger goes to the global operator new
inline constexpr std::size_t slab_size = std::size_t{64} * 1024; ///< what is fetched at a time
inline constexpr bool enabled = KELM_FREE_LISTS != 0;

struct block {
    block* next;
};

/// Free blocks by size, over slabs of their own.  Never destroyed, since values may die after main; leak checkers
/// reach every slab from it.
struct lists {
    std::array<block*, largest / grain> heads;
    std::byte* fresh;        ///< the unused rest of the newest slab, handed out upwards
    std::byte* fresh_end;    ///< its end
    block* slabs;            ///< all slabs, chained through their first bytes
    std::byte* cut;          ///< the part of a piece of memory that is no slab yet
    std::byte* cut_end;      ///< its end
    std::size_t slabs_alone; ///< how many were fetched one by one
};
extern lists state;    ///< of what objects and readers hold
extern lists recorded; ///< of messages: apart, so that what is read all day lies close together

/// Which list serves `size`; beyond the array for sizes that none serves, and for 0.
inline std::size_t list_of(std::size_t size) noexcept { return (size - 1) / grain; }

/// Takes a block of the list's size from the newest slab, or from another one.
/// \throws std::bad_alloc
void* take_fresh(lists& from, std::size_t list);

} // namespace free_list

/// Memory for `size` bytes, aligned as a type of that size can need it.
/// \throws std::bad_alloc
template <free_list::lists& From = free_list::state>
[[nodiscard]] inline void* allocate_pooled(std::size_t size) {
    if constexpr (free_list::enabled) {
        const std::size_t list = free_list::list_of(size);
        if (list < From.heads.size()) {
            free_list::block*& head = From.heads[list];
            if (!head) return free_list::take_fresh(From, list);
            free_list::block* const taken = head;
            head = taken->next;
            return taken;
        }
    }
    return ::operator new(size);
}

/// Takes back what allocate_pooled() gave for the same `size`.  Null does nothing.
template <free_list::lists& Into = free_list::state>
inline void free_pooled(void* memory, std::size_t size) noexcept {
    if constexpr (free_list::enabled) {
        const std::size_t list = free_list::list_of(size);
        if (list < Into.heads.size()) {
            if (!memory) return;
            free_list::block*& head = Into.heads[list];
            head = ::new (memory) free_list::block{head};
            return;
        }
    }
    ::operator delete(memory);
}

/// A base for classes whose objects come from the free lists.  A class that is deleted through a base needs a
/// virtual destructor, as it does anyway: that is how its true size gets here.
template <free_list::lists& Lists = free_list::state>
struct pooled {
    static void* operator new(std::size_t size) { return allocate_pooled<Lists>(size); }
    static void operator delete(void* memory, std::size_t size) noexcept { free_pooled<Lists>(memory, size); }
};

/// The same as an allocator, for the control blocks of shared pointers and the nodes of maps.
template <class T>
struct pool_allocator {
    static_assert(alignof(T) <= free_list::coarse, "the free lists align to no more");

    using value_type = T;

    pool_allocator() = default;
    template <class Other>
    pool_allocator(const pool_allocator<Other>&) noexcept {}

    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_array_new_length();
        return static_cast<T*>(allocate_pooled(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t count) noexcept { free_pooled(memory, count * sizeof(T)); }

    template <class Other>
    friend bool operator==(const pool_allocator&, const pool_allocator<Other>&) noexcept {
        return true;
    }
};

} // namespace kelm
