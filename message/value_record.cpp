// The stored form of one value of a message, in both directions.
// Filling what fixups and references wait for is the business of whoever reads the whole log.
#include "message/value_record.h"

#include "framework/data_types.h"
#include "framework/stored_value.h"
#include "framework/values.h"
#include "util/bytes.h"

#include <kelm/meta_model.h>
#include <kelm/model.h>

#include <algorithm>
#include <istream>
#include <iterator>
#include <ostream>

namespace kelm {

namespace {

void write_owned(const abstract_property& value, std::ostream& out) {
    if (data_types::stream_code_of(&value) == data_type::none) return out.setstate(std::ios_base::failbit);
    put_bool(out, true);
    put_bool(out, true);
    put_stored_value(out, &value);
}

void write_shared(const abstract_property* value, const value_position_map& positions, std::ostream& out) {
    put_bool(out, true);
    put_bool(out, false);
    const auto found = positions.find(value);
    if (found == positions.end()) return put_u32(out, npos32);
    put_u32(out, found->second.msg_index);
    put_u32(out, found->second.prop_index);
    put_u32(out, found->second.prop_sub_index);
}

std::unique_ptr<abstract_property> read_owned(kelm::object* source, read_context& from) {
    auto& records = from.references.references;
    const std::size_t first = records.size();
    auto value = get_stored_value(from.in, records, source);
    for (std::size_t i = first; i != records.size(); ++i) records[i].from_message = true;
    return value;
}

/// \returns what the object itself holds at the place; null when it holds nothing there
abstract_property* held_by_source(const value_place& where) {
    abstract_property* const value =
        where.source ? edit_of(where.source)->own_value(where.property_id) : nullptr;
    if (!value || (where.sub_index == npos32 && !where.is_element)) return value;
    return where.sub_index == npos32 ? nullptr : resolve_value(value, static_cast<int>(where.sub_index));
}

void read_shared(value_custody& out, message& self, const value_place& where, read_context& from) {
    value_position position{.msg_index = get_u32(from.in)};
    if (!from.in) return;
    if (position.msg_index == npos32) {
        if (abstract_property* const found = held_by_source(where)) out.borrow(found);
        return;
    }
    position.prop_index = get_u32(from.in);
    position.prop_sub_index = get_u32(from.in);
    if (from.in) from.fixups[{&self, where.index}] = position;
}

} // namespace

format_version version_of(kelm::model& of) {
    return {static_cast<int>(of.meta_model()->version()), static_cast<int>(of.meta_model()->minor_version())};
}

void write_message_value(const abstract_property* value, bool owned, write_context& to) {
    if (!value)
        put_bool(to.out, false);
    else if (owned)
        write_owned(*value, to.out);
    else
        write_shared(value, to.positions, to.out);
}

void read_message_value(value_custody& out, message& self, const value_place& where, read_context& from) {
    if (!get_bool(from.in)) return;
    const bool owned = get_bool(from.in);
    if (!from.in) return;
    if (!owned) return read_shared(out, self, where, from);
    if (auto value = read_owned(where.source, from)) out.take_back(std::move(value));
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

u32 own_element_position(kelm::object* holder, u32 id, const abstract_property* value) {
    if (!holder || !value) return npos32;
    const auto* const list = exact_cast<vector_property>(edit_of(holder)->own_value(id));
    if (!list) return npos32;
    const auto at =
        std::ranges::find_if(list->elements, [value](const auto* each) { return value->equals(each); });
    return at == list->elements.end() ? npos32 : static_cast<u32>(std::distance(list->elements.begin(), at));
}

} // namespace kelm
