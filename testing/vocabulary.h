// What histories of a meta model can speak of: its types, what they declare, and which hooks they have.
// What is drawn from it is random_steps.h.
#pragma once

#include <kelm/meta_model.h>

#include <map>
#include <string>
#include <vector>

namespace kelm::testing {

struct vocabulary {
    struct property {
        u32 id = 0;
        u32 kind = 0;                   ///< data type; 0 for a value of any of `wild_kinds`
        u32 element_kind = 0;           ///< of a list; 0 for any
        std::vector<std::string> texts; ///< to choose from, where there are any
    };
    struct type {
        u32 id = 0;
        std::vector<property> properties;
        std::vector<u32> children; ///< types
    };

    /// \returns null for what histories do not speak of
    const type* find(u32 id) const {
        const auto found = types.find(id);
        return found == types.end() ? nullptr : &found->second;
    }

    std::map<u32, type> types;
    bool has_hooks = false;      ///< of an application
    bool has_read_hooks = false; ///< of these, some that supply or change what is read
    std::vector<u32> wild_kinds; ///< for mixes with undeclared values
};

/// \param element_kinds, texts  as in law_options
vocabulary vocabulary_of(meta_model& types, const std::map<u32, u32>& element_kinds,
                         const std::map<u32, std::vector<std::string>>& texts);

} // namespace kelm::testing
