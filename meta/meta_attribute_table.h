// The attributes that the process knows.
// Which of them are built in is told by built_in_attributes.cpp.
#pragma once

#include "meta/meta_attribute_impl.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kelm {

/// Rows by id.  It owns them all.
class meta_attribute_table {
public:
    /// Registers an attribute.  A row of the same id is replaced in the table, but lives on for those who hold a
    /// pointer to it.
    /// \param default_value  may be null
    void add(u32 id, const std::string& name, std::unique_ptr<abstract_property> default_value,
             bool inheritable);
    /// \returns borrowed, as long as the process lives; null for an unknown id
    meta_attribute* find(u32 id) const;
    /// Appends all ids, ascending.
    void ids(std::vector<u32>& out) const;
    /// \returns whether an attribute is registered and passes from a base to what derives from it
    bool is_inheritable(u32 id) const;

private:
    std::map<u32, std::unique_ptr<meta_attribute_impl>> rows_;
    std::vector<std::unique_ptr<meta_attribute_impl>> replaced_;
};

/// \returns the one table of the process; never destroyed, since meta things may be read to the very end
meta_attribute_table& meta_attributes();

} // namespace kelm
