// What a schema is made of, told to the library.
// No schema itself: that is read by reader.h.
#pragma once

#include "hooks/rules.h"

#include <kelm/meta_model.h>

namespace schema {

/// Declares the types of types.h, and gives them the hooks of hooks.h.
class schema_types : public kelm::meta_model_builder {
public:
    /// \param shared  borrowed by the hooks: it must outlive the library
    explicit schema_types(rules& shared) : rules_(shared) {}
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override;

private:
    rules& rules_;
};

} // namespace schema
