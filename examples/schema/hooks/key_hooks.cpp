// Hooks that keep keys in order: one primary key a table, no column twice, and a target for each new foreign key.
// What a key needs only when it is whole is asked at the end of the edit, by a hook that the library never calls.
#include "hooks/hooks.h"
#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/model.h>
#include <kelm/property.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace schema {

namespace {

/// Before a table gets a child.
class one_primary_key final : public rule<kelm::pre_add_child_semantic> {
public:
    using rule::rule;
    bool do_it(kelm::object* table, kelm::object* child) override {
        if (!hold() || child->type() != type::primary_key || !table->child_count(type::primary_key))
            return true;
        return refuse("table " + identifier(name(*table)) + " has a primary key already");
    }
};

/// Before a term of a key, or a pair of a foreign key, refers to a column.
class column_once final : public rule<kelm::pre_prop_set_semantic> {
public:
    using rule::rule;
    bool do_it(kelm::object* term, kelm::u32 id, kelm::given_value value, kelm::object*) override {
        if (!hold() || id != property::column) return true;
        const auto* to = dynamic_cast<const kelm::property<kelm::object*>*>(&value);
        for (const kelm::object* other : parts(*term->owner(), term->type()))
            if (to && other != term && target(*other, property::column) == to->value)
                return refuse("column " + full_name(*to->value) + " stands in the list twice");
        return true;
    }
};

/// Behind the making of a foreign key, which has neither columns nor a target then.
class key_is_made final : public rule<kelm::obj_create_semantic> {
public:
    using rule::rule;
    bool do_it(kelm::object* key) override {
        if (hold()) shared().note_unfinished(*key);
        return true;
    }
};

/// Has a foreign key a target that fits?  A schema that was read may have some that do not, as SQLite minds them only
/// when rows are changed; new ones are made well.
class key_is_whole final : public validate_object {
public:
    explicit key_is_whole(rules& shared) : rules_(shared) {}
    kelm::u32 id() const override { return 100; }

    bool do_it(kelm::object& key) override {
        const kelm::object* to = target(key, property::target_table);
        if (!to) return rules_.refuse("there is no table " + identifier(text(key, property::target_name)));
        return numbers_match(key, *to) && columns_exist(key, *to);
    }

private:
    using test = bool (*)(const kelm::object*);

    static std::size_t count(const kelm::object& key, test wanted) {
        const std::vector<kelm::object*> pairs = parts(key, type::foreign_key_column);
        return static_cast<std::size_t>(std::count_if(pairs.begin(), pairs.end(), wanted));
    }

    /// A key that names no columns of its target means the primary key.
    bool numbers_match(const kelm::object& key, const kelm::object& to) {
        const std::size_t own =
            count(key, [](const kelm::object* pair) { return has(*pair, property::column); });
        const std::size_t named =
            count(key, [](const kelm::object* pair) { return has(*pair, property::target_name); });
        const kelm::object* primary = to.child_at(type::primary_key, 0);
        if (!named && !primary) return rules_.refuse("table " + identifier(name(to)) + " has no primary key");
        const std::size_t other = named ? named : primary->child_count(type::key_column);
        return own == other ||
               rules_.refuse("the foreign key has " + std::to_string(own) +
                             (own == 1 ? " column" : " columns") + ", its target " + std::to_string(other));
    }

    bool columns_exist(const kelm::object& key, const kelm::object& to) {
        for (const kelm::object* pair : parts(key, type::foreign_key_column))
            if (!target(*pair, property::target_column))
                return rules_.refuse("there is no column " + identifier(text(*pair, property::target_name)) +
                                     " in table " + identifier(name(to)));
        return true;
    }

    rules& rules_;
};

} // namespace

void add_key_hooks(rules& shared) {
    add_hook<one_primary_key>(type::table, shared);
    for (const kelm::u32 type : {type::key_column, type::foreign_key_column})
        add_hook<column_once>(type, shared);
    add_hook<key_is_made>(type::foreign_key, shared);
    add_hook<key_is_whole>(type::foreign_key, shared);
}

bool is_whole(kelm::object& what) {
    std::vector<kelm::shared_ptr<kelm::semantic>> hooks;
    what.semantics_of_kind(kelm::validate_semantic::kind, hooks);
    return std::ranges::all_of(hooks, [&](const auto& hook) {
        auto* asked = dynamic_cast<validate_object*>(hook.get());
        return !asked || asked->do_it(what);
    });
}

bool validate(kelm::model& in, rules& shared) {
    return std::ranges::all_of(shared.unfinished(), [&](kelm::u32 id) {
        kelm::object* made = in.find_object(id);
        return !made || is_whole(*made);
    });
}

} // namespace schema
