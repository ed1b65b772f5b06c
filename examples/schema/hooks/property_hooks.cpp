// Hooks on user-defined properties: where a property has choices, its values and its default are of them.
// The properties themselves are made and kept by the library.
#include "hooks/hooks.h"
#include "schema/identifiers.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/model.h>
#include <kelm/property.h>

#include <algorithm>
#include <vector>

namespace schema {

namespace {

class choice_rule : public rule<kelm::pre_prop_set_semantic> {
public:
    using rule::rule;
    kelm::u32 id() const override { return 101; } // names have a hook of this kind as well

protected:
    bool is_choice(const kelm::object& definition, const std::string& text) {
        const std::vector<std::string> all = choices(definition);
        if (all.empty() || std::find(all.begin(), all.end(), text) != all.end()) return true;
        return refuse(identifier(text) + " is none of the choices of property " +
                      identifier(name(definition)));
    }
};

/// Before a value is set on a table or a column.
class values_are_choices final : public choice_rule {
public:
    using choice_rule::choice_rule;
    bool do_it(kelm::object* what, kelm::u32 id, kelm::given_value value, kelm::object*) override {
        if (!hold() || id < kelm::property_id::first_user_defined) return true;
        const kelm::object* definition = definition_of(*what->model()->as_object(), id);
        return !definition || is_choice(*definition, value.to_string());
    }
};

/// Before a definition gets its default; its choices come first.
class default_is_choice final : public choice_rule {
public:
    using choice_rule::choice_rule;
    bool do_it(kelm::object* definition, kelm::u32 id, kelm::given_value value, kelm::object*) override {
        return !hold() || id != kelm::property_id::udp_default_value ||
               is_choice(*definition, value.to_string());
    }
};

} // namespace

void add_property_hooks(rules& shared) {
    for (const kelm::u32 type : {type::table, type::column}) add_hook<values_are_choices>(type, shared);
    add_hook<default_is_choice>(kelm::type_id::user_defined_property, shared);
}

} // namespace schema
