// Registering and finding attributes.
// What an unset attribute reads as is for each reader to say: a default is never a fallback here.
#include "meta/meta_attribute_table.h"

#include <utility>

namespace kelm {

void meta_attribute_table::add(u32 id, const std::string& name,
                               std::unique_ptr<abstract_property> default_value, bool inheritable) {
    auto row = std::make_unique<meta_attribute_impl>(id, name, std::move(default_value), inheritable);
    auto& place = rows_[id];
    if (place) replaced_.push_back(std::move(place));
    place = std::move(row);
}

meta_attribute* meta_attribute_table::find(u32 id) const {
    const auto found = rows_.find(id);
    return found == rows_.end() ? nullptr : found->second.get();
}

void meta_attribute_table::ids(std::vector<u32>& out) const {
    out.reserve(out.size() + rows_.size());
    for (const auto& [id, row] : rows_) out.push_back(id);
}

bool meta_attribute_table::is_inheritable(u32 id) const {
    const auto found = rows_.find(id);
    return found != rows_.end() && found->second->is_inheritable();
}

meta_attribute_table& meta_attributes() {
    static auto* const table = new meta_attribute_table;
    return *table;
}

} // namespace kelm
