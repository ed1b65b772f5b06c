// Elements and attributes by the names that the library gives them.
// Nothing is added that the document does not say.
#include "document/document_gaps.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/property.h>
#include <kelm/xml_helpers.h>

#include <map>
#include <memory>
#include <vector>

namespace schema {

namespace {

using values = std::map<kelm::u32, std::unique_ptr<kelm::abstract_property>>;

std::vector<void*> children(void* of, const char* name) {
    std::vector<void*> found;
    kelm::get_child_elems_by_name(of, name, found);
    return found;
}

kelm::u32 id_of(void* element) {
    kelm::u32 id = 0;
    kelm::get_xml_att(element, "id", id);
    return id;
}

/// \returns null for a kind of value that is unknown
std::unique_ptr<kelm::abstract_property> read_value(void* att, kelm::u32 id) {
    unsigned kind = 0;
    kelm::get_xml_att(att, kind);
    std::unique_ptr<kelm::abstract_property> value(kelm::framework::instance().create_value(kind));
    std::vector<kelm::reference_record> references; // such a value has none
    if (value) value->read_xml(kelm::get_xml_elem(att, "value"), id, references, nullptr);
    return value;
}

/// What a property is like, by the ids of meta attributes.
values read_attributes(void* udp) {
    values found;
    for (void* att : children(kelm::get_xml_elem(udp, "atts"), "att"))
        if (auto value = read_value(att, id_of(att))) found[id_of(att)] = std::move(value);
    return found;
}

std::string text_of(const values& of, kelm::u32 id) {
    const auto found = of.find(id);
    return found == of.end() ? std::string() : found->second->to_string();
}

void add_property(kelm::model& into, kelm::u32 type, void* udp) {
    const values known = read_attributes(udp);
    kelm::meta_property* made = into.add_user_defined_property(
        type, text_of(known, kelm::attribute_id::name), kelm::data_type::string,
        text_of(known, kelm::attribute_id::definition), id_of(udp));
    if (!made) return;
    kelm::meta_object* of = into.meta_model()->find_meta_object(type);
    for (const auto& [id, value] : known) into.set_user_defined_property_attribute(of, made, id, *value);
}

void add_properties(void* root, kelm::model& into) {
    void* types = kelm::get_xml_elem(kelm::get_xml_elem(root, "meta_model"), "meta_objects");
    for (void* type : children(types, "meta_object"))
        for (void* udp : children(kelm::get_xml_elem(type, "udps"), "udp"))
            add_property(into, id_of(type), udp);
    into.clear_history(); // the document has its own
}

} // namespace

void fill_gaps(xml_document& from, kelm::model& into) {
    void* history = kelm::get_xml_elem(from.root(), "message_history_impl");
    if (void* deleted = kelm::get_xml_elem(history, "deleted_objs"))
        from.move_children(deleted, history, "deleted_obj");
    add_properties(from.root(), into);
}

} // namespace schema
