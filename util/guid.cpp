// Making, comparing, printing and reading 16-byte ids.
// Streams are not known here: values write an id's sixteen bytes themselves.
#include "util/process_state.h"

#include <kelm/guid.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/random.h>

namespace kelm {

namespace {

constexpr std::size_t text_size = 38;

/// Where the hexadecimal digits stand, two a byte.
constexpr std::string_view layout = "{hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh}";
static_assert(layout.size() == text_size);

/// The sixteen bytes in the order of the text: each of the three numbers from its high end.
using shown_bytes = std::array<u8, 16>;

shown_bytes bytes_of(const GUID& id) {
    shown_bytes shown{};
    for (std::size_t i = 0; i != 4; ++i) shown[i] = static_cast<u8>(id.Data1 >> (24 - 8 * i));
    for (std::size_t i = 0; i != 2; ++i) {
        shown[4 + i] = static_cast<u8>(id.Data2 >> (8 - 8 * i));
        shown[6 + i] = static_cast<u8>(id.Data3 >> (8 - 8 * i));
    }
    std::copy(std::begin(id.Data4), std::end(id.Data4), shown.begin() + 8);
    return shown;
}

GUID guid_of(const shown_bytes& shown) {
    GUID id;
    for (std::size_t i = 0; i != 4; ++i) id.Data1 = id.Data1 << 8 | shown[i];
    for (std::size_t i = 0; i != 2; ++i) {
        id.Data2 = static_cast<u16>(id.Data2 << 8 | shown[4 + i]);
        id.Data3 = static_cast<u16>(id.Data3 << 8 | shown[6 + i]);
    }
    std::copy(shown.begin() + 8, shown.end(), std::begin(id.Data4));
    return id;
}

/// \returns 16 for what is no hexadecimal digit
u8 digit_value(char c) {
    if (c >= '0' && c <= '9') return static_cast<u8>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<u8>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') return static_cast<u8>(c - 'a' + 10);
    return 16;
}

bool fill_with_random_bytes(shown_bytes& bytes) {
    if (process().guid_source_fails) return false;
    ssize_t got = 0;
    do {
        got = ::getrandom(bytes.data(), bytes.size(), 0);
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(bytes.size());
}

} // namespace

bool operator==(const GUID& a, const GUID& b) {
    return a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3 &&
           std::ranges::equal(a.Data4, b.Data4);
}

GUID make_guid() {
    shown_bytes bytes{};
    if (!fill_with_random_bytes(bytes)) return {};
    bytes[6] = static_cast<u8>((bytes[6] & 0x0F) | 0x40); // version 4: all random
    bytes[8] = static_cast<u8>((bytes[8] & 0x3F) | 0x80); // the common variant
    return guid_of(bytes);
}

std::string guid_to_string(const GUID& id) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const shown_bytes bytes = bytes_of(id);
    std::string text{layout};
    std::size_t next = 0; // counts digits, two a byte
    for (char& c : text) {
        if (c != 'h') continue;
        const u8 byte = bytes[next / 2];
        c = digits[next % 2 == 0 ? byte >> 4 : byte & 0x0F];
        ++next;
    }
    return text;
}

bool guid_from_string(std::string_view text, GUID& out) {
    if (text.size() != text_size) return false;
    shown_bytes bytes{};
    std::size_t next = 0;
    for (std::size_t i = 0; i != text_size; ++i) {
        if (layout[i] != 'h') {
            if (text[i] != layout[i]) return false;
            continue;
        }
        const u8 digit = digit_value(text[i]);
        if (digit > 15) return false;
        bytes[next / 2] = static_cast<u8>(bytes[next / 2] << 4 | digit);
        ++next;
    }
    out = guid_of(bytes);
    return true;
}

} // namespace kelm
