// The types of a schema: their properties, and what each may contain, and the hooks of each.
// Their ids are in types.h.
#include "schema/meta_model.h"

#include "hooks/hooks.h"
#include "schema/types.h"

#include <kelm/framework.h>
#include <kelm/property.h>

#include <initializer_list>

namespace schema {

namespace {

namespace kind = kelm::data_type;

struct property_row {
    kelm::u32 id;
    const char* name;
    kelm::u32 kind;
};

void define(kelm::u32 id, const char* name, std::initializer_list<property_row> properties) {
    kelm::meta_model& app = *kelm::framework::instance().application_meta_model();
    kelm::meta_object& type = *app.add_meta_object(id, name, "", "");
    // Every object has a Name and a Definition.
    type.add_base_type(app.find_meta_object(kelm::type_id::generic_object));
    for (const property_row& row : properties) type.add_property(row.id, row.name, row.kind, "");
}

void contains(kelm::u32 owner, std::initializer_list<kelm::u32> children) {
    kelm::meta_object& type = *kelm::framework::instance().application_meta_model()->find_meta_object(owner);
    for (const kelm::u32 child : children) type.add_composition(child);
}

void define_relations() {
    define(type::table, "Table",
           {{property::sql, "SQL", kind::string},
            {property::file_position, "File Position", kind::integer},
            {property::problem, "Problem", kind::string},
            {property::without_rowid, "Without Rowid", kind::boolean},
            {property::strict, "Strict", kind::boolean},
            {property::is_virtual, "Virtual", kind::boolean},
            {property::shadow, "Shadow", kind::boolean}});
    define(type::view, "View",
           {{property::sql, "SQL", kind::string},
            {property::file_position, "File Position", kind::integer},
            {property::problem, "Problem", kind::string}});
    define(type::column, "Column",
           {{property::declared_type, "Declared Type", kind::string},
            {property::not_null, "Not Null", kind::boolean},
            {property::default_value, "Default", kind::string},
            {property::generated, "Generated", kind::string},
            {property::hidden, "Hidden", kind::boolean},
            {property::autoincrement, "Autoincrement", kind::boolean},
            {property::collation, "Collation", kind::string}});
    define(type::trigger, "Trigger",
           {{property::sql, "SQL", kind::string}, {property::file_position, "File Position", kind::integer}});
    define(type::domain, "Domain",
           {{property::declared_type, "Declared Type", kind::string},
            {property::not_null, "Not Null", kind::boolean},
            {property::default_value, "Default", kind::string}});
}

void define_keys() {
    define(type::primary_key, "Primary Key", {});
    define(type::unique_key, "Unique Key", {});
    define(type::index, "Index",
           {{property::sql, "SQL", kind::string},
            {property::file_position, "File Position", kind::integer},
            {property::unique, "Unique", kind::boolean},
            {property::partial, "Partial", kind::boolean},
            {property::condition, "Condition", kind::string}});
    define(type::key_column, "Key Column",
           {{property::column, "Column", kind::object_reference},
            {property::expression, "Expression", kind::string},
            {property::descending, "Descending", kind::boolean},
            {property::collation, "Collation", kind::string}});
    define(type::foreign_key, "Foreign Key",
           {{property::target_table, "Target Table", kind::object_reference},
            {property::target_name, "Target Name", kind::string},
            {property::on_delete, "On Delete", kind::string},
            {property::on_update, "On Update", kind::string}});
    define(type::foreign_key_column, "Foreign Key Column",
           {{property::column, "Column", kind::object_reference},
            {property::target_column, "Target Column", kind::object_reference},
            {property::target_name, "Target Name", kind::string}});
}

} // namespace

void schema_types::define_meta_objects() {
    define_relations();
    define_keys();

    contains(kelm::type_id::model, {type::table, type::view, type::domain});
    contains(type::table, {type::column, type::primary_key, type::unique_key, type::foreign_key, type::index,
                           type::trigger});
    contains(type::view, {type::column, type::trigger});
    contains(type::primary_key, {type::key_column});
    contains(type::unique_key, {type::key_column});
    contains(type::index, {type::key_column});
    contains(type::foreign_key, {type::foreign_key_column});

    add_name_hooks(rules_);
    add_key_hooks(rules_);
    add_drop_hooks(rules_);
    add_property_hooks(rules_);
    add_version_hooks(rules_);

    kelm::meta_model& app = *kelm::framework::instance().application_meta_model();
    app.set_version(current_version.major);
    app.set_minor_version(current_version.minor);
}

} // namespace schema
