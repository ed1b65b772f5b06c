// Going back over one message at a time: a table from its number to what it restores.
// What is compared at the end is summary_finish.cpp.
#include "delta/summary.h"
#include "message/child_messages.h"
#include "message/inherit_messages.h"
#include "message/lifetime_messages.h"
#include "message/vector_messages.h"
#include "object/effective_value.h"
#include "object/model_impl.h"

#include <kelm/meta_model.h>

#include <algorithm>

namespace kelm {

namespace {

template <class Message>
Message& as(message_impl& what) {
    return static_cast<Message&>(what);
}

u32 property_of(message_impl& what) { return as<property_change_message_impl>(what).property_type(); }

object_impl& about(message_impl& what) { return *impl_of(what.object()); }

/// Puts `what` in, unless the place is behind the end.
template <class List, class Entry>
bool insert_at(List& list, std::size_t at, Entry&& what) {
    if (at > list.size()) return false;
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(at), std::forward<Entry>(what));
    return true;
}

void take_first(std::vector<object*>& list, const object* what) {
    if (const auto at = std::ranges::find(list, what); at != list.end()) list.erase(at);
}

/// Takes an element out.  \returns whether there was one at that place; what stood there may have been null
bool take_element(vector_property& list, std::size_t at, std::unique_ptr<abstract_property>& taken) {
    if (at >= list.elements.size()) return false;
    taken.reset(list.elements[at]);
    list.elements.erase(list.elements.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}

void drop_element(vector_property& list, std::size_t at) {
    std::unique_ptr<abstract_property> dropped;
    take_element(list, at, dropped);
}

void insert_element(vector_property& list, std::size_t at, std::unique_ptr<abstract_property> element) {
    if (insert_at(list.elements, at, element.get())) (void)element.release();
}

struct fold_row {
    u32 type;
    void (summary::*fold)(message_impl&);
};

constexpr fold_row fold_rows[] = {
    {message_type::obj_create, &summary::fold_obj_create},
    {message_type::obj_delete, &summary::fold_obj_delete},
    {message_type::property_set, &summary::fold_property_set},
    {message_type::property_set_vec_prop, &summary::fold_element_set},
    {message_type::property_insert_vec_prop, &summary::fold_element_insert},
    {message_type::property_delete, &summary::fold_property_delete},
    {message_type::property_delete_vec_prop, &summary::fold_element_delete},
    {message_type::element_position_vec_prop, &summary::fold_element_move},
    {message_type::property_set_not_inheritable, &summary::fold_not_inheritable},
    {message_type::child_remove, &summary::fold_child_remove},
    {message_type::child_order, &summary::fold_child_order},
    {message_type::owner_set, &summary::fold_owner_set},
    {message_type::inherits_add, &summary::fold_inherits_add},
    {message_type::inherits_cancel, &summary::fold_inherits_cancel},
    {message_type::inherits_insert, &summary::fold_inherits_insert},
    {message_type::inherits_from_order, &summary::fold_inherits_order},
    {message_type::inherits_replace, &summary::fold_inherits_replace},
};
static_assert(std::ranges::is_sorted(fold_rows, {}, &fold_row::type));

/// \returns null for a message that changes nothing a summary tells of
const fold_row* row_of(u32 type) {
    const auto* const row = std::ranges::lower_bound(fold_rows, type, {}, &fold_row::type);
    return row != std::end(fold_rows) && row->type == type ? row : nullptr;
}

/// \returns whether reading the object's values is nobody's business: no hook hears of it
bool reads_silently(const object_impl& of) {
    return !of.bases() && !of.has_hooks<pre_prop_get_semantic>() &&
           (!of.has_hooks<post_prop_get_semantic>() || of.semantics()->reads_are_plain());
}

} // namespace

summary::summary(model_impl& of, const std::vector<message_impl*>& stretch)
    : stretch_(stretch), made_(std::make_unique<delta_impl>(of)) {
    for (message_impl* const each : stretch)
        if (each->type() == message_type::obj_create && each->object() && reads_silently(about(*each)))
            made_in_stretch_.insert(each->object());
}

std::unique_ptr<delta_impl> summary::make() {
    for (message_impl* const each : stretch_) fold_message(*each);
    finish();
    const bool is_void = made_->deleted.empty() && made_->created.empty() && made_->modified.empty();
    return is_void ? nullptr : std::move(made_);
}

void summary::fold_message(message_impl& what) {
    if (!what.object()) return; // a log that was read may speak of what is not there
    if (const fold_row* const row = row_of(what.type())) (this->*row->fold)(what);
}

bool summary::folds(u32 type) { return row_of(type) != nullptr; }

detail_base_original_properties_impl& summary::detail_of(object_impl& of) {
    if (auto* const gone = made_->find(made_->deleted_by_id, of)) return *gone;
    return modified_detail_of(of);
}

detail_modified_impl& summary::modified_detail_of(object_impl& of) {
    auto& kept = made_->modified_by_id[of.id()];
    if (kept) return *kept;
    kept = std::make_unique<detail_modified_impl>(*made_, of);
    detail_modified_impl& detail = *kept;
    made_->modified.append(detail);
    // What is made in this stretch tells no values of before: its detail will go.
    if (!is_new(of)) note_present_state(detail);
    return detail;
}

void summary::note_present_state(detail_modified_impl& detail) {
    object_impl& of = detail.about();
    for (const summed_property& each : properties_of(of)) {
        if (!is_summed(each, of)) continue;
        effective_value now = find_effective_value(of, each.id);
        if (now.temporary)
            detail.set_original(each.id, std::move(now.temporary));
        else if (now.source == &of)
            detail.set_original(each.id, now.value);
    }
    detail.original_inherits() = of.inherits_from_list(0);
    detail.set_original_not_inheritable(of.not_inheritable_properties());
}

void summary::fold_property_set(message_impl& what) {
    if (!is_new(about(what)))
        detail_of(about(what))
            .set_original(property_of(what), as<property_set_message_impl>(what).known_old_value());
}

void summary::fold_property_delete(message_impl& what) {
    if (!is_new(about(what)))
        detail_of(about(what))
            .set_original(property_of(what), as<property_delete_message_impl>(what).known_old_value());
}

vector_property& summary::list_of(message_impl& what) {
    return detail_of(about(what)).original_vector(property_of(what));
}

void summary::fold_element_set(message_impl& what) {
    const auto& set = as<property_set_vec_prop_message_impl>(what);
    vector_property& list = list_of(what);
    if (set.pos() >= list.elements.size()) return;
    drop_element(list, set.pos());
    insert_element(list, set.pos(), clone(set.known_old_value()));
}

void summary::fold_element_insert(message_impl& what) {
    drop_element(list_of(what), as<property_insert_vec_prop_message_impl>(what).pos());
}

void summary::fold_element_delete(message_impl& what) {
    const auto& taken = as<property_delete_vec_prop_message_impl>(what);
    insert_element(list_of(what), taken.pos(), clone(taken.raw_value()));
}

void summary::fold_element_move(message_impl& what) {
    const auto& move = as<element_position_vec_prop_message_impl>(what);
    vector_property& list = list_of(what);
    // Kept: the move is made once more, not taken back, so that a list which was moved about shows as changed.
    std::unique_ptr<abstract_property> moved;
    if (take_element(list, move.old_pos(), moved)) insert_element(list, move.new_pos(), std::move(moved));
}

void summary::fold_not_inheritable(message_impl& what) {
    const auto& mark = as<property_set_not_inheritable_message_impl>(what);
    detail_of(about(what)).mark_original_not_inheritable(mark.property_type(), !mark.not_inheritable());
}

void summary::fold_child_remove(message_impl& what) {
    const auto& removed = as<child_remove_message_impl>(what);
    if (!removed.child()) return;
    if (auto* const gone = made_->find(made_->deleted_by_id, *removed.child()))
        gone->set_position(removed.pos());
}

void summary::fold_child_order(message_impl& what) {
    const auto& order = as<child_order_message_impl>(what);
    if (!order.child() || made_->find(made_->deleted_by_id, *what.object()) ||
        made_->find(made_->deleted_by_id, *order.child()))
        return;
    // Kept: also an owner that was deleted before, or is met before its deletion, is told of as changed.
    modified_detail_of(about(what)).fold_child_order(*order.child(), order.old_pos(), order.new_pos());
}

void summary::fold_owner_set(message_impl& what) {
    modified_detail_of(about(what)).set_old_owner(as<owner_set_message_impl>(what).old_owner());
}

std::vector<object*>& summary::bases_of(message_impl& what) {
    return detail_of(about(what)).original_inherits();
}

void summary::fold_inherits_add(message_impl& what) {
    // Kept: also a base that was added a second time, and so was there before, is taken for one that came.
    take_first(bases_of(what), as<inherits_add_message_impl>(what).inherits_from());
}

void summary::fold_inherits_insert(message_impl& what) {
    take_first(bases_of(what), as<inherits_insert_message_impl>(what).inherits_from());
}

void summary::fold_inherits_cancel(message_impl& what) {
    const auto& cancelled = as<inherits_cancel_message_impl>(what);
    std::vector<object*>& bases = bases_of(what);
    if (cancelled.inherits_from()) insert_at(bases, cancelled.place(), cancelled.inherits_from());
}

void summary::fold_inherits_order(message_impl& what) {
    const auto& order = as<inherits_from_order_message_impl>(what);
    std::vector<object*>& bases = bases_of(what);
    if (!order.inherits_from()) return;
    take_first(bases, order.inherits_from());
    insert_at(bases, order.old_pos(), order.inherits_from());
}

void summary::fold_inherits_replace(message_impl& what) {
    const auto& replaced = as<inherits_replace_message_impl>(what);
    std::vector<object*>& bases = bases_of(what);
    if (replaced.old_inherits_from() && replaced.place() < bases.size())
        bases[replaced.place()] = replaced.old_inherits_from();
}

void summary::fold_obj_delete(message_impl& what) {
    object_impl& gone = about(what);
    if (made_->find(made_->deleted_by_id, gone)) return; // only a bad log deletes twice
    object* const told = as<obj_delete_message_impl>(what).owner();
    object* const owner = told ? made_->model().find_object(told->id()) : nullptr;
    // An owner went after its children, and is met before them.  Found before the object is entered: a bad log may say
    // that it owned itself.
    detail_delete_impl* const parent = told ? made_->find(made_->deleted_by_id, *told) : nullptr;
    auto& kept = made_->deleted_by_id[gone.id()];
    kept = std::make_unique<detail_delete_impl>(*made_, gone, owner);
    kept->set_original_not_inheritable(gone.not_inheritable_properties());
    kept->set_parent(parent);
    (parent ? parent->children() : made_->deleted).append(*kept);
}

void summary::fold_obj_create(message_impl& what) {
    object_impl& object = about(what);
    auto* const gone = made_->find(made_->deleted_by_id, object);
    if (auto* const changed = made_->find(made_->modified_by_id, object)) leave_out(*changed);
    if (gone) return leave_out(*gone);

    auto& kept = made_->created_by_id[object.id()];
    if (kept) return; // only a bad log makes one twice
    kept = std::make_unique<detail_create_impl>(*made_, object, as<obj_create_message_impl>(what).owner());
    adopt_children(*kept);
    made_->created.append(*kept);
    if (kept->owner()) waiting_[kept->owner()].emplace(object.id(), kept.get());
}

void summary::leave_out(detail_delete_impl& gone) {
    // What came into it from elsewhere and went with it did exist before.
    for (detail_impl* const each : gone.children().details()) {
        if (!each) continue;
        static_cast<detail_delete_impl*>(each)->set_parent(nullptr);
        made_->deleted.append(*each);
    }
    detail_list::take_out(gone);
    made_->deleted_by_id.erase(gone.object_id());
}

void summary::leave_out(detail_modified_impl& changed) {
    detail_list::take_out(changed);
    made_->modified_by_id.erase(changed.object_id());
}

void summary::adopt_children(detail_create_impl& made) {
    // Children are made behind their owner, and are met before it.
    const auto waiting = waiting_.find(&made.about());
    if (waiting == waiting_.end()) return;
    for (const auto& [id, child] : waiting->second) {
        detail_list::take_out(*child);
        made.children().append(*child);
        child->set_parent(made);
    }
    waiting_.erase(waiting);
}

} // namespace kelm
