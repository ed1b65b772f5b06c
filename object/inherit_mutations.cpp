// Changing the list of bases: what is special about each change on the road of every change.
// Marks and refreshes of single properties are refresh_mutations.cpp.
#include "message/inherit_messages.h"
#include "object/base_search.h"
#include "object/inherit_changes.h"
#include "object/inherit_preview.h"
#include "object/mutation.h"
#include "object/value_hooks.h"

#include <algorithm>

namespace kelm {

namespace {

const object_impl* impl_or_null(object* what) { return what ? impl_of(what) : nullptr; }

/// \returns what becomes of a wish to inherit from `base`
step test_base(const object_impl& self, object* base) {
    if (!base || base == &self) return step::refuse;
    if (self.inherits_from(base, false)) return step::nothing_to_do;
    const object_impl& wanted = *impl_of(base);
    return !wanted.is_deleted() && self.may_inherit_from(wanted) ? step::go_on : step::refuse;
}

/// Hooks behind a change that brought other values along.  \returns false when one refused
bool run_hooks_behind(object_impl& self, const inherited_change& change) {
    const object_impl* const source = impl_or_null(change.is_loss ? change.before.source : change.now.source);
    const auto everywhere = [&](auto&& hooks) {
        return hooks(self) && for_each_seeing_inheritor(self, change.id(), source, hooks);
    };
    object* const origin = source ? source->face_for_hooks() : nullptr;
    if (change.is_loss)
        return everywhere(
            [&](object_impl& at) { return run_post_delete(at, change.id(), change.before.value, origin); });
    return !change.now.value || everywhere([&](object_impl& at) {
        return run_post_set(at, change.id(), *change.now.value, change.before.value, origin,
                            change.before.source);
    });
}

/// What the changes of the list share: hooks are asked about values before, and what has changed is told behind.
struct list_row : structure_row {
    inherited_values before{};   // as they were just before the change
    inherited_changes changes{}; // what it brought

    bool stops_when_deleted() const { return true; }

protected:
    void note_values() { before = self.inherited_now(); }
    bool tell_changes(bool with_losses) {
        changes = compare_inherited(before, self.inherited_now(), with_losses);
        return tell_inherited(self, changes, true);
    }
    bool run_value_hooks() {
        return std::ranges::all_of(
            changes, [&](const inherited_change& each) { return run_hooks_behind(self, each); });
    }
};

struct add_base_row : list_row {
    object* base;
    std::size_t position = 0;
    bool is_repeated = false;

    bool pre(object_impl& at) {
        return at.run<pre_add_inherits_from_semantic>([&](pre_add_inherits_from_semantic& h) {
            return h.do_it(&at, base);
        }) && ask_about_values(self, list_change::add(impl_or_null(base)));
    }
    step test() {
        note_values();
        const step tested = test_base(self, base);
        if (tested == step::refuse) return step::refuse;
        // Kept: a base that is in the list stays where it is, and is told and recorded as one that came.
        is_repeated = tested == step::nothing_to_do;
        position = self.bases() ? self.bases()->size() : 0;
        if (is_repeated) --position;
        return step::go_on;
    }
    void change(message_impl&) {
        if (!is_repeated) self.insert_base(*base, position);
    }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<inherits_add_message_impl>(&self, base, position, is_repeated);
    }
    bool settle() { return tell_changes(false); }
    bool post(object_impl& at) {
        return at.run<post_add_inherits_from_semantic>([&](post_add_inherits_from_semantic& h) {
            return h.do_it(&at, base);
        }) && run_value_hooks();
    }
};

struct insert_base_row : list_row {
    object* base;
    std::size_t position;

    bool pre(object_impl& at) {
        return at.run<pre_insert_inherits_from_semantic>([&](pre_insert_inherits_from_semantic& h) {
            return h.do_it(&at, base, position);
        }) && ask_about_values(self, list_change::insert(impl_of(base), position));
    }
    step test() {
        note_values();
        if (const step tested = test_base(self, base); tested != step::go_on)
            return tested; // hooks may have linked
        if (position > (self.bases() ? self.bases()->size() : 0)) return step::refuse;
        return step::go_on;
    }
    void change(message_impl&) { self.insert_base(*base, position); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<inherits_insert_message_impl>(&self, base, position);
    }
    bool settle() { return tell_changes(false); }
    bool post(object_impl& at) {
        return at.run<post_insert_inherits_from_semantic>([&](post_insert_inherits_from_semantic& h) {
            return h.do_it(&at, base, position);
        }) && run_value_hooks();
    }
};

struct cancel_base_row : list_row {
    object* base;
    std::size_t position = 0;

