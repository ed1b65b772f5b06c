// Setting and deleting values: what is special about them on the road of every change.
// Elements of vectors are vector_mutations.cpp.
#include "message/value_messages.h"
#include "object/effective_value.h"
#include "object/mutation.h"
#include "object/value_hooks.h"

namespace kelm {

namespace {

struct set_property_row : property_row {
    const abstract_property& value;
    std::unique_ptr<abstract_property> made{}; // until the object takes it over
    std::unique_ptr<abstract_property> old{};  // not the object's own: until the message takes it over
    const abstract_property* old_for_hooks = nullptr;
    object_impl* source = nullptr;

    bool pre(object_impl& at) {
        return at.run<pre_prop_set_semantic>(
            [&](pre_prop_set_semantic& h) { return h.do_it(&at, id, value, &self); });
    }

    step test() {
        made = clone(&value);
        if (!self.defines_property(id)) {
            effective_value so_far = find_effective_value(self, id);
            source = so_far.source;
            old = so_far.take();
        }
        // The hooks of that read may have stored a value themselves.
        if (self.defines_property(id)) source = &self;
        old_for_hooks = source == &self ? self.own_value(id) : old.get();
        return step::go_on;
    }

    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_set_message_impl>(&self, std::move(old), made.get(), id, source);
    }

    void change(message_impl& said) {
        auto former = self.exchange_value(id, made);
        if (source == &self) said.custody(1)->take_back(std::move(former));
    }

    bool post(object_impl& at) { return run_post_set(at, id, value, old_for_hooks, &self, source); }
};

struct delete_property_row : property_row {
    const abstract_property* old = nullptr; // the message has it

    bool pre(object_impl& at) {
        return at.run<pre_prop_delete_semantic>(
            [&](pre_prop_delete_semantic& h) { return h.do_it(&at, id, &self); });
    }

    step test() {
        if (!self.defines_property(id)) return step::nothing_to_do;
        old = self.own_value(id);
        return step::go_on;
    }

    std::unique_ptr<message_impl> message() {
        return std::make_unique<property_delete_message_impl>(&self, nullptr, id);
    }

    void change(message_impl& said) { said.custody(0)->take_back(self.take_value(id)); }

    bool post(object_impl& at) { return run_post_delete(at, id, old, &self); }
};

} // namespace

bool object_impl::set_property(u32 id, const abstract_property& value) {
    return mutate(set_property_row{{*this, id}, value});
}

bool object_impl::delete_property(u32 id) { return mutate(delete_property_row{{*this, id}}); }

} // namespace kelm
