// A value of a kind that nobody has registered.
// It carries nothing: what a test wants to know of a value, it adds in a class derived from this one.
#pragma once

#include <kelm/property.h>

#include <string>
#include <vector>

namespace kelm::test {

/// No stream can have it, as there is no code to read it back by; it equals nothing and its text is empty.
class unregistered_value : public abstract_property {
public:
    owned<abstract_property*> clone() const override { return new unregistered_value; }
    bool equals(const abstract_property*) const override { return false; }
    std::string to_string() const override { return {}; }
    void to_string(std::string& out) const override { out = to_string(); }
    void from_string(const std::string&) override {}
    void write(std::ostream&) const override {}
    void read(std::istream&, std::vector<reference_record>&, object*) override {}
};

} // namespace kelm::test
