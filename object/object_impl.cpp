// Birth and end of an object, its identity, its observers, and giving way after a refusal.
// Values, children and bases have files of their own.
#include "object/object_impl.h"

#include "message/observer_messages.h"
#include "meta/meta_model_impl.h"
#include "object/model_impl.h"
#include "object/reference_targets.h"
#include "util/slab_range.h"

#include <algorithm>
#include <cassert>

namespace kelm {

object_impl::object_impl(u32 type, object_impl* owner, bool no_semantics, bool assign_id)
    : owner_object_(owner), model_(owner ? owner->model_ : nullptr), type_id_(type) {
    if (assign_id) object_id_ = type == type_id::model ? 1 : model_->next_object_id();
    if (!no_semantics) attach_semantics();
    if (owner) ++owner->named_as_owner_; // last: when the ids are used up nobody names the owner
}

object_impl::~object_impl() = default;

// The range is for what is many: the first one made, which decides its slots, is a model.
void* object_impl::operator new(std::size_t size) {
    return size == sizeof(object_impl) ? allocate_slot(size) : ::operator new(size);
}
void object_impl::operator delete(void* memory, std::size_t size) noexcept { free_slot(memory, size); }

void object_impl::attach_semantics() { semantic_table_ = application_semantics(type_id_); }

kelm::model* object_impl::model() const { return model_; }

object* object_impl::owner(u32 type) const {
    object_impl* at = owner_object_;
    if (type != 0)
        while (at && at->type_id_ != type) at = at->owner_object_;
    return at;
}

meta_object* object_impl::meta() const {
    return model_ ? model_->types().find_meta_object(type_id_)
                  : application_meta_model().find_meta_object(type_id_);
}

bool object_impl::semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const {
    out.clear();
    const auto* const list = semantic_table_ ? semantic_table_->of(kind) : nullptr;
    if (!list) return false;
    out = *list;
    return true;
}

kelm::semantic* object_impl::find_semantic(u32 id) const {
    return semantic_table_ ? semantic_table_->find(id) : nullptr;
}

bool object_impl::refuse() {
    // Nothing is done behind the rollback, which has cleared the in-semantic mark; outside a transaction it stays.
    if (model_ && model_->log().transaction_open()) model_->rollback_transaction();
    return false;
}

bool object_impl::attach(observer* who) {
    auto* const observing = dynamic_cast<object_impl*>(who);
    if (observing) take_back_interrupted(*this);
    if (!who || is_attached(who)) return false;
    if (!observing) return subject_impl::attach(who);
    if (!model_) {
        attach_silently(*who, observing->id());
        return true;
    }
    const message_history_impl::in_use guard{model_->log()};
    auto message = std::make_unique<observer_add_message_impl>(this, who, observing->id());
    model_->log().make_room();
    attach_silently(*who, observing->id()); // behind it nothing fails
    keep_if_deleted();
    observing->keep_if_deleted();
    model_->log().add_message(std::move(message));
    return true;
}

bool object_impl::detach(observer* who) {
    const auto* const observing = dynamic_cast<object*>(who);
    if (observing) take_back_interrupted(*this);
    if (!who || !is_attached(who)) return false;
    if (!observing) return subject_impl::detach(who);
    if (!model_) {
        detach_silently(*who, observing->id());
        return true;
    }
    const message_history_impl::in_use guard{model_->log()};
    auto message = std::make_unique<observer_remove_message_impl>(this, who, observing->id());
    model_->log().make_room();
    detach_silently(*who, observing->id());
    model_->log().add_message(std::move(message));
    return true;
}

bool object_impl::detach_object(object* who) { return who && detach(static_cast<observer*>(impl_of(who))); }

// Both lists, or none.
void object_impl::attach_silently(observer& who, u32 id) {
    auto& ids = made_links().observer_ids;
    if (!ids) ids = std::make_unique<std::set<u32>>();
    const auto [place, is_new] = ids->insert(id);
    try {
        subject_impl::attach(&who);
    } catch (...) {
        if (is_new) ids->erase(place);
        throw;
    }
}

void object_impl::detach_silently(observer& who, u32 id) {
    subject_impl::detach(&who);
    if (links().observer_ids) links().observer_ids->erase(id);
}

bool object_impl::update(subject* from, message* what) {
    if (!has_hooks<update_semantic>()) return true;
    return run<update_semantic>([&](update_semantic& h) { return h.do_it(this, from, what); }) || refuse();
}

void object_impl::enter_id_map() {
    if (model_) model_->objects_by_id().enter(object_id_, this);
}

void object_impl::leave_id_map() {
    if (model_) model_->objects_by_id().leave(object_id_, this);
}

void object_impl::destroy() {
    if (!model_) return;
    leave_id_map();
    model_->pool().destroy(*this);
}

bool object_impl::is_elsewhere(const object_impl& other, bool whole_model) const {
    return !whole_model || other.model_ != model_;
}

// The destructor asks nobody and tells nobody: what other objects, other models and observers still hold of this one
// is cut here, so that nothing is left pointing at freed memory.  Nothing is allocated for it, and so it cannot fail.
void object_impl::unlink(bool whole_model) {
    for (const auto& [id, value] : values_)
        for_each_target(value, [&](object* target) {
            if (is_elsewhere(*impl_of(target), whole_model)) impl_of(target)->drop_reference_from(*this);
        });
    if (const back_links* const holders = references_to_this()) {
        for (object_impl* const holder : *holders)
            if (is_elsewhere(*holder, whole_model)) holder->clear_references_to(*this);
    }
    unlink_bases(whole_model);
    unlink_observers(whole_model);
    if (!whole_model && is_listed_) leave_list();
}

void object_impl::leave_list() {
    if (owner_object_) owner_object_->take_child(*this);
    if (!is_listed_ || !model_) return;
    // It stands in the list of another than its owner, where a history read from a stream has left it.
    model_->take_child(*this);
    for (object_impl* const each : model_->pool().objects()) each->take_child(*this);
}

// A reference that would dangle reads as null from then on.
void object_impl::clear_references_to(const object_impl& gone) {
    const auto clear = [&](abstract_property* value) {
        auto* const reference = exact_cast<property<object*>>(value);
        if (reference && reference->value == static_cast<const object*>(&gone)) reference->value = nullptr;
    };
    for (const auto& [id, value] : values_) {
        clear(value);
        if (auto* const list = exact_cast<vector_property>(value))
            std::ranges::for_each(list->elements, clear);
    }
}

void object_impl::unlink_observers(bool whole_model) {
    for (std::size_t i = observers_ ? observers_->size() : 0; i-- != 0;) {
        observer* const who = (*observers_)[i];
        const auto* const observing = dynamic_cast<object_impl*>(who);
        if (!observing || is_elsewhere(*observing, whole_model)) subject_impl::detach(who);
    }
    for (std::size_t i = subjects_ ? subjects_->size() : 0; i-- != 0;) {
        if (!subjects_ || i >= subjects_->size()) continue; // a subject of an application may do as it likes
        subject* const watched = (*subjects_)[i];
        assert(watched); // lists of subjects hold no null
        auto* const thing = dynamic_cast<object_impl*>(watched);
        if (!thing) {
            watched->detach(this);
        } else if (is_elsewhere(*thing, whole_model)) {
            thing->detach_silently(*this, object_id_);
        }
    }
}

} // namespace kelm
