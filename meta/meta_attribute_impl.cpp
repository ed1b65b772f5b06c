// The making of a row.
// Its stored form is in meta_record.cpp.
#include "meta/meta_attribute_impl.h"

#include <utility>

namespace kelm {

meta_attribute_impl::meta_attribute_impl(u32 id, std::string name,
                                         std::unique_ptr<abstract_property> default_value, bool inheritable)
    : id_(id), name_(std::move(name)), default_(std::move(default_value)), inheritable_(inheritable) {}

} // namespace kelm
