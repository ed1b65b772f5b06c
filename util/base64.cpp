// Bytes to the characters of documents and back.
// Not the published Base64: see the header.
#include <kelm/base64.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

constexpr std::u16string_view alphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*-";
constexpr char16_t pad = u'[';

static_assert(alphabet.size() == 64);

/// The six bits that a character stands for.
// Kept: what is not in the alphabet counts as 0 and takes its place, so that spoilt text still gives as many
// bytes.
constexpr std::uint32_t value_of(char16_t c) noexcept {
    if (c >= u'A' && c <= u'Z') return static_cast<std::uint32_t>(c - u'A');
    if (c >= u'a' && c <= u'z') return static_cast<std::uint32_t>(c - u'a') + 26;
    if (c >= u'0' && c <= u'9') return static_cast<std::uint32_t>(c - u'0') + 52;
    if (c == u'*') return 62;
    if (c == u'-') return 63;
    return 0;
}

constexpr char16_t character_of(std::uint32_t bits) noexcept { return alphabet[bits & 63U]; }

constexpr unsigned char byte_of(std::uint32_t group, int shift) noexcept {
    return static_cast<unsigned char>(group >> shift & 0xFFU);
}

/// Appends the four characters of a group of one to three bytes.
void append_group(const unsigned char* data, std::size_t count, std::u16string& text) {
    std::uint32_t group = static_cast<std::uint32_t>(data[0]) << 16;
    if (count > 1) group |= static_cast<std::uint32_t>(data[1]) << 8;
    if (count > 2) group |= data[2];
    text += character_of(group >> 18);
    text += character_of(group >> 12);
    text += count > 1 ? character_of(group >> 6) : pad;
    text += count > 2 ? character_of(group) : pad;
}

} // namespace

int Base64::Encode(const unsigned char* data, int size, std::u16string& out) {
    const std::size_t count = data && size > 0 ? static_cast<std::size_t>(size) : 0;
    const std::size_t length = (count + 2) / 3 * 4;
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("Base64: the text would be too long");

    std::u16string text;
    text.reserve(length);
    for (std::size_t i = 0; i < count; i += 3)
        append_group(data + i, std::min<std::size_t>(count - i, 3), text);
    out = std::move(text);
    return static_cast<int>(length);
}

int Base64::Decode(const std::u16string& text, int length, unsigned char* out) {
    if (length < 1 || !out) return 0;

    int written = 0;
    std::uint32_t group = 0;
    const std::size_t end = std::min(static_cast<std::size_t>(length), text.size());
    for (std::size_t i = 0; i < end; ++i) {
        const int place = static_cast<int>(i % 4);
        if (text[i] == pad) {
            // Kept: one byte at the first and the second place too, where no encoded text has a pad.
            out[written++] = byte_of(group, 16);
            if (place == 3) out[written++] = byte_of(group, 8);
            return written;
        }
        group |= value_of(text[i]) << (3 - place) * 6;
        if (place == 3) {
            for (const int shift : {16, 8, 0}) out[written++] = byte_of(group, shift);
            group = 0;
        }
    }
    // Kept: a group that the text's end cuts short gives nothing.
    return written;
}
