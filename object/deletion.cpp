// Deleting an object, step by step.
// Closing a model is creation.cpp's counterpart in the framework.
#include "object/deletion.h"

#include "message/child_messages.h"
#include "message/lifetime_messages.h"
#include "object/id_order.h"
#include "object/model_impl.h"
#include "object/reference_targets.h"

#include <algorithm>

namespace kelm {

namespace {

/// Records a message and tells the observers of the object it speaks of.
template <class Message, class... Arguments>
bool record_and_tell(object_impl& about, Arguments&&... arguments) {
    auto made = std::make_unique<Message>(&about, std::forward<Arguments>(arguments)...);
    message_impl& said = *made;
    about.owning_model()->log().add_message(std::move(made));
    return about.notify(&said);
}

/// The deletion of one object.  The steps are in the order in which observers hear of them.
class deletion {
public:
    explicit deletion(object_impl& what) : self_(what), caller_mark_(process().in_semantic) {}

    /// What comes before the children.
    bool begin() {
        process().in_semantic = true;
        self_.set_state(state::being_deleted);
        const bool passed =
            self_.run<obj_pre_delete_semantic>([&](obj_pre_delete_semantic& h) { return h.do_it(&self_); });
        return (passed || self_.refuse()) && announce() && ask_owner();
    }

    /// \returns the child to delete before this object can go; null when there is none, or none that goes: then
    ///          has_children() tells
    object_impl* next_child() {
        while (self_.has_children()) {
            object_impl* const first = self_.child_objects()->front();
            if (first == last_child_) return nullptr; // a hook has put it back
            if (!first->is_deleted()) {
                if (first->state() != state::normal) return nullptr;
                last_child_ = first;
                return first;
            }
            self_.take_child(*first); // it was added when it was deleted already: nobody hears of it
        }
        return nullptr;
    }
    bool has_children() const { return self_.has_children(); }

    /// What comes behind the children.
    bool end() {
        if (!delete_values() || !cancel_bases() || !cancel_inheritors() || !leave_subjects() ||
            !leave_owner())
            return false;
        const bool passed =
            self_.run<obj_delete_semantic>([&](obj_delete_semantic& h) { return h.do_it(&self_); });
        if (!(passed || self_.refuse()) || !clear_references()) return false;
        auto made = std::make_unique<obj_delete_message_impl>(&self_, owner_);
        message_impl& said = *made;
        self_.owning_model()->log().add_message(std::move(made));
        was_finished_ = true;
        if (!self_.notify(&said)) return false;
        detach_observers();
        self_.leave_id_map();
        self_.set_state(state::deleted);
        process().in_semantic = caller_mark_;
        return true;
    }

    /// Ends a deletion that was refused.  A rollback on the way may have undone the very creation of the object: then
    /// it stays deleted; and when only the last message was refused, it stays as it is.
    void give_up() {
        if (!was_finished_ && self_.state() == state::being_deleted) self_.set_state(state::normal);
    }

private:
    bool announce() {
        owner_ = self_.owner_object();        // the hooks before may have moved the object
        process().in_semantic = caller_mark_; // the one message that carries the caller's mark
        auto made = std::make_unique<obj_pre_delete_message_impl>(&self_, owner_);
        message_impl& said = *made;
        self_.owning_model()->log().add_message(std::move(made));
        process().in_semantic = true;
        if (!self_.notify(&said)) return false;
        return record_and_tell<child_pre_remove_message_impl>(*owner_, &self_);
    }

    bool ask_owner() {
        const bool passed = owner_->run<pre_remove_child_semantic>(
            [&](pre_remove_child_semantic& h) { return h.do_it(owner_, &self_); });
        return passed || owner_->refuse();
    }

    // Each loop demands progress: a hook that puts things back ends the deletion with false instead of holding it
    // for ever.

    bool delete_values() {
        std::set<u32> done;
        while (!self_.values().empty()) {
            const u32 lowest = (*self_.values().begin()).id;
            if (!done.insert(lowest).second || !self_.delete_property(lowest)) return false;
        }
        return true;
    }

    bool cancel_bases() {
        while (self_.bases() && !self_.bases()->empty()) {
            const std::size_t before = self_.bases()->size();
            if (!self_.cancel_inherits_from(self_.bases()->front())) return false;
            if (self_.bases() && self_.bases()->size() >= before) return false;
        }
        return true;
    }

    bool cancel_inheritors() {
        while (self_.inheritor_links() && !self_.inheritor_links()->empty())
            for (object* const each : in_order_of_ids(self_.inheritors()))
                if (inherits(*impl_of(each)) && !cancel_inheritor(*impl_of(each))) return false;
        return true;
    }

    bool inherits(object_impl& who) const {
        return self_.inheritor_links() && self_.inheritor_links()->holds(&who);
    }

    bool cancel_inheritor(object_impl& who) {
        if (!who.cancel_inherits_from(&self_)) return false;
        if (!inherits(who)) return true;
        if (!who.is_deleted()) return false;
        // Only a bad history links to the deleted.
        who.take_base(self_, who.inherits_from_position(&self_));
        return true;
    }

