// Common questions to objects and to lists of objects: names, owners and children, values.
// Free functions on public interfaces; what changes something says so.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kelm {

// Pointers are borrowed throughout.  A null object is like one that has nothing, unless told otherwise.

// Names and text

/// The text of property 1; of a deleted object, that of its own value.  The reference is good until the next call:
/// two calls in one expression overwrite one another.  Empty for null and for an object without a name.
/// While a compare runs, the text that the compare has kept with the object.
KELM_EXPORT const std::string& fast_unsafe_object_name(const object* what);
/// A copy of the same.
KELM_EXPORT std::string object_name(const object* what);
/// The value of property 2; empty for null and when there is none.
KELM_EXPORT std::string object_definition(const object* what);
/// The names from below `stop` (or the model) down to `what`, joined by ".", each in double quotes if `quoted`.
/// Empty for null, for the model and for `stop` itself.
KELM_EXPORT std::string object_full_path_name(const object* what, const object* stop = nullptr,
                                              bool quoted = false);
/// The name of the object's type in its model; empty for null.
KELM_EXPORT std::string object_type_as_string(const object* what);
/// The name of the type in the application meta model; empty for an unknown type.
KELM_EXPORT std::string object_type_as_string(unsigned type);
/// The name of a property in `in`, or in the application meta model when that is null; empty when unknown.
KELM_EXPORT std::string property_name(unsigned type, unsigned property, kelm::model* in);

/// The low 32 bits of an id as at least eight hexadecimal digits, "000000FF" for 255.
KELM_EXPORT std::string object_id_to_hex_string(const unsigned long& id);
/// Reads what the function before wrote: leading white space, one sign and "0x" are allowed, the first other
/// character that is no digit ends the number, and the low 32 bits count.  0 when there is no number.
KELM_EXPORT unsigned long hex_string_to_object_id(const std::string& text);

/// The boolean meta attribute of the object's type; `fallback` when it has no value.
KELM_EXPORT bool bool_meta_attribute(const object* what, unsigned attribute, bool fallback);
/// The meta attribute of the object's type; empty when it has no value.
KELM_EXPORT value_ptr meta_att(const object* what, unsigned attribute);
/// The name of the object's type in its model.
KELM_EXPORT std::string meta_name(const object* what);

// Lists of objects.  Entries may be null: they have no type, refer to nothing, and have no id.

/// Appends to `out` the objects of `in` of exactly that type, in order.  The two may be the same list.
KELM_EXPORT void append_objects_with_type(std::vector<object*>& out, const std::vector<object*>& in,
                                          unsigned type);
/// \returns a copy of the list without the objects of that type
KELM_EXPORT std::vector<object*> remove_object_type(const std::vector<object*>& in, unsigned type);
/// \returns how many have that type
KELM_EXPORT std::size_t contains_object_type(const std::vector<object*>& in, unsigned type);
/// \returns the index of the first entry that is `what`; npos when there is none
KELM_EXPORT std::size_t object_position(const std::vector<object*>& in, const object* what);
/// \returns whether an entry is `what`
KELM_EXPORT bool container_contains_object(const std::vector<object*>& in, const object* what);
/// \returns the first object whose property is a reference to `target`; null when there is none.  The elements of a
///          list of references do not count.  A null `target` looks for a null reference.
KELM_EXPORT object* container_contains_object_reference(const std::vector<object*>& in, unsigned property,
                                                        const object* target);
/// \returns the type of the first object when each has that type or `also_allowed`; 0 when one has neither, for a
///          list with a null entry, and for an empty list
KELM_EXPORT unsigned homogenous(const std::vector<object*>& in, unsigned also_allowed);
/// Appends the ids, in order.
KELM_EXPORT void objs_to_ids(const std::vector<object*>& in, std::vector<unsigned long>& out);
/// Appends the objects that `from` finds by these ids, in order; an id without an object is passed over.
KELM_EXPORT void ids_to_objs(const model* from, const std::vector<unsigned long>& ids,
                             std::vector<object*>& out);
/// Moves `what` in the list, or puts it in.
/// \param position  counted without `what`; the size of the list without it puts it last
/// \returns false for a position past that: then `what` is no longer in the list
KELM_EXPORT bool set_object_order(std::vector<object*>& list, const object* what, std::size_t position);

// Owners and children.  Listings run the hooks of reads.  `more` is a further filter, or null for none.

/// \returns whether `owner` owns `what`, directly or over others; no object owns itself
KELM_EXPORT bool is_owned(const object* what, const object* owner);
/// \param type  exactly the type to look among; 0 for all
/// \returns the first child with that name; null when there is none.  With `no_case` names compare as C strings,
///          blind to case, else byte by byte.
KELM_EXPORT object* child_by_name(const object* owner, const std::string& name, unsigned type, bool no_case);
/// Replaces `out` by the children of exactly that type that also pass `more`.
/// \returns how many there are
KELM_EXPORT std::size_t children_by_type(const object* owner, std::vector<object*>& out, unsigned type,
                                         filter* more);
/// \returns how many children are of exactly that type or pass `more`: unlike in children_by_type, one of the two
///          is enough
KELM_EXPORT std::size_t num_children_of_type(const object* owner, unsigned type, filter* more);
/// \returns whether num_children_of_type counts any
KELM_EXPORT bool has_children_of_type(const object* owner, unsigned type, filter* more);
/// Replaces `out` by the children that list `base` among their own bases.
/// \param type  exactly the type of the children; 0 for that of `base`
/// \returns how many there are
KELM_EXPORT std::size_t children_that_inherit_from(const object* owner, const object* base,
                                                   std::vector<object*>& out, unsigned type);
/// \returns the first of the bases of `a` that is also one of `b`; null when there is none
KELM_EXPORT object* inherit_from_same_object(const object* a, const object* b);

// Values

/// \returns whether the object stores the value, or inherits it from one that does
KELM_EXPORT bool defines_property(const object* what, unsigned id);
/// Changes the object: has it refuse to inherit the property, or allows it again.
/// \param allow  false deletes an own value, then marks the property; true takes the mark away, if `reset` is set
///               and there is one
/// \returns false when a change was refused
KELM_EXPORT bool allow_property(object* what, unsigned id, bool allow, bool reset);
/// \returns false when the type has no such property, or marks it with attribute 6
KELM_EXPORT bool property_can_be_inherited(unsigned type, unsigned id, const meta_model& in);

// Lists as values.  What is read is the effective value; one that is no list is like none.

/// \returns how many elements the list has; 0 without one
KELM_EXPORT std::size_t vector_prop_size(const object* what, unsigned id);
/// \returns the target of the reference there; null without a list, past its end, and for another kind of element
KELM_EXPORT object* object_at_vector_prop_pos(const object* what, unsigned id, std::size_t position);
/// \returns the text there; empty without a list, past its end, and for another kind of element
KELM_EXPORT std::string string_at_vector_prop_pos(const object* what, unsigned id, std::size_t position);
/// \returns the index of the first element that is a reference to `target`; npos when there is none.  A null
///          `target` looks for a null reference.
KELM_EXPORT std::size_t vector_prop_object_position(const object* what, const object* target, unsigned id);
/// \returns the index of the first element that `value` equals; npos when there is none, and for a null `value`
KELM_EXPORT std::size_t vector_prop_position(const object* what, const abstract_property* value, unsigned id);

} // namespace kelm
