// A model's door to streams and documents.
// This version reads and writes none: every attempt fails, and changes nothing.
#include "object/model_impl.h"

namespace kelm {

bool object_impl::write(std::ostream*, void*) const { return false; }
bool model_impl::read(std::istream*, void*) { return false; }
bool model_impl::write(std::ostream*, bool, u32, bool, void*) { return false; }
bool model_impl::save_as_new(std::ostream*, bool, u32, void*) { return false; }

} // namespace kelm
