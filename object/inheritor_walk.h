// Who sees a change of an inherited value: the walk down the inheritors, depth first.
// What a change of the list of bases brings about is inherit_preview and inherit_edits.
#pragma once

#include "object/object_impl.h"

#include <vector>

namespace kelm {

/// \returns whether the type that declares a property lets objects inherit it
bool is_inheritable(const meta_property& which);
/// \returns whether a property may be inherited by objects of the type of `at`: known to the type, and not marked
///          as not inheritable there
bool may_pass(const object_impl& at, u32 id);
/// \returns whether a base is asked for a property by `at`: it is of the same type, or its type has the property
bool may_be_asked(const object_impl& at, const object_impl& base, u32 id);

/// The inheritors of an object that see a change of one property, in the order of a depth-first walk.  The list of
/// each object is copied when the walk comes to it, and each entry is looked up again before it is given, since
/// hooks may change the lists.  Nothing is allocated where nobody inherits.
class inheritor_walk {
public:
    /// \param origin  the object whose type saves an inheritor the question to its own type; null when there is none
    inheritor_walk(object_impl& from, u32 id, const object_impl* origin, bool tests_type)
        : id_(id), origin_(origin), tests_type_(tests_type) {
        descend(from);
    }
    /// \returns the next one; null at the end
    object_impl* next();
    /// Goes on with the inheritors of `at`, which next() has given, before its siblings.
    void descend(object_impl& at);

private:
    struct level {
        object_impl* at;
        std::vector<object_impl*> copy;
        std::size_t index;
    };
    bool sees(const object_impl& inheritor) const;

    u32 id_;
    const object_impl* origin_;
    bool tests_type_;
    std::vector<level> levels_;
};

/// Calls `visit` for each inheritor that sees a change of `id`, and theirs, until one answers false.
template <class Visit>
bool for_each_seeing_inheritor(object_impl& from, u32 id, const object_impl* origin, Visit&& visit) {
    if (!from.inheritor_links()) return true;
    inheritor_walk walk{from, id, origin, true};
    while (object_impl* const at = walk.next()) {
        if (!visit(*at)) return false;
        walk.descend(*at);
    }
    return true;
}

} // namespace kelm
