// Changing the tree: what is special about each change on the road of every change.
// Reading children is child_listing.cpp.
#include "message/child_messages.h"
#include "object/mutation.h"

#include <kelm/filters.h>

namespace kelm {

namespace {

struct child_row : structure_row {
    object_impl& child;
};

struct add_child_row : child_row {
    std::size_t position = 0;

    // Kept: without hooks of the kind a deleted object does take the change.
    bool stops_when_deleted() const { return self.has_hooks<pre_add_child_semantic>(); }
    bool pre(object_impl& at) {
        return at.run<pre_add_child_semantic>(
            [&](pre_add_child_semantic& h) { return h.do_it(&at, &child); });
    }
    step test() {
        if (self.child_position(&child) != npos) return step::nothing_to_do;
        if (!self.may_own(child) || child.is_listed()) return step::refuse;
        position = self.made_children().run_size(child.type());
        return step::go_on;
    }
    void change(message_impl&) {
        self.insert_child(child, position);
        child.keep_if_deleted();
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<child_add_message_impl>(&self, &child, position);
    }
    bool post(object_impl& at) {
        return at.run<post_add_child_semantic>(
            [&](post_add_child_semantic& h) { return h.do_it(&at, &child); });
    }
};

struct remove_child_row : child_row {
    std::size_t position = 0;

    bool stops_when_deleted() const { return self.has_hooks<pre_remove_child_semantic>(); }
    bool pre(object_impl& at) {
        return at.run<pre_remove_child_semantic>(
            [&](pre_remove_child_semantic& h) { return h.do_it(&at, &child); });
    }
    step test() {
        position = self.child_position(&child);
        return position == npos ? step::nothing_to_do : step::go_on;
    }
    void change(message_impl&) { self.take_child(child); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<child_remove_message_impl>(&self, &child, position);
    }
    bool post(object_impl& at) {
        return at.run<post_remove_child_semantic>(
            [&](post_remove_child_semantic& h) { return h.do_it(&at, &child); });
    }
};

struct order_child_row : child_row {
    std::size_t position;
    std::size_t old_position = 0;
    bool is_stranger = false;

    bool stops_when_deleted() const { return self.has_hooks<pre_set_child_order_semantic>(); }
    bool pre(object_impl& at) {
        return at.run<pre_set_child_order_semantic>(
            [&](pre_set_child_order_semantic& h) { return h.do_it(&at, &child, position); });
    }
    step test() {
        const child_list* const list = self.child_objects();
        if (!list) return step::nothing_to_do;
        old_position = self.child_position(&child);
        is_stranger = old_position == npos;
        if (is_stranger && child.owner_object() != &self) return step::refuse; // it would have two owners
        if (!is_stranger && old_position == position) return step::go_on; // told and recorded all the same
        const std::size_t others = list->run_size(child.type()) - (is_stranger ? 0 : 1);
        if (is_stranger) old_position = others;
        if (position <= others) return step::go_on;
        // Kept: a position behind the end leaves the child out of the list, and nothing is told or recorded.
        self.take_child(child);
        return step::nothing_to_do;
    }
    void change(message_impl&) {
        if (is_stranger)
            self.insert_child(child, position);
        else
            self.move_child(child, position);
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<child_order_message_impl>(&self, &child, position, old_position);
    }
    bool post(object_impl& at) {
        return at.run<post_set_child_order_semantic>(
            [&](post_set_child_order_semantic& h) { return h.do_it(&at, &child, position, old_position); });
    }
};

/// The two lists are changed by mutations of their own, with their own hooks and messages.
struct set_owner_row : structure_row {
    object_impl& new_owner;
    object* old_owner = nullptr;

    bool stops_when_deleted() const { return self.has_hooks<pre_set_owner_semantic>(); }
    bool pre(object_impl& at) {
        return at.run<pre_set_owner_semantic>(
            [&](pre_set_owner_semantic& h) { return h.do_it(&at, &new_owner); });
    }
    step test() {
        if (!new_owner.may_own(self)) return step::refuse;
        old_owner = self.owner_object();
        if (old_owner && !old_owner->remove_child(&self)) return step::failed;
        if (!new_owner.add_child(&self)) return step::failed;
        return is_back() ? step::failed : step::go_on;
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<owner_set_message_impl>(&self, &new_owner, old_owner);
    }
    void change(message_impl&) {} // it has been made
    bool post(object_impl& at) {
        return at.run<post_set_owner_semantic>(
            [&](post_set_owner_semantic& h) { return h.do_it(&at, &new_owner, old_owner); });
    }

private:
    /// \returns whether an observer of the two mutations has rolled them back: then there is nothing to tell
    bool is_back() const {
        return old_owner && old_owner != &new_owner && self.owner_object() == old_owner &&
               old_owner->child_position(&self) != npos;
    }
};

} // namespace

// One owner a child, inside one model, and no circles.
bool object_impl::may_own(const object_impl& child) const {
    return child.model_ == model_ && !closes_circle(child);
}

bool object_impl::closes_circle(const object_impl& child) const {
    if (child.type_id_ == type_id::model || &child == this) return true;
    if (child.named_as_owner_ == 0) return false; // it is nobody's owner
    for (const object_impl* at = owner_object_; at; at = at->owner_object_)
        if (at == &child) return true;
    return false;
}

bool object_impl::add_child(object* child) {
    return child ? mutate(add_child_row{{{*this}, *impl_of(child)}}) : refuse();
}

bool object_impl::remove_child(object* child) {
    take_back_interrupted(*this);
    if (!children_ || !child) return true;
    return mutate(remove_child_row{{{*this}, *impl_of(child)}});
}

bool object_impl::remove_children(filter* which) {
    take_back_interrupted(*this);
    if (!children_) return true;
    std::vector<object*> listed;
    children(listed, which);
    bool all = true;
    for (object* const each : listed)
        if (child_position(each) != npos && !remove_child(each)) all = false;
    return all;
}

bool object_impl::set_child_position(object* child, std::size_t position) {
    return child ? mutate(order_child_row{{{*this}, *impl_of(child)}, position}) : refuse();
}

bool object_impl::set_owner(object* new_owner) {
    return new_owner ? mutate(set_owner_row{{*this}, *impl_of(new_owner)}) : refuse();
}

} // namespace kelm
