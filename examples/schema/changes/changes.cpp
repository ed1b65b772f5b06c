// From the library's delta to things that are told of.
// Each object that changed is told of once, with all that happened to it; order and nesting are those of the schema.
#include "changes/changes.h"

#include "changes/changed_values.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/meta_model.h>
#include <kelm/object_helpers.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace schema {

namespace {

bool is_relation(kelm::u32 type) { return type == type::table || type == type::view; }
bool is_term(kelm::u32 type) { return type == type::key_column || type == type::foreign_key_column; }

/// \returns the table or view that the object is or is part of; null when there is none
kelm::object* relation_of(kelm::object* what) {
    while (what && !is_relation(what->type())) what = what->owner();
    return what;
}

std::string name_of(const kelm::delta_detail& detail) {
    std::string text;
    detail.name(text);
    return text;
}

/// \returns the name of a column, or the text of an expression
std::string term_of(const kelm::object& part) {
    const kelm::object* column = target(part, property::column);
    return column ? name(*column) : text(part, property::expression);
}

std::string term_of(const changed_thing& part) {
    const std::string column = value_of(part, property::column);
    return column.empty() ? value_of(part, property::expression) : column;
}

/// Puts the groups into the order of the schema.
struct group_place {
    int rank; ///< what stands on its own, tables and views that are there, and what is gone
    std::size_t place;
    kelm::u32 id;
    auto operator<=>(const group_place&) const = default;
};

constexpr group_place definitions{0, 0, 0};

class collector {
public:
    collector(kelm::model& in, const kelm::delta& from) : model_(in) {
        for (kelm::delta_detail* each : from.created_details()) enter_created(*each);
        for (kelm::delta_detail* each : from.deleted_details()) enter_dropped(*each);
        for (kelm::delta_detail* each : from.modified_details()) enter_changed(*each);
        for (kelm::delta_detail* each : from.modified_details()) enter_moves(*each);
    }

    std::vector<change_group> groups() && {
        std::vector<change_group> found;
        for (auto& [place, group] : groups_) {
            std::ranges::sort(group, {}, [](const changed_thing& each) {
                return std::pair{is_relation(each.type) ? 0 : each.type, each.id};
            });
            found.push_back(std::move(group));
        }
        return found;
    }

private:
    kelm::object& object_of(const kelm::delta_detail& detail) const {
        return *model_.find_object(detail.object_id()); // what is not gone is there
    }

    change_group& group_of(kelm::object& what) {
        kelm::object* relation = relation_of(&what);
        if (!relation) return groups_[definitions];
        const std::size_t place = relation->owner()->child_position(relation);
        return groups_[{relation->type() == type::table ? 1 : 2, place, relation->id()}];
    }

    changed_thing thing(fate what, kelm::u32 type, kelm::u32 id) const {
        changed_thing made{};
        made.what = what;
        made.type = type;
        made.id = id;
        made.type_name = kelm::object_type_as_string(type);
        return made;
    }

    changed_thing thing_of(fate what, kelm::object& object) const {
        changed_thing made = thing(what, object.type(), object.id());
        made.name = is_term(object.type()) ? term_of(object) : name(object);
        const kelm::object* relation = relation_of(&object);
        if (relation && relation != &object) made.where = name(*relation);
        for (const kelm::u32 terms : {type::key_column, type::foreign_key_column})
            for (const kelm::object* part : parts(object, terms)) made.columns.push_back(term_of(*part));
        take_target(object, made);
        return made;
    }

    /// What has no target keeps the name that it was given.
    static void take_target(const kelm::object& object, changed_thing& into) {
        if (object.type() != type::foreign_key) return;
        const kelm::object* table = target(object, property::target_table);
        into.target = table ? name(*table) : text(object, property::target_name);
        for (const kelm::object* pair : parts(object, type::foreign_key_column)) {
            const kelm::object* column = target(*pair, property::target_column);
            into.target_columns.push_back(column ? name(*column) : text(*pair, property::target_name));
        }
    }

    void enter_created(const kelm::delta_detail& detail) {
        group_of(object_of(detail)).push_back(created(detail));
    }

    changed_thing created(const kelm::delta_detail& detail) {
        kelm::object& object = object_of(detail);
        changed_thing made = thing_of(fate::created, object);
        created_.insert(object.id());
        made.values = values_now(object);
        for (const kelm::delta_detail* part :
             kelm::detail_cast<const kelm::detail_create>(&detail)->child_details())
            made.parts.push_back(created(*part));
        sort_parts(made);
        return made;
    }

