// Finding the values of the start.
// What a delta must tell of them is delta_laws.cpp.
#include "testing/delta_values.h"
#include "testing/canonical_text.h"

namespace kelm::testing {

namespace {

std::string in_map(const std::map<u32, std::string>& all, u32 id) {
    const auto found = all.find(id);
    return found == all.end() ? std::string{} : found->second;
}

bool is_move_or_told_change(const message* each) {
    std::string text;
    return each->type() == message_type::element_position_vec_prop ||
           each->to_string(text).starts_with("Refresh ");
}

using elements = std::vector<abstract_property*>;

std::unique_ptr<abstract_property> take(elements& list, std::size_t at) {
    if (at >= list.size()) return nullptr;
    std::unique_ptr<abstract_property> out{list[at]};
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(at));
    return out;
}

void put(elements& list, std::size_t at, std::unique_ptr<abstract_property> value) {
    if (value && at <= list.size())
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(at), value.release());
}

std::unique_ptr<abstract_property> clone_of(const value_ptr& value) {
    return std::unique_ptr<abstract_property>{value->clone()};
}

void go_back_in_list(elements& list, message& what) {
    if (const auto* const set = message_cast<property_set_vec_prop_message>(&what)) {
        if (take(list, set->pos())) put(list, set->pos(), clone_of(set->old_value()));
    } else if (const auto* const inserted = message_cast<property_insert_vec_prop_message>(&what)) {
        take(list, inserted->pos());
    } else if (const auto* const deleted = message_cast<property_delete_vec_prop_message>(&what)) {
        put(list, deleted->pos(), clone_of(deleted->value()));
    } else if (const auto* const moved = message_cast<element_position_vec_prop_message>(&what)) {
        put(list, moved->new_pos(), take(list, moved->old_pos()));
    }
}

} // namespace

std::string delta_values::now(u32 id, u32 property) const {
    const auto at = now_.find(id);
    return at == now_.end() ? std::string{} : in_map(at->second.effective, property);
}

const std::string& delta_values::at_start(u32 id, u32 property, bool& difference) {
    const found& then = look_up(id, property);
    difference = !then.by_exception && then.value != in_map(before_.at(id).effective, property);
    return then.value;
}

const delta_values::found& delta_values::look_up(u32 id, u32 property) {
    const auto known = known_.find({id, property});
    if (known != known_.end()) return known->second;
    return known_[{id, property}] = find(id, property);
}

delta_values::found delta_values::find(u32 id, u32 property) {
    if (!walk_.is_gone(id) && !walk_.is_looked_at(id)) return {now(id, property)};
    const std::vector<message*>* const about = walk_.messages_of(id, property);
    if (!about) {
        if (walk_.is_gone(id) || !counts_as_own(id, property)) return find_inherited(id, property);
        return {now(id, property), !now_.at(id).own.contains(property)};
    }
    if (std::ranges::any_of(*about, is_move_or_told_change)) return go_back_over(id, property, *about);
    const message* const oldest = about->back();
    const auto* const set = message_cast<const property_set_message>(oldest);
    if (!set || set->old_owner() == oldest->object()) return {in_map(before_.at(id).own, property)};
    const value_ptr covered = set->old_value();
    return covered ? found{value_text(covered.get()), true} : find_inherited(id, property);
}

bool delta_values::counts_as_own(u32 id, u32 property) const {
    return now_.at(id).own.contains(property) || equals_nothing(now(id, property));
}

bool delta_values::may_be_asked(const object_picture& from, const object_picture& base, u32 property) const {
    return from.type == base.type || in_.meta_model()->find_meta_object(base.type)->has_property(property);
}

delta_values::found delta_values::find_inherited(u32 id, u32 property) {
    const object_picture& then = before_.at(id);
    const meta_property* const declared =
        in_.meta_model()->find_meta_object(then.type)->find_property(property);
    if (contains(then.marks, property) || !declared) return {};
    const value_ptr stays = declared->attribute_value(attribute_id::not_inheritable);
    if (stays && kelm::property<bool>{true}.equals(stays.get())) return {};
    found out;
    for (const u32 base : then.bases) {
        if (!may_be_asked(then, before_.at(base), property)) continue;
        const found& of_base = look_up(base, property);
        out.value = of_base.value;
        out.by_exception = out.by_exception || of_base.by_exception;
        if (!out.value.empty()) break;
    }
    return out;
}

delta_values::found delta_values::go_back_over(u32 id, u32 property,
                                               const std::vector<message*>& newest_first) {
    value_ptr value;
    if (!walk_.is_gone(id) && counts_as_own(id, property))
        value = in_.find_object(id)->get_property(property);
    for (message* each : newest_first) {
        if (const auto* const set = message_cast<property_set_message>(each)) {
            value = set->old_value();
        } else if (const auto* const deleted = message_cast<property_delete_message>(each)) {
            value = deleted->old_value();
        } else {
            if (!dynamic_cast<vector_property*>(value.get())) value.reset(new vector_property);
            go_back_in_list(dynamic_cast<vector_property&>(*value).elements, *each);
        }
    }
    return {value ? value_text(value.get()) : find_inherited(id, property).value, true};
}

} // namespace kelm::testing
