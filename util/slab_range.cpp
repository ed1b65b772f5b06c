// Slots in one reserved range of addresses.
// Pages come from the system as they are touched, and go back never.
#include "util/slab_range.h"

#include "util/free_list.h"
#include "util/huge_pages.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace kelm {

namespace {

constexpr std::size_t reserved_bytes = std::size_t{1} << 36; // addresses, not memory

/// Plain data: usable before and after main.
struct slot_range {
    std::byte* begin;
    std::byte* fresh;
    std::byte* end;
    free_list::block* freed;
    std::size_t slot_size;
    bool tried;
};
constinit slot_range range{};

bool reserve_for(std::size_t size) {
    if (range.tried) return range.begin && range.slot_size == size;
    range.tried = true;
    void* const memory = mmap(nullptr, reserved_bytes, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) return false; // a limit on addresses: the general allocator serves
    range.begin = range.fresh = static_cast<std::byte*>(memory);
    // Not for the first few: a small model stays small.
    ask_for_huge_pages(range.begin + huge_page_size, reserved_bytes - huge_page_size);
    range.end = range.begin + reserved_bytes;
    range.slot_size = size;
    return true;
}

bool is_slot(const void* memory) {
    const auto at = reinterpret_cast<std::uintptr_t>(memory);
    return at >= reinterpret_cast<std::uintptr_t>(range.begin) &&
           at < reinterpret_cast<std::uintptr_t>(range.end);
}

} // namespace

void* allocate_slot(std::size_t size) {
    if (free_list::enabled) {
        size = (size + free_list::grain - 1) / free_list::grain * free_list::grain;
        if (reserve_for(size)) {
            if (range.freed) {
                free_list::block* const slot = range.freed;
                range.freed = slot->next;
                return slot;
            }
            if (range.fresh + size <= range.end) {
                std::byte* const slot = range.fresh;
                range.fresh += size;
                return slot;
            }
        }
    }
    return ::operator new(size);
}

void free_slot(void* memory, std::size_t) noexcept {
    if (!memory) return;
    if (free_list::enabled && is_slot(memory)) {
        range.freed = ::new (memory) free_list::block{range.freed};
        return;
    }
    ::operator delete(memory);
}

} // namespace kelm
