// Little-endian fields over standard streams.
// Not an archive: what stands in which order is the business of the formats.
#pragma once

#include <kelm/guid.h>
#include <kelm/types.h>

#include <istream>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace kelm {

// Writing. A failure shows in the state of the stream.

inline void put_u8(std::ostream& out, u8 value);
inline void put_u16(std::ostream& out, u16 value);
inline void put_u32(std::ostream& out, u32 value);
inline void put_u64(std::ostream& out, u64 value);
/// One byte, 0 or 1.
inline void put_bool(std::ostream& out, bool value);
/// The length as 4 bytes, then the bytes.  Sets failbit, and writes nothing, for a text whose length has no room.
void put_string(std::ostream& out, std::string_view text);
/// 16 bytes: the three numbers, then the eight bytes.
void put_guid(std::ostream& out, const GUID& value);

// Reading. Where too few bytes are left, or the stream has failed before, failbit is set and the answer is 0,
// false or empty: a record is read field by field, and its stream is asked once at the end.

[[nodiscard]] inline u8 get_u8(std::istream& in);
[[nodiscard]] inline u16 get_u16(std::istream& in);
[[nodiscard]] inline u32 get_u32(std::istream& in);
[[nodiscard]] inline u64 get_u64(std::istream& in);
/// One byte; every other than 0 is true.
[[nodiscard]] inline bool get_bool(std::istream& in);
[[nodiscard]] GUID get_guid(std::istream& in);
/// What put_string() wrote.  Memory grows with the bytes that are there, not with the length that is announced.
[[nodiscard]] std::string get_string(std::istream& in);

/// One level of values inside values, as long as it lives.  A stream decides how deep its values lie, and the stack
/// does not take every depth; a writer has the same limit, so that what is written can be read.
class nested_level {
public:
    static constexpr long deepest = 1000;

    /// Sets failbit when `stream` is `deepest` levels down already.
    explicit nested_level(std::ios& stream);
    nested_level(const nested_level&) = delete;
    nested_level& operator=(const nested_level&) = delete;
    ~nested_level();

private:
    std::ios& stream_;
};

/// The room that a buffer has right now: a field that fits is put there, or taken from there, as a whole.  The room may be
/// less than none: a buffer that keeps a spare place behind its end, and could not be emptied, stands behind it.
class buffer_window : private std::streambuf {
public:
    /// \returns where `size` bytes can be put, which count as put; null when there is no such room
    static char* claim(std::streambuf& in, std::size_t size) {
        char* const at = (in.*&buffer_window::pptr)();
        if ((in.*&buffer_window::epptr)() - at < static_cast<std::ptrdiff_t>(size)) return nullptr;
        (in.*&buffer_window::pbump)(static_cast<int>(size));
        return at;
    }
    /// \returns where the next `size` bytes stand, which count as taken; null when not all of them are there yet
    static const char* take(std::streambuf& from, std::size_t size) {
        const char* const at = (from.*&buffer_window::gptr)();
        if ((from.*&buffer_window::egptr)() - at < static_cast<std::ptrdiff_t>(size)) return nullptr;
        (from.*&buffer_window::gbump)(static_cast<int>(size));
        return at;
    }
};

// Records are small fields: most are moved between two reads and writes of the buffer's own pointers.

/// Puts a number byte by byte: where the buffer has no room for all of it right now, and where the stream is not good.
template <class Number>
void put_slowly(std::ostream& out, Number value);
template <class Number>
[[nodiscard]] Number get_slowly(std::istream& in);

template <class Number>
void put_number(std::ostream& out, Number value) {
    char* const at = out.good() ? buffer_window::claim(*out.rdbuf(), sizeof(Number)) : nullptr;
    if (!at) return put_slowly(out, value);
    for (std::size_t i = 0; i != sizeof(Number); ++i) at[i] = static_cast<char>(value >> (8 * i) & 0xFF);
}

template <class Number>
Number get_number(std::istream& in) {
    const char* const at = in.good() ? buffer_window::take(*in.rdbuf(), sizeof(Number)) : nullptr;
    if (!at) return get_slowly<Number>(in);
    Number value = 0;
    for (std::size_t i = 0; i != sizeof(Number); ++i)
        value = static_cast<Number>(value | Number{static_cast<u8>(at[i])} << (8 * i));
    return value;
}

inline void put_u8(std::ostream& out, u8 value) { put_number(out, value); }
inline void put_u16(std::ostream& out, u16 value) { put_number(out, value); }
inline void put_u32(std::ostream& out, u32 value) { put_number(out, value); }
inline void put_u64(std::ostream& out, u64 value) { put_number(out, value); }
inline void put_bool(std::ostream& out, bool value) { put_u8(out, value ? 1 : 0); }

inline u8 get_u8(std::istream& in) { return get_number<u8>(in); }
inline u16 get_u16(std::istream& in) { return get_number<u16>(in); }
inline u32 get_u32(std::istream& in) { return get_number<u32>(in); }
inline u64 get_u64(std::istream& in) { return get_number<u64>(in); }
inline bool get_bool(std::istream& in) { return get_u8(in) != 0; }

} // namespace kelm