    bool leave_subjects() {
        for (subject* const each : in_order_of_ids(self_.subjects())) {
            if (!each->is_attached(&self_)) continue;
            auto* const watched = dynamic_cast<object_impl*>(each);
            watched ? watched->detach(&self_) : each->detach(&self_);
        }
        return true;
    }

    bool leave_owner() {
        object_impl& owner = *self_.owner_object(); // hooks on the way may have moved the object once more
        auto made = std::make_unique<child_remove_message_impl>(&owner, &self_, owner.child_position(&self_));
        message_impl& said = *made;
        self_.owning_model()->log().make_room();
        owner.take_child(self_);
        self_.owning_model()->log().add_message(std::move(made));
        if (!owner.notify(&said)) return false;
        const bool passed = owner.run<post_remove_child_semantic>(
            [&](post_remove_child_semantic& h) { return h.do_it(&owner, &self_); });
        return passed || owner.refuse();
    }

    void detach_observers() {
        for (observer* const who : in_order_of_ids(self_.observers()))
            if (self_.is_attached(who)) self_.detach(who);
    }

    bool clear_references();
    bool clear_references_of(object_impl& referrer);
    bool clear_elements(object_impl& referrer, u32 id);
    bool refers_to_self(const abstract_property* value) const { return target_of(value) == &self_; }
    std::size_t first_element(const object_impl& referrer, u32 id) const;
    bool still_refers(object_impl& referrer) const {
        return self_.references_to_this() && self_.references_to_this()->holds(&referrer);
    }

    object_impl& self_;
    object_impl* owner_ = nullptr; // as it was when the deletion was announced
    object_impl* last_child_ = nullptr;
    bool caller_mark_;
    bool was_finished_ = false;
};

bool deletion::clear_references() {
    if (!self_.references_to_this()) return true;
    for (object* const each : in_order_of_ids(self_.references_to_this()->distinct())) {
        object_impl& referrer = *impl_of(each);
        if (still_refers(referrer) && !clear_references_of(referrer)) return false;
    }
    return true; // the list went with its last entry
}

bool deletion::clear_references_of(object_impl& referrer) {
    struct note {
        u32 id;
        bool whole;
    };
    std::vector<note> notes;
    for (const auto& [id, value] : referrer.values()) {
        if (refers_to_self(value)) {
            notes.push_back({id, true});
        } else if (const auto* const list = exact_cast<vector_property>(value)) {
            if (std::ranges::any_of(list->elements, [&](const auto* e) { return refers_to_self(e); }))
                notes.push_back({id, false}); // one note serves all: they are searched for anew each time
        }
    }
    for (const note& n : notes) {
        if (!still_refers(referrer)) return true;
        if (!referrer.defines_property(n.id)) continue;
        if (n.whole ? !referrer.delete_property(n.id) : !clear_elements(referrer, n.id)) return false;
    }
    return true;
}

std::size_t deletion::first_element(const object_impl& referrer, u32 id) const {
    const auto* const list = exact_cast<vector_property>(referrer.values().find(id));
    if (!list) return npos;
    const auto at = std::ranges::find_if(list->elements, [&](const auto* e) { return refers_to_self(e); });
    return at == list->elements.end() ? npos : static_cast<std::size_t>(at - list->elements.begin());
}

bool deletion::clear_elements(object_impl& referrer, u32 id) {
    const auto size_of = [&] {
        const auto* const list = exact_cast<vector_property>(referrer.values().find(id));
        return list ? list->elements.size() : npos;
    };
    for (std::size_t at = first_element(referrer, id); at != npos; at = first_element(referrer, id)) {
        const std::size_t before = size_of();
        if (!referrer.delete_vector_element(id, at)) return false;
        if (size_of() != npos && size_of() >= before) return false; // put back by a hook
    }
    return size_of() != 0 || referrer.state() != state::normal || referrer.delete_property(id);
}

/// The deletions under way, each of a child of the one before.  Those that do not come to their end, also because a
/// hook throws, are given up, the innermost first.
class deletions {
public:
    ~deletions() {
        while (!under_way_.empty()) {
            under_way_.back().give_up();
            under_way_.pop_back();
        }
    }
    bool begin(object_impl& what) { return under_way_.emplace_back(what).begin(); }
    /// \returns false when the innermost refuses to end
    bool end() {
        if (top().has_children() || !top().end()) return false;
        under_way_.pop_back();
        return true;
    }
    deletion& top() { return under_way_.back(); }
    bool are_done() const { return under_way_.empty(); }

private:
    std::vector<deletion> under_way_;
};

} // namespace

// A stack of its own instead of recursion: a tree may be as deep as a model is big.
bool delete_plain_object(object_impl& what) {
    const message_history_impl::in_use guard{what.owning_model()->log()};
    deletions under_way;
    if (!under_way.begin(what)) return false;
    while (!under_way.are_done()) {
        object_impl* const child = under_way.top().next_child();
        if (!(child ? under_way.begin(*child) : under_way.end())) return false;
    }
    return true;
}

} // namespace kelm
