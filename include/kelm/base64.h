// Binary data as text, in this library's own alphabet: what documents hold for raw bytes.
// Not the published Base64: alphabet and padding differ, and neither reads the other's text.
#pragma once

#include <kelm/export.h>

#include <string>

/// Two functions that turn bytes into wide text and back.  Wide text is UTF-16, as DOM trees hold it.
///
/// Three bytes become four characters of "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*-",
/// most significant bits first; in the last group a '[' stands for each character that missing bytes leave
/// without a bit.
class KELM_EXPORT Base64 {
public:
    /// Replaces `out` by the text of `size` bytes, without line breaks.
    ///
    /// \param data  borrowed; null counts as no bytes
    /// \param size  below 1 counts as no bytes, whose text is empty
    /// \returns the number of characters in `out`
    /// \throws  std::length_error when the text would have more characters than an int counts, that is for
    ///          more than 1,610,612,733 bytes; `out` stays as it was.  std::bad_alloc
    static int Encode(const unsigned char* data, int size, std::u16string& out);

    /// Writes to `out` the bytes that the first `length` characters of `text` stand for.
    ///
    /// The first '[' ends it: with one byte at the third place of a group, with two at the fourth, and with
    /// one at the first and the second, where no text of Encode() has any; at the first that byte is 0.  Any
    /// other character that is not in the alphabet takes its place in the group with the value 0.  A group
    /// that is cut short without '[' gives no bytes.
    ///
    /// \param length  held at the length of `text`; below 1 gives 0 and leaves `out` alone
    /// \param out     room for three bytes for each four characters begun; null gives 0
    /// \returns the number of bytes written
    static int Decode(const std::u16string& text, int length, unsigned char* out);
};