    bool pre(object_impl& at) {
        return at.run<pre_cancel_inherits_from_semantic>([&](pre_cancel_inherits_from_semantic& h) {
            return h.do_it(&at, base);
        }) && ask_about_values(self, list_change::cancel(impl_or_null(base)));
    }
    step test() {
        note_values();
        position = self.inherits_from_position(base);
        return position == npos ? step::nothing_to_do : step::go_on;
    }
    void change(message_impl&) { self.take_base(*base, position); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<inherits_cancel_message_impl>(&self, base, position);
    }
    bool settle() { return tell_changes(true); }
    bool post(object_impl& at) {
        return at.run<post_cancel_inherits_from_semantic>([&](post_cancel_inherits_from_semantic& h) {
            return h.do_it(&at, base);
        }) && run_value_hooks();
    }
};

struct replace_base_row : list_row {
    object* base;
    object* former;
    std::size_t position;

    bool pre(object_impl& at) {
        return at.run<pre_replace_inherits_from_semantic>([&](pre_replace_inherits_from_semantic& h) {
            return h.do_it(&at, base, former);
        }) && ask_about_values(self, list_change::replace(impl_of(base), position));
    }
    step test() {
        note_values();
        if (const step tested = test_base(self, base); tested != step::go_on)
            return tested; // hooks may have linked
        if (self.inherits_from_at(position) != former) return step::refuse;
        return step::go_on;
    }
    void change(message_impl&) { self.exchange_base(*base, *former, position); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<inherits_replace_message_impl>(&self, base, former, position);
    }
    bool settle() { return tell_changes(true); }
    bool post(object_impl& at) {
        return at.run<post_replace_inherits_from_semantic>([&](post_replace_inherits_from_semantic& h) {
            return h.do_it(&at, base, former);
        }) && run_value_hooks();
    }
};

struct order_base_row : list_row {
    object* base;
    std::size_t position;
    std::size_t old_position = npos;

    bool pre(object_impl& at) {
        return at.run<pre_set_inherits_from_order_semantic>([&](pre_set_inherits_from_order_semantic& h) {
            return h.do_it(&at, base, position);
        }) && ask_about_values(self, list_change::move(impl_of(base), position));
    }
    step test() {
        note_values();
        const std::size_t size = self.bases() ? self.bases()->size() : 0;
        if (position <= size) old_position = self.inherits_from_position(base);
        return old_position == npos ? step::refuse : step::go_on;
    }
    void change(message_impl&) { self.move_base(*base, place()); }
    std::unique_ptr<message_impl> message() {
        return std::make_unique<inherits_from_order_message_impl>(&self, base, place(), old_position);
    }
    bool settle() { return tell_changes(false); }
    bool post(object_impl& at) {
        return at.run<post_set_inherits_from_order_semantic>([&](post_set_inherits_from_order_semantic& h) {
            return h.do_it(&at, base, position, old_position);
        }) && run_value_hooks();
    }

private:
    /// In the list without the base, whose end is one nearer than that of the whole list.
    std::size_t place() const { return std::min(position, self.bases()->size() - 1); }
};

} // namespace

bool object_impl::add_inherits_from(object* base) { return mutate(add_base_row{{{*this}}, base}); }

bool object_impl::insert_inherits_from(object* base, std::size_t position) {
    take_back_interrupted(*this);
    const step tested = test_base(*this, base);
    if (tested != step::go_on) return tested == step::nothing_to_do || refuse();
    return mutate(insert_base_row{{{*this}}, base, position});
}

bool object_impl::cancel_inherits_from(object* base) { return mutate(cancel_base_row{{{*this}}, base}); }

bool object_impl::cancel_all_inherits_from() {
    take_back_interrupted(*this);
    if (!links().inherits_from) return true;
    const std::vector<object_impl*> listed = *links().inherits_from;
    for (auto each = listed.rbegin(); each != listed.rend(); ++each)
        if (inherits_from(*each, false) && !cancel_inherits_from(*each)) return false;
    return true;
}

bool object_impl::replace_inherits_from_at(object* base, std::size_t position) {
    take_back_interrupted(*this);
    const step tested = test_base(*this, base);
    if (tested != step::go_on) return tested == step::nothing_to_do || refuse();
    object* const former = inherits_from_at(position);
    return former ? mutate(replace_base_row{{{*this}}, base, former, position}) : refuse();
}

bool object_impl::replace_inherits_from(object* new_base, object* old_base) {
    take_back_interrupted(*this);
    const std::size_t position = inherits_from_position(old_base);
    return position != npos && replace_inherits_from_at(new_base, position);
}

bool object_impl::set_inherits_from_position(object* base, std::size_t position) {
    take_back_interrupted(*this);
    if (test_base(*this, base) == step::refuse) return refuse();
    return mutate(order_base_row{{{*this}}, base, position});
}

} // namespace kelm
