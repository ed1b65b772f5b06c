// What the stored form of one value of a message leans on: look-ups, and what values a log knows.
// Filling what fixups and references wait for is the business of whoever reads the whole log.
#include "message/value_record.h"

#include "framework/data_types.h"
#include "framework/values.h"
#include "message/element_index.h"

#include <kelm/meta_model.h>
#include <kelm/model.h>

#include <algorithm>

namespace kelm {

format_version version_of(kelm::model& of) {
    return {static_cast<int>(of.meta_model()->version()), static_cast<int>(of.meta_model()->minor_version())};
}

kelm::object* read_context::object(u32 id) const {
    return id != 0 && model ? model->find_object(id) : nullptr;
}

kelm::meta_object* read_context::meta_type(u32 id) const {
    return id != 0 && model ? model->meta_model()->find_meta_object(id) : nullptr;
}

bool is_storable(const abstract_property& value) {
    return data_types::stream_code_of(&value) != data_type::none;
}

abstract_property* held_by_source(const value_place& where) {
    abstract_property* const value =
        where.source ? edit_of(where.source)->own_value(where.property_id) : nullptr;
    if (!value || (where.sub_index == npos32 && !where.is_element)) return value;
    return where.sub_index == npos32 ? nullptr : resolve_value(value, static_cast<int>(where.sub_index));
}

void mark_as_of_message(io_reference_manager& references, std::size_t first) {
    for (std::size_t i = first; i != references.references.size(); ++i)
        references.references[i].from_message = true;
}

message* find_newest_begin(u32 id, const read_context& from) {
    if (const auto* const known = from.references.newest_begins) {
        const auto found = known->find(id);
        return found == known->end() ? nullptr : found->second;
    }
    const auto found = std::find_if(from.earlier.rbegin(), from.earlier.rend(), [id](message* each) {
        const auto* const begin = message_cast<tran_begin_message>(each);
        return begin && begin->id() == id;
    });
    return found == from.earlier.rend() ? nullptr : *found;
}

void register_value(const abstract_property* value, value_position_map& positions, u32 msg_index,
                    u32 prop_index) {
    if (!value) return;
    positions.try_emplace(value, value_position{msg_index, prop_index, npos32});
    const auto* const list = exact_cast<vector_property>(value);
    if (!list) return;
    for (std::size_t i = 0; i != list->elements.size(); ++i)
        positions.try_emplace(list->elements[i], value_position{msg_index, prop_index, static_cast<u32>(i)});
}

abstract_property* resolve_value(abstract_property* value, int sub_index) {
    if (sub_index == -1) return value;
    const auto* const list = exact_cast<vector_property>(value);
    if (!list || sub_index < 0 || static_cast<std::size_t>(sub_index) >= list->elements.size())
        return nullptr;
    return list->elements[static_cast<std::size_t>(sub_index)];
}

u32 own_element_position(kelm::object* holder, u32 id, const abstract_property* value, element_index* index) {
    if (!holder || !value) return npos32;
    const auto* const list = exact_cast<vector_property>(edit_of(holder)->own_value(id));
    if (!list) return npos32;
    return index ? index->position(*list, *value) : element_position(*list, *value);
}

} // namespace kelm
