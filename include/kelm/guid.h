// The 16-byte identity of a model, with its text form.
// Not a general UUID library: it makes random ones and reads and writes one notation.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>
#include <string_view>

namespace kelm {

/// A globally unique id.  The sixteen bytes in memory are what a stream holds.
struct GUID {
    u32 Data1 = 0;    ///< digits 1 to 8 of the text
    u16 Data2 = 0;    ///< digits 9 to 12
    u16 Data3 = 0;    ///< digits 13 to 16
    u8 Data4[8] = {}; ///< digits 17 to 32, two a byte

    /// \returns whether all sixteen bytes are equal
    friend KELM_EXPORT bool operator==(const GUID& a, const GUID& b);
};
static_assert(sizeof(GUID) == 16, "a stream holds the sixteen bytes as they stand");

/// A new random id (version 4); all zero when the system has no random bytes to give.
KELM_EXPORT GUID make_guid();

/// The 38 characters `{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}`, in capitals.
KELM_EXPORT std::string guid_to_string(const GUID& id);

/// Reads the form that guid_to_string() writes, capitals or not.
/// \returns false, with `out` unchanged, for any other text
KELM_EXPORT bool guid_from_string(std::string_view text, GUID& out);

} // namespace kelm
