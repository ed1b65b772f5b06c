// A value that counts how many of its kind live.
// When a value is freed is the business of the messages and objects that hold it.
#pragma once

#include "util/bytes.h"

#include <kelm/framework.h>
#include <kelm/property.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace kelm::test {

/// A kind of value that knows how many of it live.
class counted_value final : public abstract_property {
public:
    static inline long alive = 0;

    /// Makes it a kind that streams know; does nothing when that has been done.
    static void enter() {
        framework::instance().register_data_type(
            700100, typeid(counted_value), []() -> abstract_property* { return new counted_value(0); },
            "Counted");
    }

    explicit counted_value(int initial) : value_(initial) { ++alive; }
    counted_value(const counted_value& other) : abstract_property(other), value_(other.value_) { ++alive; }
    ~counted_value() override { --alive; }

    owned<abstract_property*> clone() const override { return new counted_value(*this); }
    bool equals(const abstract_property* other) const override {
        const auto* const same = dynamic_cast<const counted_value*>(other);
        return same && same->value_ == value_;
    }
    std::string to_string() const override { return "counted " + std::to_string(value_); }
    void to_string(std::string& out) const override { out = to_string(); }
    /// Reads the number alone.
    void from_string(const std::string& text) override { value_ = std::atoi(text.c_str()); }
    void write(std::ostream& out) const override { put_u32(out, static_cast<u32>(value_)); }
    void read(std::istream& in, std::vector<reference_record>&, object*) override {
        value_ = static_cast<int>(get_u32(in));
    }

private:
    int value_;
};

} // namespace kelm::test
