// Reading the state at the start of a stretch: in what a detail knows, then along the bases of that time.
// Present values are looked up by object/effective_value.
#include "delta/delta_impl.h"
#include "object/inheritor_walk.h"
#include "object/model_impl.h"

#include <kelm/meta_model.h>
#include <kelm/object_helpers.h>

#include <algorithm>
#include <unordered_set>

namespace kelm {

namespace {

/// A detail that the look-up is at, and the base that it is to ask next.
struct lookup_level {
    const detail_base_original_properties_impl* at;
    std::size_t next_base = 0;
};

std::string element_text(const delta_impl& in, const abstract_property* element) {
    if (!element) return "NULL";
    if (const auto* const reference = exact_cast<property<object*>>(element))
        return in.original_object_name(reference->value);
    return element->to_string();
}

std::string text_of(const delta_impl& in, const abstract_property* value) {
    const auto* const list = exact_cast<vector_property>(value);
    if (!value || !list) return value ? element_text(in, value) : std::string{};
    std::string out;
    out.reserve(list->elements.size() * 10);
    for (std::size_t i = 0; i != list->elements.size(); ++i) {
        if (i != 0) out += ",";
        out += element_text(in, list->elements[i]);
    }
    return out;
}

} // namespace

const abstract_property* detail_base_original_properties_impl::known_value(u32 id) const {
    const auto at = original_properties_.find(id);
    return at == original_properties_.end() ? nullptr : at->second;
}

bool detail_base_original_properties_impl::could_inherit(u32 id) const {
    return !original_inherits_.empty() &&
           std::ranges::find(original_not_inheritable_, id) == original_not_inheritable_.end() &&
           may_pass(about(), id);
}

effective_value detail_base_original_properties_impl::original_value(u32 id) const {
    if (const abstract_property* const known = known_value(id)) return {known, nullptr, nullptr};
    if (!could_inherit(id)) return {};
    // With a stack of its own, since lines of bases may be as long as a model is big.  Nothing is asked twice: bases may
    // be reached in many ways, and what a bad log makes of those of the start may lead in a circle.
    std::vector<lookup_level> levels{{this}};
    std::unordered_set<const detail_impl*> asked{this};
    while (!levels.empty()) {
        lookup_level& top = levels.back();
        if (top.next_base == top.at->original_inherits().size()) {
            levels.pop_back();
            continue;
        }
        const object_impl& base = *impl_of(top.at->original_inherits()[top.next_base++]);
        if (!may_be_asked(top.at->about(), base, id)) continue;
        const detail_base_original_properties_impl* const before = in().state_before(base);
        if (!before) {
            if (effective_value found = find_effective_value(base, id); found.value) return found;
        } else if (const abstract_property* const known = before->known_value(id))
            return {known, nullptr, nullptr};
        else if (before->could_inherit(id) && asked.insert(before).second)
            levels.push_back({before});
    }
    return {};
}

bool detail_base_original_properties_impl::had_property(u32 id) const {
    return original_value(id).value != nullptr;
}

value_ptr detail_base_original_properties_impl::original_property(
    u32 id, original_properties_semantics* translate) const {
    std::unique_ptr<abstract_property> value = original_value(id).take();
    if (!translate) return share(std::move(value));
    auto* const self = const_cast<detail_base_original_properties_impl*>(this);
    abstract_property* const used = translate->do_it(self, id, value.get());
    if (used == value.get()) return share(std::move(value));
    return share(std::unique_ptr<abstract_property>{used});
}

std::string detail_base_original_properties_impl::original_property_as_string(
    u32 id, original_properties_as_string_semantics* translate) const {
    effective_value found = original_value(id);
    std::string text = text_of(in(), found.value);
    if (!translate) return text;
    auto* const self = const_cast<detail_base_original_properties_impl*>(this);
    std::string result;
    return translate->do_it(result, self, id, share(found.take()), text);
}

std::string detail_base_original_properties_impl::original_name() const {
    const effective_value found = original_value(property_id::name);
    return found.value ? found.value->to_string() : "<unknown name>";
}

detail_base_original_properties_impl* delta_impl::state_before(const object& of) const {
    if (auto* const gone = find(deleted_by_id, of)) return gone;
    return find(modified_by_id, of);
}

std::string delta_impl::original_object_name(const object* of) const {
    if (!of) return "NULL";
    const auto* const before = of->model() == &model_ ? state_before(*of) : nullptr;
    return before ? before->original_name() : fast_unsafe_object_name(of);
}

void delete_delta(delta* which) { delete which; }

} // namespace kelm
