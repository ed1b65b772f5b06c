// What a change of the list of bases will do to an inherited value, asked before it is made.
// What it did is told by inherit_changes.
#pragma once

#include "object/object_impl.h"

namespace kelm {

/// The prospect of one inherited value.
struct foreseen_value {
    enum class fate { stays, is_set, goes };
    fate what = fate::stays;
    const object_impl* source = nullptr; ///< is_set: where the value lies; goes: where the one that goes lies
};

/// A change of the list of bases that is about to be made, reduced to what decides about values.  Without a base it
/// changes nothing.
class list_change {
public:
    static list_change add(const object_impl* base) { return {kind::add, base, npos}; }
    static list_change insert(const object_impl* base, std::size_t at) { return {kind::insert, base, at}; }
    static list_change cancel(const object_impl* base) { return {kind::cancel, base, npos}; }
    static list_change replace(const object_impl* base, std::size_t at) { return {kind::replace, base, at}; }
    static list_change move(const object_impl* base, std::size_t to) { return {kind::move, base, to}; }

    /// \returns what becomes of a property that `of` inherits or may come to inherit
    foreseen_value foresee(const object_impl& of, u32 id) const;

private:
    enum class kind { add, insert, cancel, replace, move };
    list_change(kind what, const object_impl* base, std::size_t at) : kind_(what), base_(base), at_(at) {}

    kind kind_;
    const object_impl* base_;
    std::size_t at_;
};

/// Asks the hooks of setting and deleting, of the object and of its inheritors, about every value that the change
/// will touch, in the order of the type's properties.
/// \returns false when one refused
bool ask_about_values(object_impl& of, const list_change& change);

} // namespace kelm
