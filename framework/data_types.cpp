// The registry of kinds of values, with a short memory for the question that is asked for every value written.
// The kinds themselves are in the files named after them.
#include "framework/data_types.h"

#include <kelm/property.h>

#include <array>
#include <cstdint>
#include <map>

namespace kelm::data_types {

namespace {

struct kind {
    value_factory make = nullptr;
    const std::type_info* type = nullptr;
    std::string name;
};

class registry {
public:
    void add(u32 code, const std::type_info& type, value_factory make, const std::string& name) {
        const auto entered = kinds_.try_emplace(code, kind{make, &type, name}).first;
        if (code < low_.size()) low_[code] = &entered->second;
        answers_ = {};
    }

    const kind* find(u32 code) const {
        if (code < low_.size()) return low_[code];
        const auto found = kinds_.find(code);
        return found == kinds_.end() ? nullptr : &found->second;
    }

    /// Every value written asks this, and a comparison of types may be one of their names.
    u32 code_of(const std::type_info& type) {
        answer& known = answers_[slot_of(type)];
        if (known.type != &type) known = {&type, search(type)};
        return known.code;
    }

private:
    struct answer {
        const std::type_info* type = nullptr;
        u32 code = 0;
    };

    static std::size_t slot_of(const std::type_info& type) {
        return reinterpret_cast<std::uintptr_t>(&type) / alignof(std::type_info) % slots;
    }

    u32 search(const std::type_info& type) const {
        for (const auto& [code, row] : kinds_)
            if (*row.type == type) return code;
        return 0;
    }

    static constexpr std::size_t slots = 64;

    std::map<u32, kind> kinds_;
    std::array<const kind*, 16> low_{}; // those of the library, which nearly all values are of
    std::array<answer, slots> answers_; // by the address of the type; what collides is asked again
};

registry& all() {
    static auto* const made = new registry; // never destroyed: values may be written after main
    return *made;
}

template <class Box>
void add_built_in(u32 code, const char* name) {
    register_data_type(
        code, typeid(Box), []() -> abstract_property* { return new Box; }, name);
}

} // namespace

void register_data_type(u32 code, const std::type_info& type, value_factory make, const std::string& name) {
    all().add(code, type, make, name);
}

void register_built_in_data_types() {
    add_built_in<vector_property>(data_type::vector, "Vector");
    add_built_in<property<bool>>(data_type::boolean, "Boolean");
    add_built_in<property<short>>(data_type::short_integer, "Short");
    add_built_in<property<int>>(data_type::integer, "Integer");
    add_built_in<property<long>>(data_type::long_integer, "Long");
    add_built_in<property<std::string>>(data_type::string, "String");
    add_built_in<property<double>>(data_type::real, "Double");
    add_built_in<property<object*>>(data_type::object_reference, "Object Reference");
    add_built_in<property<long long>>(data_type::long_long, "Long Long");
    add_built_in<property<GUID>>(data_type::model_id, "Model Id");
    add_built_in<property<id_multimap>>(data_type::id_map, "Id Map");
}

owned<abstract_property*> create_value(u32 code) {
    const kind* const found = all().find(code);
    return found && found->make ? found->make() : nullptr;
}

u32 data_type_of(const abstract_property* value) { return value ? all().code_of(typeid(*value)) : 0; }

u32 stream_code_of(const abstract_property* value) {
    const u32 code = data_type_of(value);
    if (code != 0 || !value) return code;
    // Not registered, but of the Integer kind in all that a stream sees.
    return typeid(*value) == typeid(property<unsigned>) ? data_type::integer : 0;
}

std::string data_type_name(u32 code) {
    const kind* const found = all().find(code);
    return found ? found->name : std::string{};
}

} // namespace kelm::data_types
