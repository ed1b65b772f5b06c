// Looking a property up with the hooks of reads.
// Looking inherited values up without hooks is inherit_edits.cpp.
#include "object/effective_value.h"

#include "object/inheritor_walk.h"
#include "object/object_impl.h"

#include <kelm/meta_model.h>

#include <cmath>
#include <utility>

namespace kelm {

namespace {

/// \returns whether a clone of the value would equal it, so that a hook that does nothing can be left out.
///          References that are null, numbers that are none, and kinds of an application's own are not taken for it.
bool equals_its_clone(const abstract_property& value) {
    const abstract_property* const box = &value;
    if (exact_cast<property<std::string>>(box) || exact_cast<property<int>>(box) ||
        exact_cast<property<bool>>(box) || exact_cast<property<short>>(box) ||
        exact_cast<property<long>>(box) || exact_cast<property<long long>>(box))
        return true;
    if (const auto* const reference = exact_cast<property<object*>>(box)) return reference->value != nullptr;
    const auto* const real = exact_cast<property<double>>(box);
    return real && std::isfinite(real->value);
}

/// \returns whether the hooks behind reads would leave things as they are: there are none, or only the library's own,
///          which supplies defaults of user-defined properties where there is no value
bool reads_plainly(const semantic_table* table, const abstract_property* value, u32 id) {
    if (!table || !table->of<post_prop_get_semantic>()) return true;
    if (!table->reads_are_plain()) return false;
    return value ? equals_its_clone(*value) : id < property_id::first_user_defined;
}

/// What hooks have made of a clone.  Owns a replacement; the clone itself is owned elsewhere.
struct hooked_value {
    abstract_property* const clone;
    abstract_property* now;

    ~hooked_value() {
        if (now != clone) delete now;
    }
    /// \returns the value; its owner is whoever owned it, for the clone, and the caller, for a replacement
    abstract_property* hand_over() { return std::exchange(now, clone); }
    void become(abstract_property* next) {
        if (next == now) return;
        if (now != clone) delete now;
        now = next;
    }
};

/// Runs the hooks behind a read on what it has found so far.  \returns false when one refused: there is no value
bool run_post_get(const object_impl& at, u32 id, effective_value& found) {
    if (reads_plainly(at.semantics(), found.value, id)) return true;
    std::unique_ptr<abstract_property> copy = clone(found.value);
    hooked_value supplied{copy.get(), copy.get()};
    const bool passed = ask_hooks<post_prop_get_semantic>(at.semantics(), [&](post_prop_get_semantic& h) {
        abstract_property* next = supplied.now;
        const bool answer = h.do_it(at.face_for_hooks(), id, next);
        supplied.become(next);
        return answer;
    });
    if (!passed) {
        found = {};
        return false;
    }
    if (!supplied.now || (supplied.now == copy.get() && copy->equals(found.value))) return true;
    found.source = nullptr;
    found.temporary.reset(supplied.hand_over());
    if (found.temporary.get() == copy.get()) (void)copy.release();
    found.value = found.temporary.get();
    return true;
}

bool run_pre_get(const object_impl& at, u32 id) {
    return ask_hooks<pre_prop_get_semantic>(
        at.semantics(), [&](pre_prop_get_semantic& h) { return h.do_it(at.face_for_hooks(), id); });
}

/// One object that the lookup is at, and the base that it is to ask next.
struct lookup_step {
    const object_impl* at;
    std::size_t next_base;
    bool asks_bases;
};

/// Begins the lookup at an object.  \returns false when a hook ended it with no value
bool begin_lookup(const object_impl& at, u32 id, effective_value& found, bool& asks_bases) {
    asks_bases = false;
    if (!run_pre_get(at, id)) return false;
    if (const abstract_property* const own = at.values().find(id)) {
        found.value = own;
        found.source = const_cast<object_impl*>(&at);
        return true;
    }
    asks_bases = at.bases() && !at.is_property_not_inheritable(id) && may_pass(at, id);
    return true;
}

/// The lookup through bases, depth first, with an explicit stack: chains of bases can be as long as a model is big.
effective_value find_along_bases(const object_impl& of, u32 id) {
    std::vector<lookup_step> steps{{&of, 0, true}};
    effective_value found;
    while (true) {
        lookup_step& top = steps.back();
        const object_impl* base = nullptr;
        while (top.asks_bases && !found.value && top.at->bases() && top.next_base < top.at->bases()->size()) {
            const object_impl* const candidate = (*top.at->bases())[top.next_base++];
            if (!may_be_asked(*top.at, *candidate, id)) continue;
            base = candidate;
            break;
        }
        if (base) {
            bool asks = false;
            if (begin_lookup(*base, id, found, asks)) steps.push_back({base, 0, asks});
            continue;
        }
        run_post_get(*top.at, id, found);
        steps.pop_back();
        if (steps.empty()) return found;
    }
}

} // namespace

std::unique_ptr<abstract_property> effective_value::take() {
    return temporary ? std::move(temporary) : clone(value);
}

const abstract_property* plainly_stored_value(const object_impl& of, u32 id) {
    if (of.has_hooks<pre_prop_get_semantic>()) return nullptr;
    const abstract_property* const own = of.values().find(id);
    return own && reads_plainly(of.semantics(), own, id) ? own : nullptr;
}

effective_value find_effective_value(const object_impl& of, u32 id) {
    effective_value found;
    bool asks_bases = false;
    if (!begin_lookup(of, id, found, asks_bases)) return found;
    if (asks_bases) return find_along_bases(of, id);
    run_post_get(of, id, found);
    return found;
}

} // namespace kelm
