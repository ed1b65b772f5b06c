// Drawing transactions and edits.
// Values are random_values.cpp.
#include "testing/random_steps.h"

#include <kelm/framework.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace kelm::testing {

namespace {

constexpr std::size_t beginners = 6;

using share = std::pair<std::size_t, action>;

/// \returns one of several actions, each as often as its share says
action pick(random_numbers& numbers, std::initializer_list<share> shares) {
    std::size_t sum = 0;
    for (const auto& [size, what] : shares) sum += size;
    std::size_t drawn = numbers.below(sum);
    for (const auto& [size, what] : shares) {
        if (drawn < size) return what;
        drawn -= size;
    }
    return std::rbegin(shares)->second;
}

} // namespace

object_name random_steps::name_of(const object* what) const {
    return what ? history_.names().name_of(*what) : object_name{};
}

object* random_steps::any() {
    const kelm::model& in = history_.model();
    for (int attempt = 0; attempt != 50; ++attempt) {
        object* const found = in.find_object(static_cast<u32>(2 + numbers_.below(in.last_object_id())));
        if (found) return found;
    }
    std::vector<u32> ids;
    in.object_ids(ids);
    return ids.size() < 2 ? nullptr : in.find_object(ids.back());
}

object* random_steps::any_or_root() {
    object* const found = one_in(3) ? nullptr : any();
    return found ? found : &history_.root();
}

step random_steps::at(action what, const object* object) const {
    step out;
    out.what = what;
    out.object = name_of(object);
    return out;
}

std::vector<step> random_steps::beginning() {
    std::vector<step> out;
    const auto add = [&](action what) -> step& {
        out.push_back(at(what, nullptr));
        out.back().number = static_cast<u32>(out.size());
        return out.back();
    };
    struct beginner {
        object_name name;
        u32 type;
    };
    std::vector<beginner> all{{{}, type_id::model}};
    add(action::begin);
    for (std::size_t i = 0; i != beginners; ++i) {
        const beginner owner = all[numbers_.below(all.size())];
        const vocabulary::type* const type = words_.find(owner.type);
        if (!type || type->children.empty()) continue;
        step& made = add(action::create_object);
        made.object = owner.name;
        made.id = numbers_.one_of(type->children);
        const beginner heir{{made.number, 0}, made.id};
        for (std::size_t earlier = 1; history_.mix().bases && earlier != all.size(); ++earlier) {
            if (one_in(2)) continue;
            step& inherits = add(action::add_base);
            inherits.object = heir.name;
            inherits.other = all[earlier].name;
        }
        all.push_back(heir);
    }
    add(action::end);
    add(action::clear_history);
    if (history_.mix().limited && one_in(4)) add(action::set_undo_levels).position = 1 + numbers_.below(4);
    return out;
}

step random_steps::next() { return history_.levels() == 0 ? outside() : inside(); }

step random_steps::outside() {
    step out = at(pick(numbers_, {{4, action::undo},
                                  {2, action::redo},
                                  {1, action::rollback_last},
                                  {1, action::set_undo_levels},
                                  {12, action::begin}}),
                  nullptr);
    if (out.what == action::set_undo_levels) out.position = numbers_.below(5) - 1; // npos is no limit
    return out;
}

step random_steps::inside() {
    switch (numbers_.below(30)) {
    case 0: return at(history_.levels() < 4 ? action::begin : action::end, nullptr);
    case 1: return at(action::rollback, nullptr);
    case 2: return one_in(3) ? at(action::rollback_all, nullptr) : edit();
    case 3:
    case 4:
    case 5: return at(action::end, nullptr);
    default: return edit();
    }
}

step random_steps::edit() {
    if (!any() || one_in(8)) return creation();
    switch (numbers_.below(history_.mix().bases ? 9 : 7)) {
    case 0:
    case 1: return tree();
    case 2:
    case 3: return value();
    case 4:
    case 5: return element();
    case 6: return history_.mix().observing ? observing() : value();
    default: return base();
    }
}

