// Names, paths and types of objects as text, and the attributes of their types.
// Only public interfaces are used; lists and values of objects have files of their own.
#include "util/object_names.h"
#include "util/ascii.h"
#include "util/process_state.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace kelm {

namespace {

/// \returns an empty text for no value
std::string text_of_value(const value_ptr& value) { return value ? value->to_string() : std::string{}; }

/// Marks an object whose name is being made, as long as it lives.
class naming {
public:
    explicit naming(const object& what) { chain().push_back(&what); }
    naming(const naming&) = delete;
    naming& operator=(const naming&) = delete;
    ~naming() { chain().pop_back(); }

    /// \returns whether a name inside names may still ask for this one's
    static bool is_possible_for(const object& what) {
        return chain().size() < longest && std::ranges::find(chain(), &what) == chain().end();
    }

private:
    static constexpr std::size_t longest = 64;
    static std::vector<const object*>& chain() { return process().names_in_making; }
};

/// The text of a name.  One that is a reference, or a list of them, is made of other objects' names: a file may
/// hold references that go in a circle, and such a name is empty where the circle closes.
std::string name_text(const object& what, const value_ptr& value) {
    if (!value) return {};
    if (const auto* const plain = dynamic_cast<const property<std::string>*>(value.get()))
        return plain->value;
    if (!naming::is_possible_for(what)) return {};
    const naming mark{what};
    return value->to_string();
}

value_ptr name_value(const object& what) {
    // A deleted object's hooks would meet a half of it: its own value is all there is.
    return what.state() == state::deleted ? what.get_own_property(property_id::name)
                                          : what.get_property(property_id::name);
}

meta_model* types_of(kelm::model* in) {
    return in ? in->meta_model() : framework::instance().application_meta_model();
}

/// \returns null for a null object, and for a type that its meta model does not know
meta_object* meta_object_of(const object* what) {
    return what ? types_of(what->model())->find_meta_object(what->type()) : nullptr;
}

std::string name_of(const meta_object* type) { return type ? type->name() : std::string{}; }

} // namespace

const std::string& fast_unsafe_object_name(const object* what) {
    // Kept: this comes before all that is asked of the object, so while it is set the deleted, the renamed and the
    // objects of other models have the name that they keep as well. Nobody keeps none.
    if (what && process().use_cached_object_names) return cached_name(*what);
    // Filled on the side: hooks behind the read may ask for names themselves.
    std::string name = what ? name_text(*what, name_value(*what)) : std::string{};
    std::string& buffer = process().object_name;
    buffer = std::move(name);
    return buffer;
}

std::string object_name(const object* what) { return fast_unsafe_object_name(what); }

std::string object_definition(const object* what) {
    return what ? text_of_value(what->get_property(property_id::definition)) : std::string{};
}

std::string object_full_path_name(const object* what, const object* stop, bool quoted) {
    std::vector<const object*> chain; // upwards; trees are deeper than stacks
    for (; what && what->type() != type_id::model && what != stop; what = what->owner())
        chain.push_back(what);
    std::string path;
    for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
        if (!path.empty()) path += '.';
        if (quoted) path += '"';
        path += fast_unsafe_object_name(*step);
        if (quoted) path += '"';
    }
    return path;
}

std::string object_type_as_string(const object* what) { return name_of(meta_object_of(what)); }

std::string object_type_as_string(unsigned type) {
    return name_of(types_of(nullptr)->find_meta_object(type));
}

std::string property_name(unsigned type, unsigned property, kelm::model* in) {
    const meta_object* const declared_in = types_of(in)->find_meta_object(type);
    const meta_property* const found = declared_in ? declared_in->find_property(property) : nullptr;
    return found ? found->name() : std::string{};
}

std::string object_id_to_hex_string(const unsigned long& id) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08X", static_cast<unsigned>(id)); // Kept: the low 32 bits
    return digits;
}

unsigned long hex_string_to_object_id(const std::string& text) {
    std::string_view rest = text;
    while (!rest.empty() && is_space(rest.front())) rest.remove_prefix(1);
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    if (rest.starts_with("0x") || rest.starts_with("0X")) rest.remove_prefix(2);
    u64 read = 0;
    if (std::from_chars(rest.data(), rest.data() + rest.size(), read, 16).ec ==
        std::errc::result_out_of_range)
        return std::numeric_limits<u32>::max();
    return static_cast<u32>(negative ? 0 - read : read); // Kept: as the C library's "%X" stores it
}

bool bool_meta_attribute(const object* what, unsigned attribute, bool fallback) {
    const value_ptr value = meta_att(what, attribute);
    // An application may store another kind of value under the attribute: that is no answer.
    const auto* const truth = dynamic_cast<const property<bool>*>(value.get());
    return truth ? truth->value : fallback;
}

value_ptr meta_att(const object* what, unsigned attribute) {
    const meta_object* const type = meta_object_of(what);
    return type ? type->attribute_value(attribute) : value_ptr{};
}

std::string meta_name(const object* what) { return name_of(meta_object_of(what)); }

} // namespace kelm
