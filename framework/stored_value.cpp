// Values with the code of their kind.
// Which kinds there are is told by data_types.
#include "framework/stored_value.h"

#include "framework/data_types.h"
#include "util/bytes.h"
#include "util/document_state.h"
#include "util/xml_child_value.h"

#include <istream>
#include <ostream>

namespace kelm {

void put_stored_value(std::ostream& out, const abstract_property* value) {
    const u32 code = data_types::stream_code_of(value);
    if (code == data_type::none) return out.setstate(std::ios_base::failbit);
    put_u32(out, code);
    value->write(out);
}

void put_stored_value(void* element, const abstract_property* value, u32 id) {
    const u32 code = data_types::stream_code_of(value);
    if (code == data_type::none) return document_pass::fail();
    add_xml_att(element, code);
    add_child_value(element, *value, id);
}

std::unique_ptr<abstract_property> get_stored_value(std::istream& in,
                                                    std::vector<reference_record>& references,
                                                    object* holder) {
    const u32 code = get_u32(in);
    std::unique_ptr<abstract_property> value{in ? data_types::create_value(code) : nullptr};
    if (!value) {
        in.setstate(std::ios_base::failbit);
        return nullptr;
    }
    const std::size_t first = references.size();
    value->read(in, references, holder);
    if (in) return value;
    // The records point into the box, which goes.
    references.erase(references.begin() + static_cast<std::ptrdiff_t>(first), references.end());
    return nullptr;
}

std::unique_ptr<abstract_property> get_stored_value(void* element, u32 id,
                                                    std::vector<reference_record>& references,
                                                    object* holder) {
    u32 code = data_type::none;
    get_xml_att(element, code);
    std::unique_ptr<abstract_property> value{data_types::create_value(code)};
    const bool whole = value && read_child_value(element, *value, id, references, holder);
    return whole ? std::move(value) : nullptr;
}

} // namespace kelm