step random_steps::creation() {
    const object* const owner = any_or_root();
    step out = at(action::create_object, owner);
    const vocabulary::type* const type = words_.find(owner->type());
    const vocabulary::type* const top = words_.find(type_id::model);
    if (history_.mix().undeclared) {
        out.id = numbers_.one_of(top->children);
    } else if (type && !type->children.empty()) {
        out.id = numbers_.one_of(type->children);
    } else if (top && !top->children.empty()) {
        out.object = {};
        out.id = numbers_.one_of(top->children);
    }
    return out;
}

step random_steps::tree() {
    const object* const what = any();
    step out = at(pick(numbers_, {{2, action::delete_object},
                                  {1, action::set_owner},
                                  {1, action::remove_child},
                                  {1, action::add_child},
                                  {1, action::set_child_position}}),
                  what);
    if (out.what == action::set_child_position)
        out.position = numbers_.below(what->owner()->child_count(what->type()));
    if (out.what != action::set_owner) return out;
    const object* to = any_or_root();
    for (int attempt = 0; attempt != 10 && !history_.mix().undeclared; ++attempt) {
        const vocabulary::type* const type = words_.find(to->type());
        if (type && std::ranges::find(type->children, what->type()) != type->children.end()) break;
        to = any_or_root();
    }
    out.other = name_of(to);
    return out;
}

step random_steps::value() {
    const object* const what = !history_.mix().undeclared && one_in(20) ? &history_.root() : any();
    const vocabulary::property* const which = any_property(*what, false);
    if (!which) return tree();
    const auto done = [&](action call) {
        step out = at(call, what);
        out.id = which->id;
        return out;
    };
    if (one_in(4)) return done(action::delete_property);
    if (one_in(history_.mix().summed ? 3 : 8)) {
        step out = done(action::set_mark);
        out.position = what->is_property_not_inheritable(which->id) ? 0 : 1;
        return out;
    }
    const bool is_told = one_in(12);
    step out = done(is_told ? action::refresh_property : action::set_property);
    if (!is_told || !one_in(3)) out.value = value_of(*which);
    if (is_told && !one_in(3)) out.other_value = value_of(*which);
    return out;
}

step random_steps::element() {
    const object* const what = any();
    const vocabulary::property* const which = any_property(*what, true);
    if (!which) return value();
    const value_ptr stored = what->get_own_property(which->id);
    const auto* const list = dynamic_cast<const vector_property*>(stored.get());
    const std::size_t size = list ? list->elements.size() : 0;
    step out = at(pick(numbers_, {{2, action::append_element},
                                  {1, action::insert_element},
                                  {1, action::delete_element},
                                  {1, action::set_element},
                                  {1, action::move_element}}),
                  what);
    out.id = which->id;
    if (!list && !one_in(10)) {
        out.what = action::set_property;
        out.value.kind = data_type::vector;
        return out;
    }
    // One position behind the end now and then: an insertion is then recorded and does nothing, the others refuse.
    if (out.what != action::append_element) out.position = numbers_.below(size + (one_in(8) ? 2 : 0));
    if (out.what == action::move_element) out.to = numbers_.below(size);
    if (out.what != action::move_element && out.what != action::delete_element)
        out.value = element_of(*which);
    return out;
}

step random_steps::base() {
    const object* const what = any();
    const object* other = any();
    if (other == what && !one_in(10)) other = any();
    const std::size_t size = what->inherits_from_list(0).size();
    const object* const listed = size ? what->inherits_from_at(numbers_.below(size)) : other;
    step out = at(pick(numbers_, {{3, action::add_base},
                                  {1, action::insert_base},
                                  {1, action::cancel_base},
                                  {1, action::cancel_all_bases},
                                  {1, action::replace_base},
                                  {1, action::move_base}}),
                  what);
    out.position = numbers_.below(size + 1);
    const bool of_list = out.what == action::cancel_base || out.what == action::move_base;
    out.other = name_of(of_list ? listed : other);
    const bool is_too_far = (out.what == action::replace_base && out.position == size) ||
                            (out.what == action::move_base && size == 0);
    if (is_too_far && !one_in(10)) out.what = action::insert_base;
    return out;
}

step random_steps::observing() {
    const object* const what = any(); // drawn first: the order of arguments is the compiler's
    step out = at(one_in(2) ? action::attach : action::detach, what);
    out.other = name_of(any());
    return out;
}

} // namespace kelm::testing
