// Hooks before a name is set: it must be one, and free.
// Names are compared as SQLite does, blind to the case of plain letters.
#include "hooks/hooks.h"
#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/users.h"
#include "schema/values.h"

#include <kelm/model.h>
#include <kelm/property.h>

#include <sqlite3.h>

#include <string_view>

namespace schema {

namespace {

constexpr std::string_view reserved = "sqlite_";

/// What all have in common: whether it is about a name at all, and that a name is not empty.
class name_rule : public rule<kelm::pre_prop_set_semantic> {
public:
    using rule::rule;

    /// \param origin  another object than `what` when that inherits the value, and is not named by it
    bool do_it(kelm::object* what, kelm::u32 id, kelm::given_value value, kelm::object* origin) final {
        if (!hold() || id != kelm::property_id::name || origin != what) return true;
        const std::string to = value.to_string();
        return to.empty() ? refuse("a name cannot be empty") : is_good(*what, to);
    }

protected:
    virtual bool is_good(kelm::object& what, const std::string& to) = 0;

    /// \param taken  who has the name; null when nobody does
    bool is_free(const kelm::object& what, const kelm::object* taken, const char* what_it_is) {
        if (!taken || taken == &what) return true; // its own name it may write otherwise
        return refuse("there is already " + std::string(what_it_is) + ' ' + identifier(name(*taken)));
    }
};

/// Tables, views and indexes share one space of names.
class database_names final : public name_rule {
public:
    using name_rule::name_rule;

private:
    bool is_good(kelm::object& what, const std::string& to) override {
        if (sqlite3_strnicmp(to.c_str(), reserved.data(), static_cast<int>(reserved.size())) == 0)
            return refuse("names that begin with sqlite_ are SQLite's own");
        const kelm::object& root = *what.model()->as_object();
        const kelm::object* taken = find_relation(root, to);
        if (!taken) return is_free(what, find_index(root, to), "an index");
        return is_free(what, taken, taken->type() == type::table ? "a table" : "a view");
    }
};

/// A column has its name for itself in its table.  One that stands in the text of an index keeps it, as nobody would
/// rewrite the text.
class column_names final : public name_rule {
public:
    using name_rule::name_rule;

private:
    bool is_good(kelm::object& what, const std::string& to) override {
        const kelm::object* taken = find(*what.owner(), type::column, to);
        if (taken && taken != &what) return refuse("there is already a column " + full_name(*taken));
        const std::string user = same_name(name(what), to) ? std::string() : text_user_of_column(what);
        return user.empty() || refuse("column " + full_name(what) + " is used by " + user);
    }
};

class domain_names final : public name_rule {
public:
    using name_rule::name_rule;

private:
    bool is_good(kelm::object& what, const std::string& to) override {
        return is_free(what, find(*what.owner(), type::domain, to), "a domain");
    }
};

/// The library passes a type over that has a property of that name: the user would get none.
class property_names final : public name_rule {
public:
    using name_rule::name_rule;

private:
    bool is_good(kelm::object& what, const std::string& to) override {
        for (const kelm::u32 type : {type::table, type::column})
            if (is_declared(type, to)) return refuse("there is already a property " + identifier(to));
        return is_free(what, find(*what.owner(), kelm::type_id::user_defined_property, to), "a property");
    }

    /// The types of the application know nothing of what users define.
    static bool is_declared(kelm::u32 type, const std::string& wanted) {
        const kelm::meta_model& app = *kelm::framework::instance().application_meta_model();
        for (const kelm::meta_property* known : app.find_meta_object(type)->properties())
            if (same_name(known->name(), wanted)) return true;
        return false;
    }
};

} // namespace

void add_name_hooks(rules& shared) {
    for (const kelm::u32 type : {type::table, type::view, type::index})
        add_hook<database_names>(type, shared);
    add_hook<column_names>(type::column, shared);
    add_hook<domain_names>(type::domain, shared);
    add_hook<property_names>(kelm::type_id::user_defined_property, shared);
}

} // namespace schema
