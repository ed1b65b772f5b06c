// What a schema is made of, told to the library.
// No schema itself: that is read by reader.h.
#pragma once

#include <kelm/meta_model.h>

namespace schema {

/// Declares the types of types.h.
class schema_types : public kelm::meta_model_builder {
public:
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override;
};

} // namespace schema
