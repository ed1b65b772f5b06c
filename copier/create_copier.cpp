// The framework's door to copy and paste.
// This version has no copier: the answer is empty.
#include "framework/framework_impl.h"

namespace kelm {

shared_ptr<copier> framework_impl::create_copier(kelm::model*) { return {}; }

} // namespace kelm
