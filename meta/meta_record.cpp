// The binary records of meta things and of attributes.
// Where they stand in a model's stream is the business of the stream.
#include "framework/stored_value.h"
#include "meta/meta_attribute_impl.h"
#include "meta/meta_property_impl.h"
#include "util/bytes.h"

#include <kelm/io_references.h>

#include <istream>
#include <ostream>
#include <utility>
#include <vector>

namespace kelm {

namespace {

// Attributes do not refer to objects: a reference that is read for one stays null.
std::unique_ptr<abstract_property> get_value(std::istream& in) {
    std::vector<reference_record> references;
    return get_stored_value(in, references, nullptr);
}

} // namespace

void meta_base::write(std::ostream& out) const {
    put_u32(out, id_);
    put_u32(out, static_cast<u32>(attributes_.size()));
    for (const auto& [attribute, value] : attributes_) {
        put_u32(out, attribute);
        put_stored_value(out, value.get());
    }
}

void meta_base::read(std::istream& in) {
    const u32 id = get_u32(in);
    const u32 count = get_u32(in);
    if (!in) return;
    id_ = id;
    for (u32 i = 0; i != count; ++i) {
        const u32 attribute = get_u32(in);
        auto value = get_value(in);
        if (!value) return;
        attributes_[attribute] = std::move(value);
    }
}

void meta_property_impl::write(std::ostream& out) const {
    meta_base::write(out);
    put_u32(out, stored_class_);
}

void meta_property_impl::read(std::istream& in) {
    meta_base::read(in);
    const u32 stored = get_u32(in);
    if (in) stored_class_ = stored;
}

void meta_attribute_impl::write(std::ostream& out) const {
    put_u32(out, id_);
    put_string(out, name_);
    put_bool(out, inheritable_);
    put_bool(out, default_ != nullptr);
    if (default_) put_stored_value(out, default_.get());
}

void meta_attribute_impl::read(std::istream& in) {
    const u32 id = get_u32(in);
    std::string name = get_string(in);
    const bool inheritable = get_bool(in);
    std::unique_ptr<abstract_property> value;
    if (get_bool(in)) value = get_value(in);
    if (!in) return;
    id_ = id;
    name_ = std::move(name);
    inheritable_ = inheritable;
    default_ = std::move(value);
}

} // namespace kelm
