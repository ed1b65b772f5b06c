// The built-in attributes, one a row.
// Who reads them is told where they are read.
#include "meta/built_ins.h"
#include "meta/meta_attribute_table.h"

#include <kelm/meta_model.h>
#include <kelm/property.h>

#include <memory>
#include <string>

namespace kelm {

namespace {

using made = std::unique_ptr<abstract_property>;

made nothing() { return nullptr; }
made truth() { return std::make_unique<property<bool>>(true); }
made falsehood() { return std::make_unique<property<bool>>(false); }
made zero() { return std::make_unique<property<unsigned>>(0U); }
made empty_text() { return std::make_unique<property<std::string>>(); }
made no_name() { return std::make_unique<property<std::string>>("No Name!"); }

struct attribute_row {
    u32 id;
    const char* name;
    made (*default_value)();
    bool inheritable;
};

// A default is what marking stores, so attributes whose mere presence is the mark have true.
constexpr attribute_row rows[] = {
    {attribute_id::name, "Name", no_name, true},
    {attribute_id::definition, "Definition", empty_text, true},
    {attribute_id::property_class, "Property Class", zero, true},
    {attribute_id::generic_object, "Generic Object", truth, true},
    {attribute_id::internal, "Internal Object/Property", truth, true},
    {attribute_id::non_persistent, "Non Persistent Object/Property", truth, true},
    {attribute_id::not_inheritable, "Property Not Inheritable", truth, true},
    {attribute_id::default_value, "Property Default Value", nothing, true},
    {attribute_id::default_value_choices, "Property Default Value Choices", nothing, true},
    {attribute_id::must_exist, "Property Must Exist", truth, true},
    {attribute_id::copy_referenced_object, "Copy Referenced Object", truth, true},
    {attribute_id::alternative_name, "Alternative Name", no_name, false},
    {attribute_id::skip_in_summary, "Skip in Transaction Summary", falsehood, true},
    {attribute_id::skip_in_summary_unless_local, "Skip in Transaction Summary Unless Local", falsehood, true},
    {attribute_id::skip_in_compare, "Skip in Compare", falsehood, true},
    {attribute_id::deprecated, "Deprecated", falsehood, false},
    {attribute_id::compare_if_incomplete, "Use in compare even if is incomplete", falsehood, false},
    {attribute_id::multiline, "Multiline Property", falsehood, false},
    {attribute_id::skip_in_compare_other, "Skip in Compare Other", falsehood, true},
};

} // namespace

void add_built_in_attributes() {
    for (const attribute_row& row : rows)
        meta_attributes().add(row.id, row.name, row.default_value(), row.inheritable);
}

} // namespace kelm
