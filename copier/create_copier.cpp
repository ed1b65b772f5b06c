// The framework's door to copy and paste.
// What a copier does is copier_impl.
#include "copier/copier_impl.h"
#include "framework/framework_impl.h"

#include <boost/make_shared.hpp>

namespace kelm {

shared_ptr<copier> framework_impl::create_copier(kelm::model* from) {
    if (!from) return {};
    return boost::make_shared<copier_impl>(*from);
}

} // namespace kelm
