// The one layer through which this library reads and writes XML: small functions on elements of a DOM tree.
// Makes, parses and prints no documents: that is done with Xerces-C, by whoever holds the tree.
#pragma once

#include <kelm/export.h>

#include <string>
#include <vector>

namespace kelm {

// An element is passed as a void* so that users need no headers of Xerces-C.  The pointer is that of a
// `xercesc::DOMElement`: convert to that type before converting to void*.  Elements and nodes are borrowed,
// they belong to their document.
//
// A null element is allowed everywhere: nothing is added to it, and nothing is found in it.
//
// Narrow text is in the local code page of Xerces-C and ends at its first zero byte.  A byte that is wrong in
// that code page goes into the tree as the replacement character (U+FFFD).  Names longer than 99 UTF-16 units
// are cut there, in writing as in looking up; a null name is the empty one.
//
// Numbers are decimal.  Reading one skips white space, takes one sign and digits, and ends at any other
// character; what has no digit is 0, and no error is reported.
//
// Where Xerces-C throws, its exception passes through: for a name that XML does not allow it is a
// `xercesc::DOMException`.  A text that asks for more memory than there is ends in Xerces-C's
// OutOfMemoryException or in std::bad_alloc.

// Writing

/// Appends a new element to `parent`.
///
/// \returns the new element; null for a null `parent`
KELM_EXPORT void* add_xml_elem(void* parent, const char* name);

/// Sets the attribute `name` to a number; an attribute of that name is replaced.
KELM_EXPORT void add_xml_att(void* element, const char* name, long long value);

/// Appends a child element "datatype" with the number as text.  An attribute only by its name: this is how
/// the kind of a value stands in a document.
KELM_EXPORT void add_xml_att(void* element, unsigned int type);

/// Appends text as it stands: escaping is the caller's (`process_xml_data`).
///
/// \returns the new node, which is a `xercesc::DOMText` and no element; null for a null `element`
KELM_EXPORT void* add_xml_text(void* element, const std::string& text);

/// Appends a number as text.
///
/// \returns as above
KELM_EXPORT void* add_xml_text(void* element, long long value);

/// Appends bytes as the CDATA section of their text (`Base64`).
///
/// \param data  borrowed; null, like a `size` below 1, gives an empty section
/// \throws  std::length_error for more bytes than `Base64::Encode` takes; the element stays as it was
KELM_EXPORT void add_xml_value(void* element, const void* data, long size);

// Reading

/// Appends to `out` the child elements called `name`, in document order, and no children of children.
KELM_EXPORT void get_child_elems_by_name(void* element, const char* name, std::vector<void*>& out);

/// \returns the first child element called `name`; null when there is none
KELM_EXPORT void* get_xml_elem(void* element, const char* name);

/// Reads the attribute `name` as a number.  A missing attribute reads as 0.
///
/// \returns true; false, with `out` as it was, for a null `element`
KELM_EXPORT bool get_xml_att(void* element, const char* name, unsigned long& out);

/// The same in the range of an int: the low 32 bits of the number.
KELM_EXPORT bool get_xml_att(void* element, const char* name, int& out);

/// The same, with the 32 bits read as unsigned: "-1" and "4294967295" both give 4294967295.
KELM_EXPORT bool get_xml_att(void* element, const char* name, unsigned int& out);

/// Reads what `add_xml_att(element, type)` wrote: the first text of the child element "datatype".
///
/// \returns whether there is such a child.  One without text leaves `out` as it was, and is true all the same
KELM_EXPORT bool get_xml_att(void* element, unsigned int& out);

/// Reads the text of the first child node as a number.
///
/// \returns false, with `out` as it was, when there is no child node or the first one is an element
KELM_EXPORT bool get_xml_text(void* element, unsigned long& out);

/// The same in the range of an int: the low 32 bits of the number.
KELM_EXPORT bool get_xml_text(void* element, int& out);

/// The same; true for a number above 0.
KELM_EXPORT bool get_xml_text(void* element, bool& out);

/// Reads the text of the first child node.
///
/// \param unescape  true: the text goes through `reverse_process_xml_data`
/// \returns false, with `out` as it was, when there is no child node or the first one is an element
KELM_EXPORT bool get_xml_text(void* element, std::string& out, bool unescape);

/// Reads the bytes that `add_xml_value` wrote.
///
/// How many bytes there are does not come out: `size` is the length of their text, which is longer, and what
/// is in the buffer behind the bytes is 0.  The value's own format must tell.
///
/// \param data  receives a buffer of two bytes a character, which the caller owns and gives to std::free;
///              null when there is no text
/// \param size  receives the number of characters of the text, UTF-16 units; 0 when there is none
/// \throws  std::bad_alloc, and std::length_error for a text whose length an int does not count; both leave
///          `data` and `size` as they were
KELM_EXPORT void get_xml_value(void* element, void*& data, int& size);

// Escaping, of texts that are to survive a document

/// Escapes the seven characters '&', '<', '>', '"', '\'', carriage return and line feed, the last two as
/// "&#13" and "&#10", without a semicolon.
///
/// Only 7-bit text comes back: a byte above 127 becomes "&amp;apos;", which is read as an apostrophe.
///
/// \returns the escaped text
KELM_EXPORT std::string process_xml_data(const std::string& s);

/// Undoes `process_xml_data` in place, one entity after the other and "&amp;" first: so "&amp;lt;", which
/// stands for the literal text "&lt;", comes back as '<'.
///
/// \returns `s`
KELM_EXPORT const std::string& reverse_process_xml_data(std::string& s);

} // namespace kelm
