// The hint about huge pages.
// What it is given for is free_list.cpp and slab_range.cpp.
#include "util/huge_pages.h"

#include <sys/mman.h>

namespace kelm {

void ask_for_huge_pages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept {
#ifdef MADV_HUGEPAGE
    (void)madvise(memory, size, MADV_HUGEPAGE);
#endif
}

} // namespace kelm
