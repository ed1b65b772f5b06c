// Takes a snapshot, and asks the source for names as long as it is there.
// What columns and tables use goes with them by a rule; the tables that foreign keys lead to do not.
#include "copying/clipboard.h"

#include "schema/lookup.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <set>

namespace schema {

namespace {

/// The numbers of the user-defined properties that have a value on this very object.
std::vector<kelm::u32> user_property_ids(const kelm::object& what) {
    kelm::value_map values;
    what.own_properties(values);
    std::vector<kelm::u32> found;
    for (const auto& [id, value] : values)
        if (id >= kelm::property_id::first_user_defined) found.push_back(id);
    return found;
}

/// Domains and definitions of properties come along with what uses them.
class used_definitions final : public kelm::copy_rule {
public:
    bool referenced_objects(const kelm::object* of, std::vector<kelm::object*>& out) override {
        of->inherits_from_list(out);
        const kelm::object& root = *of->model()->as_object();
        for (const kelm::u32 id : user_property_ids(*of))
            if (kelm::object* definition = definition_of(root, id)) out.push_back(definition);
        return true;
    }
    kelm::copy_rule* clone() const override { return new used_definitions(*this); }
};

void take_properties(const kelm::object& what, clipboard& into) {
    const kelm::object& root = *what.model()->as_object();
    for (const kelm::u32 id : user_property_ids(what))
        if (const kelm::object* definition = definition_of(root, id)) into.properties[id] = name(*definition);
}

/// A column that names no target means the primary key, whatever that is in the other file.
void take_target(const kelm::object& key, const kelm::object& table, clipboard& into) {
    into.targets[key.id()] = name(table);
    for (const kelm::object* pair : parts(key, type::foreign_key_column)) {
        const kelm::object* column = target(*pair, property::target_column);
        if (column && has(*pair, property::target_name)) into.targets[pair->id()] = name(*column);
    }
}

void take_names(const kelm::object& table, const std::set<const kelm::object*>& copied, clipboard& into) {
    take_properties(table, into);
    for (const kelm::object* column : parts(table, type::column)) take_properties(*column, into);
    for (const kelm::object* key : parts(table, type::foreign_key)) {
        const kelm::object* to = target(*key, property::target_table);
        if (to && !copied.contains(to)) take_target(*key, *to, into);
    }
}

} // namespace

clipboard take_clipboard(kelm::model& from, const std::vector<std::string>& tables) {
    clipboard taken{kelm::framework::instance().create_copier(&from), {}, {}, {}};
    for (const kelm::u32 type : {type::table, type::column})
        taken.objects->set_copy_rule(type, used_definitions());
    std::set<const kelm::object*> copied;
    for (const std::string& wanted : tables) {
        kelm::object& found = table(*from.as_object(), wanted);
        if (!copied.insert(&found).second) continue;
        taken.objects->copy_object(&found, true);
        taken.tables.push_back(name(found));
    }
    for (const kelm::object* table : copied) take_names(*table, copied, taken);
    return taken;
}

} // namespace schema
