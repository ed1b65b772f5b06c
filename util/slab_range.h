// Memory for the objects of the graph: slots of one size in one reserved range of addresses, handed out upwards.
// So a list that is sorted by address is in the order of making, as long as nothing was freed in between.
#pragma once

#include <cstddef>

namespace kelm {

/// A slot of `size` bytes; another size than the first one asked for comes from the general allocator.
/// \throws std::bad_alloc
void* allocate_slot(std::size_t size);
void free_slot(void* memory, std::size_t size) noexcept;

} // namespace kelm
