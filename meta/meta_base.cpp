// Attributes and bases of meta things.
// Their stored form is in meta_record.cpp.
#include "meta/meta_base.h"

#include "framework/values.h"
#include "meta/meta_attribute_table.h"

#include <kelm/meta_model.h>

#include <algorithm>
#include <utility>

namespace kelm {

// Nothing is allocated for the end, and so it cannot fail.
meta_base::~meta_base() {
    while (observers_ && !observers_->empty()) {
        observer* const who = observers_->front();
        if (auto* const derived = dynamic_cast<meta_base*>(who)) {
            std::erase(derived->bases_, this);
            detach(who);
            derived->update(this, nullptr); // what it keeps of this base is no longer good
        } else {
            detach(who);
        }
    }
    release_bases();
}

void meta_base::release_bases() {
    bases_.clear();
    leave_subjects(*this);
}

void meta_base::leave_subjects(observer_impl& who) {
    for (std::size_t i = who.subjects_ ? who.subjects_->size() : 0; i-- != 0;)
        (*who.subjects_)[i]->detach(&who);
}

std::string meta_base::name() const { return text_of(attribute_id::name, "No Name!"); }

std::string meta_base::definition() const { return text_of(attribute_id::definition, ""); }

value_ptr meta_base::attribute_value(u32 attribute) const { return shared_clone(find_attribute(attribute)); }

void meta_base::set_attribute_value(u32 attribute, const abstract_property& value) {
    auto copy = clone(&value); // before the old value goes: it may be the same
    attributes_[attribute] = std::move(copy);
}

void meta_base::set_attribute_default(u32 attribute) {
    const meta_attribute* const row = meta_attributes().find(attribute);
    if (row && row->default_value()) set_attribute_value(attribute, *row->default_value());
}

bool meta_base::remove_attribute(u32 attribute) { return attributes_.erase(attribute) != 0; }

value_map meta_base::attributes() const {
    std::vector<u32> ids;
    meta_attributes().ids(ids);
    value_map all;
    for (const u32 attribute : ids)
        if (value_ptr value = attribute_value(attribute))
            all.emplace_hint(all.end(), attribute, std::move(value));
    return all;
}

const abstract_property* meta_base::find_attribute(u32 attribute) const {
    visited been;
    return search(attribute, been);
}

const abstract_property* meta_base::search(u32 attribute, visited& been) const {
    const auto own = attributes_.find(attribute);
    if (own != attributes_.end()) return own->second.get();
    if (bases_.empty() || !meta_attributes().is_inheritable(attribute)) return nullptr;
    // Whatever was asked before had no value, or the search would have ended there.
    if (been && !been->insert(this).second) return nullptr;
    if (!been && bases_.size() > 1) been.emplace();
    for (const meta_base* base : bases_)
        if (const abstract_property* const value = base->search(attribute, been)) return value;
    return nullptr;
}

void meta_base::add_base(meta_base* base) {
    if (!base || base == this || base->derives_from(*this)) return;
    bases_.reserve(bases_.size() + 1);
    base->attach(this); // once, however often it is a base
    bases_.push_back(base);
}

void meta_base::remove_base(meta_base* base) {
    const auto found = std::ranges::find(bases_, base);
    if (found == bases_.end()) return;
    bases_.erase(found);
    if (std::ranges::find(bases_, base) == bases_.end()) base->detach(this);
}

bool meta_base::derives_from(const meta_base& other) const {
    std::vector<const meta_base*> seen(bases_.begin(), bases_.end());
    for (std::size_t at = 0; at != seen.size(); ++at) {
        if (seen[at] == &other) return true;
        for (const meta_base* base : seen[at]->bases_)
            if (std::ranges::find(seen, base) == seen.end()) seen.push_back(base);
    }
    return false;
}

void meta_base::describe(const std::string& name, const std::string& definition) {
    set_text(attribute_id::name, name);
    if (!definition.empty()) set_text(attribute_id::definition, definition);
}

void meta_base::set_text(u32 attribute, const std::string& text) {
    set_attribute_value(attribute, property<std::string>(text));
}

std::string meta_base::text_of(u32 attribute, const char* fallback) const {
    const abstract_property* const value = find_attribute(attribute);
    return value ? value->to_string() : std::string(fallback);
}

} // namespace kelm
