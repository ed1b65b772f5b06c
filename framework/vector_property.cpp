// The kind that is a list of values of any kind.
// Changing an element of an object's list, with hooks and messages, is the business of objects.
#include "framework/data_types.h"
#include "framework/stored_value.h"
#include "framework/values.h"
#include "util/bytes.h"
#include "util/document_state.h"
#include "util/text.h"

#include <kelm/property.h>
#include <kelm/string_helpers.h>
#include <kelm/xml_helpers.h>

#include <algorithm>
#include <istream>
#include <ostream>
#include <unordered_set>

namespace kelm {

namespace {

void append(std::vector<abstract_property*>& elements, std::unique_ptr<abstract_property> element) {
    elements.push_back(element.get());
    static_cast<void>(element.release()); // the list has it now
}

void delete_all(std::vector<abstract_property*>& elements) {
    for (const abstract_property* element : elements) delete element;
    elements.clear();
}

} // namespace

vector_property::~vector_property() { delete_all(elements); }

owned<abstract_property*> vector_property::clone() const {
    auto copy = std::make_unique<vector_property>();
    copy->elements.reserve(elements.size());
    for (const abstract_property* element : elements) append(copy->elements, kelm::clone(element));
    return copy.release();
}

bool vector_property::equals(const abstract_property* other) const {
    const auto* const others = exact_cast<vector_property>(other);
    return others && std::ranges::equal(elements, others->elements,
                                        [](const auto* a, const auto* b) { return a && b && a->equals(b); });
}

void vector_property::merge(abstract_property* other) {
    auto* const others = exact_cast<vector_property>(other);
    if (!others || others == this) return;
    std::unordered_set<const abstract_property*> here(elements.begin(), elements.end());
    elements.reserve(elements.size() + others->elements.size());
    for (abstract_property* element : others->elements) {
        if (!here.insert(element).second) elements.erase(std::ranges::find(elements, element));
        elements.push_back(element);
    }
    others->elements.clear();
}

std::string vector_property::to_string() const {
    std::string out;
    to_string(out);
    return out;
}

void vector_property::to_string(std::string& out) const {
    // Filled on the side: an element's text may come from a hook that asks for this very text.
    std::string joined;
    std::string text;
    for (std::size_t i = 0; i != elements.size(); ++i) {
        if (i != 0) joined += ", ";
        if (!elements[i]) continue;
        elements[i]->to_string(text);
        joined += text;
    }
    out = std::move(joined);
}

void vector_property::from_string(const std::string& text) {
    // Kept: what was here is let go, not deleted.  Applications hold on to the elements of a list that they are
    // about to set from text.
    elements.clear();
    std::vector<std::string> pieces;
    std::vector<std::string> fields;
    string_to_vector(text, "[]", pieces);
    for (const std::string& piece : pieces) {
        if (string_to_vector(piece, "|", fields) != 2) continue;
        std::unique_ptr<abstract_property> element{
            data_types::create_value(static_cast<u32>(parse_int(fields[1])))};
        if (!element) continue;
        element->from_string(fields[0]);
        append(elements, std::move(element));
    }
}

void vector_property::write_xml(void* element, u32 id) const {
    const document_part part;
    const document_level level;
    if (document_pass::has_failed()) return;
    for (const abstract_property* each : elements)
        if (each) put_stored_value(add_xml_elem(element, "elem"), each, id);
}

void vector_property::read_xml(void* element, u32 id, std::vector<reference_record>& references,
                               object* holder) {
    delete_all(elements);
    const document_part part;
    const document_level level;
    std::vector<void*> children;
    get_child_elems_by_name(element, "elem", children);
    for (void* child : children) {
        if (document_pass::has_failed()) return;
        if (auto each = get_stored_value(child, id, references, holder)) append(elements, std::move(each));
    }
}

void vector_property::write(std::ostream& out) const {
    const nested_level level{out};
    if (!out) return;
    put_u32(out, static_cast<u32>(elements.size()));
    for (const abstract_property* element : elements) {
        put_stored_value(out, element);
        if (!out) return;
    }
}

void vector_property::read(std::istream& in, std::vector<reference_record>& references, object* holder) {
    delete_all(elements);
    const nested_level level{in};
    const u32 count = get_u32(in);
    for (u32 i = 0; i != count && in; ++i) {
        if (auto element = get_stored_value(in, references, holder)) append(elements, std::move(element));
    }
}

} // namespace kelm
