// Documents as text in one form, so that two of them can be compared line by line.
// Parsing and plain printing are in dom_document.h.
#pragma once

#include "tests/support/dom_document.h"

#include <string>

namespace kelm::test {

/// \returns the text of an element: a line for each element, indented by its depth, with its attributes in the order of
///          their names and with its text, but no comments, and no white space that stands alone
std::string canonical_text(const xercesc::DOMElement& of);

/// The same of a document that is given as text.
std::string canonical_text(const std::string& document);

} // namespace kelm::test
