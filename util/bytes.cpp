// Little-endian fields: shifts and masks, so that the order of bytes in memory does not matter.
// Nothing is kept between two calls but the depth of nesting, and that is the stream's own.
#include "util/bytes.h"

#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>
#include <streambuf>

namespace kelm {

namespace {

constexpr std::size_t block_size = std::size_t{64} * 1024; // of texts, which are moved so much at a time

// Numbers go to and come from the buffer of the stream itself: a record is many small fields, and the ceremony of
// write() and read() for each costs more than the bytes.  A stream that is not good is left alone, as those leave it.

/// \returns whether `transfer` moved everything; what the buffer throws is a bad stream, as for the stream's own operations
template <class Transfer>
bool moved(std::ios& stream, Transfer&& transfer) {
    try {
        return transfer();
    } catch (...) {
        const bool is_told = (stream.exceptions() & std::ios_base::badbit) != 0;
        try {
            stream.setstate(std::ios_base::badbit);
        } catch (const std::ios_base::failure&) { // what the buffer threw says more
        }
        if (is_told) throw;
        return true;
    }
}

/// Where a stream keeps its depth.
int depth_slot() {
    static const int slot = std::ios_base::xalloc();
    return slot;
}

} // namespace

template <class Number>
void put_slowly(std::ostream& out, Number value) {
    using traits = std::ostream::traits_type;
    if (!out.good()) return out.setstate(std::ios_base::failbit);
    const bool whole = moved(out, [&] {
        for (std::size_t i = 0; i != sizeof(Number); ++i) {
            const auto byte = static_cast<char>(value >> (8 * i) & 0xFF);
            if (traits::eq_int_type(out.rdbuf()->sputc(byte), traits::eof())) return false;
        }
        return true;
    });
    if (!whole) out.setstate(std::ios_base::badbit);
}

template <class Number>
Number get_slowly(std::istream& in) {
    using traits = std::istream::traits_type;
    Number value = 0;
    if (!in.good()) {
        in.setstate(std::ios_base::failbit);
        return 0;
    }
    const bool whole = moved(in, [&] {
        for (std::size_t i = 0; i != sizeof(Number); ++i) {
            const auto byte = in.rdbuf()->sbumpc();
            if (traits::eq_int_type(byte, traits::eof())) return false;
            value =
                static_cast<Number>(value | Number{static_cast<u8>(traits::to_char_type(byte))} << (8 * i));
        }
        return true;
    });
    if (!whole) in.setstate(std::ios_base::eofbit | std::ios_base::failbit);
    return in ? value : Number{0};
}

template void put_slowly(std::ostream&, u8);
template void put_slowly(std::ostream&, u16);
template void put_slowly(std::ostream&, u32);
template void put_slowly(std::ostream&, u64);
template u8 get_slowly(std::istream&);
template u16 get_slowly(std::istream&);
template u32 get_slowly(std::istream&);
template u64 get_slowly(std::istream&);

void put_string(std::ostream& out, std::string_view text) {
    if (text.size() > std::numeric_limits<u32>::max()) {
        out.setstate(std::ios_base::failbit);
        return;
    }
    put_u32(out, static_cast<u32>(text.size()));
    if (out.good() && text.size() <= block_size) {
        if (char* const at = buffer_window::claim(*out.rdbuf(), text.size())) {
            std::copy(text.begin(), text.end(), at);
            return;
        }
    }
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void put_guid(std::ostream& out, const GUID& value) {
    put_u32(out, value.Data1);
    put_u16(out, value.Data2);
    put_u16(out, value.Data3);
    for (const u8 byte : value.Data4) put_u8(out, byte);
}

GUID get_guid(std::istream& in) {
    GUID id;
    id.Data1 = get_u32(in);
    id.Data2 = get_u16(in);
    id.Data3 = get_u16(in);
    for (u8& byte : id.Data4) byte = get_u8(in);
    return in ? id : GUID{};
}

std::string get_string(std::istream& in) {
    std::size_t left = get_u32(in);
    if (in.good() && left <= block_size)
        if (const char* const at = buffer_window::take(*in.rdbuf(), left)) return {at, left};
    std::string text;
    while (left != 0) {
        const std::size_t old_size = text.size();
        const std::size_t block = std::min(left, block_size);
        text.resize(old_size + block);
        if (!in.read(text.data() + old_size, static_cast<std::streamsize>(block))) return {};
        left -= block;
    }
    return text;
}

nested_level::nested_level(std::ios& stream) : stream_(stream) {
    // Checked before counting: a stream that throws on failure leaves the count as it was.
    if (stream.iword(depth_slot()) >= deepest) stream.setstate(std::ios_base::failbit);
    ++stream.iword(depth_slot());
}

nested_level::~nested_level() { --stream_.iword(depth_slot()); }

} // namespace kelm
