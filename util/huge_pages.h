// Asking the system for memory in huge pages: a big model then costs a fraction of the address translations.
// A hint only: where the system has none, nothing changes.
#pragma once

#include <cstddef>

namespace kelm {

inline constexpr std::size_t huge_page_size = std::size_t{2} * 1024 * 1024;

/// \param memory  aligned to a page of the system; not touched
void ask_for_huge_pages(void* memory, std::size_t size) noexcept;

} // namespace kelm
