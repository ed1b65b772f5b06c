// Values on their own, owned.
// Values of objects are made by world.h.
#pragma once

#include <kelm/property.h>

#include <memory>

namespace kelm::test {

using box = std::unique_ptr<abstract_property>;

template <class T>
box boxed(const stored_value<T>& value) {
    return std::make_unique<property<T>>(value);
}

} // namespace kelm::test