    void enter_dropped(const kelm::delta_detail& detail) {
        kelm::object* relation = relation_of(kelm::detail_cast<const kelm::detail_delete>(&detail)->owner());
        change_group& group = relation                            ? group_of(*relation)
                              : is_relation(detail.object_type()) ? groups_[{3, 0, detail.object_id()}]
                                                                  : groups_[definitions];
        group.push_back(dropped(detail, relation ? name(*relation) : std::string()));
    }

    /// \param where  the table or view it was part of
    changed_thing dropped(const kelm::delta_detail& detail, const std::string& where) {
        changed_thing gone = thing(fate::dropped, detail.object_type(), detail.object_id());
        const bool had_name =
            kelm::detail_cast<const kelm::detail_base_original_properties>(&detail)->had_property(
                kelm::property_id::name);
        if (had_name) gone.name = name_of(detail);
        gone.where = where;
        gone.values = values_before(model_, detail);
        if (is_term(gone.type)) gone.name = term_of(gone);
        const std::string& inside = is_relation(gone.type) ? gone.name : where;
        for (const kelm::delta_detail* part :
             kelm::detail_cast<const kelm::detail_delete>(&detail)->child_details())
            gone.parts.push_back(dropped(*part, inside));
        sort_parts(gone);
        take_terms(gone);
        return gone;
    }

    static void take_terms(changed_thing& gone) {
        for (const changed_thing& part : gone.parts) {
            if (!is_term(part.type)) continue;
            gone.columns.push_back(term_of(part));
            if (gone.type == type::foreign_key)
                gone.target_columns.push_back(told(part, property::target_column));
        }
        if (gone.type == type::foreign_key) gone.target = told(gone, property::target_table);
    }

    /// \returns the target's own name, else the one that the foreign key gives it
    static std::string told(const changed_thing& of, kelm::u32 reference) {
        const std::string found = value_of(of, reference);
        return found.empty() ? value_of(of, property::target_name) : found;
    }

    static void sort_parts(changed_thing& of) {
        std::ranges::sort(of.parts, {}, [](const changed_thing& each) {
            return std::pair{each.type, each.id};
        });
    }

    void enter_changed(kelm::delta_detail& detail) {
        kelm::object& object = object_of(detail);
        const auto& by = *kelm::detail_cast<kelm::detail_modified>(&detail);
        changed_thing made = thing_of(fate::changed, object);
        made.values = values_changed(object, detail);
        if (std::ranges::count(by.changed_properties(), kelm::property_id::name))
            made.renamed_from = text_before(detail, kelm::property_id::name);
        if (const kelm::object* owner = by.old_owner(); owner && owner != object.owner())
            made.moved_from = name(*owner);
        for (const kelm::inherits_change& base : by.inherits_changes()) {
            if (base.old_pos < 0) made.new_bases.push_back(name(*base.object));
            if (base.new_pos < 0) made.lost_bases.push_back(name(*base.object));
        }
        if (says_something(made)) group_of(object).push_back(std::move(made));
    }

    static bool says_something(const changed_thing& thing) {
        return !thing.values.empty() || !thing.renamed_from.empty() || !thing.moved_from.empty();
    }

    /// A move is told of the part that was moved, as a user sees it, not of its table.  What is new stands where it
    /// stands.
    void enter_moves(kelm::delta_detail& detail) {
        for (const kelm::child_order_change& each :
             kelm::detail_cast<kelm::detail_modified>(&detail)->child_order_changes()) {
            if (each.old_pos == each.new_pos || created_.contains(each.child->id())) continue;
            thing_told_of(*each.child).moved = {static_cast<std::size_t>(each.old_pos) + 1,
                                                static_cast<std::size_t>(each.new_pos) + 1};
        }
    }

    changed_thing& thing_told_of(kelm::object& what) {
        change_group& group = group_of(what);
        const auto found = std::ranges::find(group, what.id(), &changed_thing::id);
        return found == group.end() ? group.emplace_back(thing_of(fate::changed, what)) : *found;
    }

    kelm::model& model_;
    std::map<group_place, change_group> groups_;
    std::set<kelm::u32> created_;
};

} // namespace

std::vector<change_group> changes_since(kelm::model& in, kelm::u32 first) {
    const kelm::shared_ptr<kelm::delta> found = in.delta_since(in.find_transaction(first, nullptr));
    return found ? collector(in, *found).groups() : std::vector<change_group>();
}

std::string value_of(const changed_thing& thing, kelm::u32 property) {
    const auto found = std::ranges::find(thing.values, property, &value_change::property);
    if (found == thing.values.end()) return {};
    return (thing.what == fate::dropped ? found->before : found->after).value_or("");
}

} // namespace schema
