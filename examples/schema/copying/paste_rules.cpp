// A rule a kind of things that mean something else in another file.
// What a rule has dealt with, the library leaves alone.
#include "copying/paste_rules.h"

#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/properties.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/property.h>

#include <algorithm>

namespace schema {

namespace {

using values_by_id = std::map<kelm::u32, kelm::abstract_property*>;

std::string text_in(const values_by_id& values, kelm::u32 id) {
    const auto found = values.find(id);
    return found != values.end() && found->second ? found->second->to_string() : std::string();
}

/// What shares the state of a paste.  `Rule` is the kind of rule, `Self` the class derived from this.
template <class Rule, class Self>
class shared_rule : public Rule {
public:
    explicit shared_rule(pasting& shared) : shared_(shared) {}
    Rule* clone() const override { return new Self(static_cast<const Self&>(*this)); }

protected:
    pasting& shared() { return shared_; }

private:
    pasting& shared_;
};

/// A domain or a property that is there under its name is used as it is.
class named_once final : public shared_rule<kelm::paste_rule, named_once> {
public:
    using shared_rule::shared_rule;

    int paste(kelm::object* owner, kelm::u32 type, const values_by_id& values,
              const std::vector<kelm::object*>&, bool, kelm::u32) override {
        const std::string wanted = text_in(values, kelm::property_id::name);
        const std::string shown = (type == type::domain ? "domain " : "property ") + identifier(wanted);
        there_ = find(*owner, type, wanted);
        if (there_)
            shared().report.linked.push_back(is_same(values) ? shown
                                                             : shown + ", which says something else there");
        else
            shared().report.brought_along.push_back(shown);
        return there_ ? kelm::paste_action::map_to_existing : kelm::paste_action::create;
    }
    kelm::object* object() override { return there_; }

private:
    /// Whether what is there says the same.  Its name may be in another case, and its number is its own.
    bool is_same(const values_by_id& values) const {
        const std::vector<kelm::meta_property*> known =
            there_->model()->meta_model()->find_meta_object(there_->type())->properties();
        return std::ranges::all_of(known, [&](const kelm::meta_property* each) {
            const kelm::u32 id = each->id();
            if (id == kelm::property_id::name || id == kelm::property_id::udp_id) return true;
            const kelm::value_ptr own = there_->get_own_property(id);
            return (own ? own->to_string() : std::string()) == text_in(values, id);
        });
    }

    kelm::object* there_ = nullptr;
};

/// Notes which node is pasted: the rules for its values are not told.
class numbered final : public shared_rule<kelm::paste_rule, numbered> {
public:
    using shared_rule::shared_rule;

    int paste(kelm::object*, kelm::u32 type, const values_by_id&, const std::vector<kelm::object*>&, bool,
              kelm::u32 source_id) override {
        shared().source_ids[type] = source_id;
        return kelm::paste_action::create;
    }
    kelm::object* object() override { return nullptr; }
};

/// A property gets a number of its own in each file.
class new_number final : public shared_rule<kelm::property_paste_rule, new_number> {
public:
    using shared_rule::shared_rule;

    int paste_property(kelm::object*, kelm::u32 id, kelm::abstract_property*, bool) override {
        return id == kelm::property_id::udp_id ? kelm::property_paste_result::done
                                               : kelm::property_paste_result::nothing;
    }
};

/// Values of tables, columns, indexes and triggers.
class own_values final : public shared_rule<kelm::property_paste_rule, own_values> {
public:
    using shared_rule::shared_rule;

    int paste_property(kelm::object* what, kelm::u32 id, kelm::abstract_property* value, bool) override {
        if (id == property::file_position) return kelm::property_paste_result::done;
        if (id < kelm::property_id::first_user_defined) return kelm::property_paste_result::nothing;
        if (value) set_user_value(*what, id, *value);
        return kelm::property_paste_result::done;
    }

private:
    void set_user_value(kelm::object& what, kelm::u32 id, const kelm::abstract_property& value) {
        const auto known = shared().from.properties.find(id);
        if (known == shared().from.properties.end()) return; // nobody can say what it is about
        const std::string about = "property " + identifier(known->second) + " of " + described_owner(what);
        const kelm::object* definition =
            find(shared().root, kelm::type_id::user_defined_property, known->second);
        if (!definition || !kelm::framework::instance().is_object_type_of_udp(definition, what.type()))
            return leave_out(about, std::string("it is not defined for ") +
                                        (what.type() == type::table ? "tables" : "columns") + " there");
        const std::vector<std::string> all = choices(*definition);
        const std::string text = value.to_string();
        if (!all.empty() && std::ranges::find(all, text) == all.end())
            return leave_out(about, identifier(text) + " is none of its choices there");
        what.set_property(kelm::framework::instance().udp_property_id(definition), value);
    }

    static std::string described_owner(const kelm::object& what) {
        return what.type() == type::column ? "column " + full_name(what) : "table " + identifier(name(what));
    }

    void leave_out(const std::string& what, const std::string& why) {
        shared().report.left_out.push_back(what + ": " + why);
    }
};

/// Foreign keys and their columns: what they lead to is found by its name when it stayed behind.  What is not found is
/// left open, for the end of the paste to judge.
class found_targets final : public shared_rule<kelm::property_paste_rule, found_targets> {
public:
    using shared_rule::shared_rule;

    int paste_property(kelm::object* what, kelm::u32 id, kelm::abstract_property* value, bool) override {
        const bool is_text = id == property::target_name;
        const bool is_open = !value && (id == property::target_table || id == property::target_column);
        if (!is_text && !is_open) return kelm::property_paste_result::nothing;
        const auto known = shared().from.targets.find(shared().source_ids[what->type()]);
        if (known == shared().from.targets.end()) return kelm::property_paste_result::nothing;
        if (is_text) // it may have been renamed since the key was written
            return what->set_property(id, kelm::property<std::string>(known->second))
                       ? kelm::property_paste_result::done
                       : kelm::property_paste_result::nothing;
        link(*what, id, known->second);
        return kelm::property_paste_result::done;
    }

private:
    void link(kelm::object& what, kelm::u32 id, const std::string& name) {
        kelm::object* to = nullptr;
        if (id == property::target_table)
            to = find(shared().root, type::table, name);
        else if (const kelm::object* table = target(*what.owner(), property::target_table))
            to = find(*table, type::column, name);
        if (to) what.set_property(id, kelm::property<kelm::object*>(to));
    }
};

} // namespace

void set_paste_rules(kelm::copier& objects, pasting& shared) {
    objects.set_type_order({kelm::type_id::user_defined_property, type::domain, type::table});
    for (const kelm::u32 type : {type::domain, kelm::type_id::user_defined_property})
        objects.set_paste_rule(type, named_once(shared));
    objects.set_property_paste_rule(kelm::type_id::user_defined_property, new_number(shared));
    for (const kelm::u32 type : {type::table, type::column, type::index, type::trigger})
        objects.set_property_paste_rule(type, own_values(shared));
    for (const kelm::u32 type : {type::foreign_key, type::foreign_key_column}) {
        objects.set_paste_rule(type, numbered(shared));
        objects.set_property_paste_rule(type, found_targets(shared));
    }
}

} // namespace schema
