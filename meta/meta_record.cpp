// The records of meta things, and of attributes.
// Where they stand in a model's stream or document is the business of those.
#include "framework/field_archives.h"
#include "meta/meta_attribute_impl.h"
#include "meta/meta_property_impl.h"
#include "util/xml_element.h"

#include <istream>
#include <ostream>
#include <utility>
#include <vector>

namespace kelm {

namespace {

/// Reads one value.  Attributes do not refer to objects: a reference that is read for one stays null.
template <class Archive>
std::unique_ptr<abstract_property> value_of(Archive& archive, u32 attribute) {
    std::vector<reference_record> references;
    std::unique_ptr<abstract_property> value;
    archive.stored_value(value, attribute, value_sink{&references, nullptr});
    return value;
}

std::optional<binary_in::list> attributes_of(binary_in& thing) { return thing.open("atts", "att"); }

// Kept: looked for at any depth, so that a thing has to have one "atts" below it, and no more.
std::optional<document_in::list> attributes_of(document_in& thing) {
    const auto found = xml_element{thing.element()}.all_below("atts");
    if (found.size() != 1) return std::nullopt;
    return document_in::list{xml_element{found.front()}.all_below("att")};
}

template <class Archive>
bool read_attributes(meta_base::own_values& into, Archive& archive) {
    auto items = attributes_of(archive);
    while (auto item = items ? items->next() : std::nullopt) {
        u32 attribute = 0;
        item->attribute("id", attribute);
        auto value = value_of(*item, attribute);
        if (!value) return false;
        into[attribute] = std::move(value);
    }
    return items && archive.good();
}

template <class Archive>
bool write_attributes(const meta_base::own_values& values, Archive& archive) {
    auto items = archive.open("atts", "att", values.size());
    for (const auto& [attribute, value] : values) {
        auto item = items.next();
        item.attribute("id", attribute);
        item.stored_value(value.get(), attribute);
    }
    return archive.good();
}

/// Hands `thing` to `fields` in the form that is asked for.
template <class Binary, class Document, class Stream, class Fields>
bool in_form(Stream* stream, void* element, Fields&& fields) {
    if (element) {
        const document_part part;
        Document archive{element};
        return fields(archive);
    }
    if (!stream) return false;
    Binary archive{*stream};
    return fields(archive);
}

} // namespace

template <class Self, class Archive>
bool meta_base::fields(Self& self, Archive& archive) {
    archive.attribute("id", self.id_);
    if constexpr (Archive::reads)
        return read_attributes(self.attributes_, archive);
    else
        return write_attributes(self.attributes_, archive);
}

template <class Self, class Archive>
bool meta_property_impl::fields(Self& self, Archive& archive) {
    if (!meta_base::fields(self, archive)) return false;
    // Kept: documents have the class, and are not asked for it.
    if constexpr (!(Archive::reads && Archive::is_document)) archive.number("class", self.stored_class_);
    return archive.good();
}

bool meta_base::read(std::istream* in, void* element) {
    return in_form<binary_in, document_in>(in, element,
                                           [this](auto& archive) { return fields(*this, archive); });
}

void meta_base::write(std::ostream* out, void* element) const {
    in_form<binary_out, document_out>(out, element, [this](auto& archive) { return fields(*this, archive); });
}

bool meta_property_impl::read(std::istream* in, void* element) {
    return in_form<binary_in, document_in>(in, element,
                                           [this](auto& archive) { return fields(*this, archive); });
}

void meta_property_impl::write(std::ostream* out, void* element) const {
    in_form<binary_out, document_out>(out, element, [this](auto& archive) { return fields(*this, archive); });
}

template <class Self, class Archive>
void meta_attribute_impl::fields(Self& self, Archive& archive) {
    archive.number("id", self.id_);
    archive.text("name", self.name_);
    archive.flag("inheritable", self.inheritable_);
    bool has_default = self.default_ != nullptr;
    archive.flag("has_default", has_default);
    if (!has_default) return;
    if constexpr (Archive::reads)
        self.default_ = value_of(archive, self.id_);
    else
        archive.stored_value(self.default_.get(), self.id_);
}

void meta_attribute_impl::write(std::ostream& out) const {
    binary_out archive{out};
    fields(*this, archive);
}

void meta_attribute_impl::read(std::istream& in) {
    binary_in archive{in};
    meta_attribute_impl read_now;
    fields(read_now, archive);
    if (in) *this = std::move(read_now);
}

} // namespace kelm
