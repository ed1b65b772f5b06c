// The dry comparison in front of a change of the list of bases.
// It changes nothing itself; the hooks that it asks may.
#include "object/inherit_preview.h"

#include "meta/meta_object_base.h"
#include "object/base_search.h"
#include "object/inheritor_walk.h"

#include <algorithm>
#include <vector>

namespace kelm {

namespace {

/// What the bases of an object give for one property.
class offers {
public:
    struct offer {
        std::size_t position = npos; ///< of the base that gives
        const object_impl* source = nullptr;
    };

    offers(const object_impl& of, u32 id) : of_(of), id_(id) {}

    /// \returns the first in [from, to) of the list without `left_out`; no source when nobody there gives a value.
    ///          The position is that in the whole list.
    offer first(std::size_t from = 0, std::size_t to = npos, const object_impl* left_out = nullptr) {
        const auto* const list = of_.bases();
        std::size_t index = 0; // without what is left out
        for (std::size_t i = 0; list && i != list->size() && index < to; ++i) {
            if ((*list)[i] == left_out) continue;
            if (index++ < from) continue;
            if (const object_impl* const source = by(*(*list)[i])) return {i, source};
        }
        return {};
    }
    const object_impl* by(const object_impl& base) { return search_.source_by(of_, base, id_); }

private:
    const object_impl& of_;
    u32 id_;
    base_search search_;
};

foreseen_value set_from(const object_impl* source) {
    return source ? foreseen_value{foreseen_value::fate::is_set, source} : foreseen_value{};
}

/// The giver of the present value leaves the list.
foreseen_value falls_back(offers& bases, const object_impl& leaving, const object_impl* present) {
    const object_impl* const next = bases.first(0, npos, &leaving).source;
    return next ? set_from(next) : foreseen_value{foreseen_value::fate::goes, present};
}

foreseen_value foresee_replace(const object_impl& of, offers& bases, const offers::offer& now,
                               const object_impl& base, std::size_t at) {
    const bool is_behind = now.source && now.position < at;
    if (is_behind) return {};
    const object_impl* const source = bases.by(base);
    if (source || now.position != at) return set_from(source);
    return falls_back(bases, *(*of.bases())[at], now.source);
}

foreseen_value foresee_move(const object_impl& of, offers& bases, const offers::offer& now,
                            const object_impl& base, std::size_t to) {
    const std::size_t from = of.inherits_from_position(const_cast<object_impl*>(&base));
    if (from == npos || !now.source) return {};
    if (now.position == from)
        return to > from ? set_from(bases.first(from, to, &base).source) : foreseen_value{};
    // Kept: the place of the present giver is not looked at, so that hooks are asked also when it stays in front.
    return to < from ? set_from(bases.by(base)) : foreseen_value{};
}

/// The properties of the type.  A copy, since hooks may change the type.
std::vector<u32> property_ids_of(const object_impl& of) {
    std::vector<u32> out;
    if (const auto* const type = static_cast<const meta_object_base*>(of.meta()))
        for (const meta_property* const each : type->properties_ref()) out.push_back(each->id());
    return out;
}

bool ask(object_impl& of, u32 id, const foreseen_value& prospect) {
    object* const origin = prospect.source->face_for_hooks();
    const auto everywhere = [&](auto&& hooks) {
        return hooks(of) && for_each_seeing_inheritor(of, id, prospect.source, hooks);
    };
    if (prospect.what == foreseen_value::fate::goes)
        return everywhere([&](object_impl& at) {
            return at.run<pre_prop_delete_semantic>(
                [&](pre_prop_delete_semantic& h) { return h.do_it(&at, id, origin); });
        });
    const abstract_property* const value = prospect.source->values().find(id);
    return !value || everywhere([&](object_impl& at) {
        return at.run<pre_prop_set_semantic>(
            [&](pre_prop_set_semantic& h) { return h.do_it(&at, id, *value, origin); });
    });
}

} // namespace

foreseen_value list_change::foresee(const object_impl& of, u32 id) const {
    if (!base_) return {};
    offers bases{of, id};
    const offers::offer now = bases.first();
    switch (kind_) {
    case kind::add: return now.source ? foreseen_value{} : set_from(bases.by(*base_));
    case kind::insert:
        // Kept: a value from the very base that will be pushed back is not asked about.
        return now.source && now.position <= at_ ? foreseen_value{} : set_from(bases.by(*base_));
    case kind::cancel:
        if (!now.source || (*of.bases())[now.position] != base_) return {};
        return falls_back(bases, *base_, now.source);
    case kind::replace: return foresee_replace(of, bases, now, *base_, at_);
    case kind::move: return foresee_move(of, bases, now, *base_, at_);
    }
    return {};
}

bool ask_about_values(object_impl& of, const list_change& change) {
    if (!of.inheritor_links() && !of.has_hooks<pre_prop_set_semantic>() &&
        !of.has_hooks<pre_prop_delete_semantic>())
        return true; // nobody to ask
    return std::ranges::all_of(property_ids_of(of), [&](u32 id) {
        if (!inherits_values_of(of, id)) return true;
        const foreseen_value prospect = change.foresee(of, id);
        return prospect.what == foreseen_value::fate::stays || ask(of, id, prospect);
    });
}

} // namespace kelm
