// Who made an edit, and when.
// Where it is kept is the business of signer.h.
#pragma once

#include <string>
#include <string_view>

namespace schema {

struct signature {
    std::string author;
    std::string time; ///< of Greenwich, as in 2026-11-21T10:00:00Z
};

/// \returns the form in which the end of a transaction keeps it: "time=2026-11-21T10:00:00Z;author=Ann".  The author
///          comes last and goes to the end, so any name will do.
std::string to_text(const signature& from);
/// \returns an empty signature for a text of another form
signature signature_of(std::string_view text);

/// Fills in what is not given: the author from $USER or the user database, the time from $SOURCE_DATE_EPOCH or the
/// clock.
/// \throws std::runtime_error for an author or a time that is none
signature complete(signature given);

} // namespace schema
