// Objects by id, each with what it stores, what it is known by, and what is read from it.
// Everything goes through the public interface.
#include "testing/canonical_text.h"

#include <kelm/meta_model.h>
#include <kelm/subject.h>
#include <kelm/testing/laws.h>

#include <algorithm>

namespace kelm::testing {

namespace {

std::string id_text(u32 id) { return id == npos32 ? "-1" : std::to_string(id); }

void append_ids(std::string& out, const char* what, std::vector<u32> ids, bool sorted) {
    if (ids.empty()) return;
    if (sorted) std::ranges::sort(ids);
    out += "  ";
    out += what;
    for (const u32 id : ids) out += ' ' + id_text(id);
    out += '\n';
}

/// The list itself is in the order of addresses, which differs from model to model.
std::vector<u32> observing_objects(const object& of) {
    std::vector<u32> out;
    for (const observer* who : of.observers())
        if (const auto* const watching = dynamic_cast<const object*>(who)) out.push_back(watching->id());
    return out;
}

void append_values(std::string& out, const value_map& values, const char* between) {
    for (const auto& [id, value] : values)
        out += "  " + std::to_string(id) + between + value_text(value.get()) + '\n';
}

/// What reads give beside what is stored: inherited values, and what hooks make of either.  What a user-defined property
/// gives depends on its choices, which do not come back with it.
void append_reads(std::string& out, const object& of, const value_map& own) {
    value_map read;
    of.all_properties(read);
    std::erase_if(read, [&](const auto& each) {
        if (each.first >= property_id::first_user_defined) return true;
        const auto stored = own.find(each.first);
        return stored != own.end() && value_text(stored->second.get()) == value_text(each.second.get());
    });
    append_values(out, read, " reads ");
}

void append_object(std::string& out, object& of, bool with_reads) {
    out += std::to_string(of.id()) + " type " + std::to_string(of.type()) + " state " +
           std::to_string(of.state()) + " owner " + id_text(of.owner() ? of.owner()->id() : npos32) + '\n';
    append_ids(out, "children", ids_of(of.children()), false);
    value_map own;
    of.own_properties(own);
    append_values(out, own, " = ");
    if (with_reads) append_reads(out, of, own);
    append_ids(out, "bases", ids_of(of.inherits_from_list(0)), false);
    append_ids(out, "inheritors", ids_of(of.inheritors()), true);
    append_ids(out, "referencing", ids_of(of.referencing_objects()), true);
    append_ids(out, "not inheritable", of.not_inheritable_properties(), true);
    append_ids(out, "observers", observing_objects(of), true);
}

std::string text_of(kelm::model& of, bool with_reads) {
    std::string out;
    std::vector<u32> ids;
    of.object_ids(ids);
    for (const u32 id : ids) append_object(out, *of.find_object(id), with_reads);
    return out;
}

} // namespace

std::vector<u32> ids_of(const std::vector<object*>& objects) {
    std::vector<u32> out;
    out.reserve(objects.size());
    for (const object* each : objects) out.push_back(each ? each->id() : npos32);
    return out;
}

std::string value_text(const abstract_property* value) {
    if (const auto* const reference = dynamic_cast<const property<object*>*>(value))
        return reference->value ? "#" + std::to_string(reference->value->id()) : "#null";
    if (const auto* const list = dynamic_cast<const vector_property*>(value)) {
        std::string text = "[";
        for (const abstract_property* each : list->elements) text += value_text(each) + "|";
        return text + "]";
    }
    return value ? "'" + value->to_string() + "'" : "null";
}

std::string stored_text_of(kelm::model& of) { return text_of(of, false); }

std::string text_of(kelm::model& of) { return text_of(of, true); }

} // namespace kelm::testing
