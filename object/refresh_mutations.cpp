// Refusing to inherit a property, and recording that an inherited value changed by other means.
// Own values are value_mutations.cpp.
#include "message/refresh_messages.h"
#include "object/effective_value.h"
#include "object/mutation.h"
#include "object/value_hooks.h"

namespace kelm {

namespace {

struct mark_row : property_row {
    bool flag;
    std::unique_ptr<abstract_property> noted{}; // what was effective before

    bool pre(object_impl& at) {
        return at.run<pre_prop_set_not_inheritable_semantic>(
            [&](pre_prop_set_not_inheritable_semantic& h) { return h.do_it(&at, id, flag, &self); });
    }
    step test() {
        noted = find_effective_value(self, id).take();
        if (self.is_property_not_inheritable(id) == flag)
            return step::nothing_to_do; // a hook has been quicker
        return step::go_on;
    }
    void change(message_impl&) { self.mark_not_inheritable(id, flag); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_set_not_inheritable_message_impl>(&self, id, flag);
    }
    bool post(object_impl& at) {
        return at.run_with_clone<post_prop_set_not_inheritable_semantic>(
            noted.get(), [&](post_prop_set_not_inheritable_semantic& h, const value_ptr& copy) {
                return h.do_it(&at, id, copy, flag, &self);
            });
    }
};

/// Nobody set the value: hooks are told of no origin, and inheritors are asked by their own types.
struct refresh_row : property_row {
    const abstract_property* old;

    object_impl* origin() const { return nullptr; }
    step test() { return step::go_on; }
    void change(message_impl&) {} // the object itself does not change
};

struct refresh_set_row : refresh_row {
    const abstract_property& value;

    bool pre(object_impl& at) {
        return at.run<pre_prop_set_semantic>(
            [&](pre_prop_set_semantic& h) { return h.do_it(&at, id, value, nullptr); });
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_refresh_set_message_impl>(&self, clone(old), clone(&value), id);
    }
    bool post(object_impl& at) { return run_post_set(at, id, value, old, nullptr, nullptr); }
};

struct refresh_delete_row : refresh_row {
    bool pre(object_impl& at) {
        return at.run<pre_prop_delete_semantic>(
            [&](pre_prop_delete_semantic& h) { return h.do_it(&at, id, nullptr); });
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_refresh_delete_message_impl>(&self, clone(old), id);
    }
    bool post(object_impl& at) { return run_post_delete(at, id, old, nullptr); }
};

} // namespace

bool object_impl::set_property_not_inheritable(u32 id, bool flag) {
    take_back_interrupted(*this);
    return is_property_not_inheritable(id) == flag || mutate(mark_row{{*this, id}, flag});
}

bool object_impl::refresh_property(u32 id, const abstract_property* new_value,
                                   const abstract_property* old_value) {
    if (new_value) return mutate(refresh_set_row{{{*this, id}, old_value}, *new_value});
    return !old_value || mutate(refresh_delete_row{{{*this, id}, old_value}});
}

} // namespace kelm
