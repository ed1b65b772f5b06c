// The four forms of fields, over bytes and over the helpers of documents.
// Lists of records, and what stands in them, are the business of who opens them.
#include "framework/field_archives.h"

#include "framework/stored_value.h"
#include "util/bytes.h"
#include "util/xml_element.h"

#include <kelm/xml_helpers.h>

#include <istream>
#include <ostream>

namespace kelm {

namespace {

/// Nothing is -1 in a document, whatever its width is in memory.
long long document_number(u32 value) { return value == npos32 ? -1 : static_cast<long long>(value); }

template <class Value>
void keep_if_read(const std::istream& in, Value& into, Value read) {
    if (in) into = std::move(read);
}

} // namespace

void binary_out::fail() { out_->setstate(std::ios_base::failbit); }
void binary_out::flag(const char*, bool value) { put_bool(*out_, value); }
void binary_out::text(const char*, const std::string& value) { put_string(*out_, value); }
void binary_out::identity(const char*, const GUID& value) { put_guid(*out_, value); }
void binary_out::stored_value(const abstract_property* value, u32, const value_sink&) {
    put_stored_value(*out_, value);
}

void binary_in::fail() { in_->setstate(std::ios_base::failbit); }
void binary_in::flag(const char*, bool& value) { keep_if_read(*in_, value, get_bool(*in_)); }
void binary_in::text(const char*, std::string& value) { keep_if_read(*in_, value, get_string(*in_)); }
void binary_in::identity(const char*, GUID& value) { keep_if_read(*in_, value, get_guid(*in_)); }

void binary_in::stored_value(std::unique_ptr<abstract_property>& value, u32, const value_sink& sink) {
    value = get_stored_value(*in_, *sink.references, sink.holder);
}

document_out document_out::inner(const char* name) const {
    return document_out{add_xml_elem(element_, name)};
}

document_out document_out::list::begin_item() const {
    return document_out{xml_element{container_}.make(item_).get()};
}

void document_out::list::end_item(const document_out& item) const {
    xml_element{container_}.append(xml_element{item.element()});
}

void document_out::attribute(const char* name, u32 value) {
    add_xml_att(element_, name, document_number(value));
}

void document_out::content(u32 value) { add_xml_text(element_, document_number(value)); }

void document_out::numbers(const char* name, u32 value, const char* inner_name, u32 inner_value) {
    document_out first = inner(name);
    first.content(value);
    first.number(inner_name, inner_value);
}

void document_out::text(const char* name, const std::string& value) {
    void* const field = add_xml_elem(element_, name);
    if (!value.empty()) add_xml_text(field, value);
}

void document_out::name(const char* name, const std::string& value) { text(name, process_xml_data(value)); }

void document_out::identity(const char* name, const GUID& value) {
    xml_element{element_}.set_attribute(name, guid_to_string(value));
}

void document_out::stored_value(const abstract_property* value, u32 id, const value_sink&) {
    put_stored_value(element_, value, id);
}

document_in::list::list(void* container, const char* item) {
    get_child_elems_by_name(container, item, items_);
}

document_in document_in::inner(const char* name) const { return document_in{get_xml_elem(element_, name)}; }

void document_in::attribute(const char* name, u32& value) const { get_xml_att(element_, name, value); }

void document_in::content(u32& value) const {
    if (unsigned long number = 0; get_xml_text(element_, number)) value = static_cast<u32>(number);
}

void document_in::numbers(const char* name, u32& value, const char* inner_name, u32& inner_value) const {
    const document_in first = inner(name);
    first.content(value);
    first.number(inner_name, inner_value);
}

void document_in::flag(const char* name, bool& value) const {
    get_xml_text(get_xml_elem(element_, name), value);
}

void document_in::text(const char* name, std::string& value) const {
    get_xml_text(get_xml_elem(element_, name), value, false);
}

void document_in::name(const char* name, std::string& value) const {
    get_xml_text(get_xml_elem(element_, name), value, true);
}

void document_in::identity(const char* name, GUID& value) const {
    if (const auto text = xml_element{element_}.attribute(name)) guid_from_string(*text, value);
}

void document_in::stored_value(std::unique_ptr<abstract_property>& value, u32 id,
                               const value_sink& sink) const {
    value = get_stored_value(element_, id, *sink.references, sink.holder);
    if (!value) document_pass::fail();
}

} // namespace kelm
