// The user-defined properties of a model in its stream or document.
// The model around them is model_stream.
#include "persistence/meta_section.h"

#include "meta/meta_object_base.h"
#include "meta/meta_property_impl.h"
#include "object/model_impl.h"
#include "util/scoped_mark.h"

#include <algorithm>
#include <istream>
#include <ostream>
#include <unordered_set>

namespace kelm {

namespace {

std::vector<meta_property*> user_defined_properties(const meta_object_base& type) {
    std::vector<meta_property*> found;
    std::ranges::copy_if(type.properties_ref(), std::back_inserter(found),
                         [](const meta_property* each) { return each->is_user_defined(); });
    return found;
}

/// Each hook is asked, whatever the one before has said, and the mark is as before.
void tell_of_newer_model(model_impl& into, const format_version& version) {
    const semantic_table* const table = into.semantics();
    const auto* const list = table ? table->of<read_newer_model_semantic>() : nullptr;
    if (!list) return;
    const scoped_mark mark{process().in_semantic};
    for (const auto& hook : std::vector{*list})
        static_cast<read_newer_model_semantic&>(*hook).do_it(static_cast<u32>(version.version),
                                                             static_cast<u32>(version.minor_version));
}

/// One type with what it has beyond the application's.
struct written_type {
    const meta_object* type;
    std::vector<meta_property*> properties;
};

// A document leaves out the types that have nothing to tell, but never the list.
document_out::list open_types(document_out section, std::vector<written_type>& types) {
    std::erase_if(types, [](const written_type& each) { return each.properties.empty(); });
    return {section.inner("meta_objects").element(), "meta_object"};
}

binary_out::list open_types(binary_out section, const std::vector<written_type>& types) {
    return section.open("meta_objects", "meta_object", types.size());
}

binary_in::list open_properties(binary_in type, binary_in /*of_model*/) { return type.open("udps", "udp"); }

// Kept: looked for in the model's element though they stand in that of their type, so that the properties of a
// document are not read: its reader makes them anew from the objects that define them, or does without.
document_in::list open_properties(document_in /*type*/, document_in of_model) {
    return of_model.open("udps", "udp");
}

} // namespace

template <class Archive>
void write_meta_section(model_impl& of, Archive to) {
    const meta_model_impl& known = of.types();
    auto section = to.inner("meta_model");
    section.attribute("version", known.version());
    section.attribute("minor_version", known.minor_version());
    std::vector<written_type> types;
    for (const meta_object* type : known.meta_objects_ref())
        types.push_back({type, user_defined_properties(static_cast<const meta_object_base&>(*type))});
    auto items = open_types(section, types);
    for (const written_type& each : types) {
        auto item = items.next();
        item.attribute("id", each.type->id());
        auto properties = item.open("udps", "udp", each.properties.size());
        for (const meta_property* which : each.properties) {
            const auto record = properties.next();
            static_cast<const meta_property_impl*>(which)->write(record.stream(), record.element());
        }
    }
}

template <class Archive>
bool read_format_version(model_impl& into, Archive section, format_version& version) {
    u32 read_version = 0;
    u32 read_minor = 0;
    section.attribute("version", read_version);
    section.attribute("minor_version", read_minor);
    if (!section.good()) return false;
    version = {static_cast<int>(read_version), static_cast<int>(read_minor)};
    const format_version known{static_cast<int>(into.types().version()),
                               static_cast<int>(into.types().minor_version())};
    if (!(version > known)) return true;
    tell_of_newer_model(into, version);
    return false;
}

template <class Archive>
void read_user_defined_properties(model_impl& into, Archive section, Archive of_model) {
    std::unordered_set<u32> listed;
    auto types = section.open("meta_objects", "meta_object");
    while (auto type = types.next()) {
        u32 id = 0;
        type->attribute("id", id);
        auto* const known = into.types().own_or_proxy(id);
        // A document tells of one set of properties: a type that it lists twice has them already.
        if (Archive::is_document && (!known || !listed.insert(id).second)) continue;
        auto properties = open_properties(*type, of_model);
        while (auto record = properties.next()) {
            auto made = std::make_unique<meta_property_impl>();
            if (!made->read(record->stream(), record->element())) continue;
            if (known) known->add_existing_property(std::move(made));
        }
    }
}

template void write_meta_section(model_impl&, binary_out);
template void write_meta_section(model_impl&, document_out);
template bool read_format_version(model_impl&, binary_in, format_version&);
template bool read_format_version(model_impl&, document_in, format_version&);
template void read_user_defined_properties(model_impl&, binary_in, binary_in);
template void read_user_defined_properties(model_impl&, document_in, document_in);

} // namespace kelm
