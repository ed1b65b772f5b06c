// Bytes as a stream has them, spelled field by field: what tests compare stored forms with.
// Written out here rather than taken from the library, so that the two can differ.
#pragma once

#include "testing/hex.h"

#include <kelm/types.h>

#include <string>
#include <string_view>

namespace kelm::test {

/// Appends little-endian fields.
class stored_fields {
public:
    stored_fields& byte(unsigned value) {
        bytes_.push_back(static_cast<char>(value));
        return *this;
    }
    stored_fields& word(u32 value) {
        for (unsigned shift = 0; shift != 32; shift += 8) byte((value >> shift) & 0xFFU);
        return *this;
    }
    stored_fields& text(std::string_view value) {
        word(static_cast<u32>(value.size()));
        bytes_ += value;
        return *this;
    }

    // Values of messages.
    stored_fields& no_value() { return byte(0); }
    stored_fields& owned_number(int value) { return byte(1).byte(1).word(4).word(static_cast<u32>(value)); }
    stored_fields& owned_text(std::string_view value) { return byte(1).byte(1).word(6).text(value); }
    stored_fields& owned_reference(u32 id) { return byte(1).byte(1).word(8).word(id); }
    /// A value that the object holds.
    stored_fields& held_value() { return byte(1).byte(0).word(npos32); }
    /// A value that another message of the log owns.
    stored_fields& shared_value(u32 message, u32 value, u32 element = npos32) {
        return byte(1).byte(0).word(message).word(value).word(element);
    }

    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

using kelm::testing::hex;

} // namespace kelm::test
