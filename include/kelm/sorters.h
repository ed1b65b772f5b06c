// Strategies of listings: a sorter says which of two objects comes first.  Beside them, orders of meta things.
// How a listing uses a sorter is object::children.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <map>
#include <string>

namespace kelm {

/// Orders the objects of a listing.  Applications derive sorters of their own.
class KELM_EXPORT sorter {
public:
    virtual ~sorter() = default;
    /// \param a, b  borrowed
    /// \returns true when `a` comes before `b`
    virtual bool do_it(const object* a, const object* b) const = 0;

protected:
    sorter() = default;
    sorter(const sorter&) = default;
    sorter& operator=(const sorter&) = default;
};

/// Hands a sorter to the standard algorithms by value: a copy asks the same sorter, and no cache is copied.
class object_sorter {
public:
    /// \param which  borrowed: it must outlive this and all copies
    explicit object_sorter(sorter& which) : which_(&which) {}
    /// \returns whether `a` comes before `b`
    bool operator()(const object* a, const object* b) const { return which_->do_it(a, b); }

private:
    sorter* which_;
};

/// What the sorters by a text share: the text of an object, its key, is built when it is first asked for, and kept.
///
/// So a sorter that has been used does not see new names: clear it, or take a new one, whenever names may have
/// changed.  Equal keys are a tie: nothing else decides.  A copy has a copy of the keys.  Two sorters of one class
/// must not compare at the same time, nor one inside the other, as a hook behind the reading of a name might.
template <class Derived, class Id = const object*>
class KELM_EXPORT keyed_sorter : public sorter {
public:
    /// \returns whether the key of `a` comes before that of `b`
    bool do_it(const object* a, const object* b) const override;
    /// Forgets the keys.
    void clear() { cache_.clear(); }

protected:
    keyed_sorter() = default;

private:
    const std::string& key(const object* of) const;

    mutable std::map<Id, std::string> cache_;
};

class KELM_EXPORT obj_sort_name;
class KELM_EXPORT obj_sort_name_no_case;
class KELM_EXPORT owner_obj_sort_name_no_case;
class KELM_EXPORT owner_owner_obj_sort_name_no_case;
class KELM_EXPORT owner_owner_owner_obj_sort_name_no_case;
class KELM_EXPORT obj_sort_full_path_name_no_case;
class KELM_EXPORT obj_sort_by_type_name;

extern template class KELM_EXPORT keyed_sorter<obj_sort_name>;
extern template class KELM_EXPORT keyed_sorter<obj_sort_name_no_case>;
extern template class KELM_EXPORT keyed_sorter<owner_obj_sort_name_no_case>;
extern template class KELM_EXPORT keyed_sorter<owner_owner_obj_sort_name_no_case>;
extern template class KELM_EXPORT keyed_sorter<owner_owner_owner_obj_sort_name_no_case>;
extern template class KELM_EXPORT keyed_sorter<obj_sort_full_path_name_no_case>;
extern template class KELM_EXPORT keyed_sorter<obj_sort_by_type_name, u32>;

/// By name, byte by byte; a name that begins another comes first.
class KELM_EXPORT obj_sort_name : public keyed_sorter<obj_sort_name> {};

/// By name, blind to case; here as below that means: as C strings, with letters as lower case.
class KELM_EXPORT obj_sort_name_no_case : public keyed_sorter<obj_sort_name_no_case> {};

/// By "owner.name", blind to case.  Where there is no owner its name is empty, and the point stays.
class KELM_EXPORT owner_obj_sort_name_no_case : public keyed_sorter<owner_obj_sort_name_no_case> {};

/// By the names of two levels of owners and the own one.
class KELM_EXPORT owner_owner_obj_sort_name_no_case : public keyed_sorter<owner_owner_obj_sort_name_no_case> {
};

/// By the names of three levels of owners and the own one.
class KELM_EXPORT owner_owner_owner_obj_sort_name_no_case
    : public keyed_sorter<owner_owner_owner_obj_sort_name_no_case> {};

/// By object_full_path_name, without quotes, blind to case.
class KELM_EXPORT obj_sort_full_path_name_no_case : public keyed_sorter<obj_sort_full_path_name_no_case> {};

/// By the name of the type in the object's model, byte by byte.  The keys are kept by type: of two models that
/// name a type differently, the first to be asked gives the name.
class KELM_EXPORT obj_sort_by_type_name : public keyed_sorter<obj_sort_by_type_name, u32> {};

/// As the objects stand: siblings of one type by their positions, all others by type.  Keeps nothing.
/// Objects of one type with different owners are compared by their positions all the same.
class KELM_EXPORT obj_sort_order : public sorter {
public:
    bool do_it(const object* a, const object* b) const override;
};

// Orders of meta things, for lists shown to users: function objects that answer whether `a` comes before `b`.
// Names are compared as C strings, byte by byte or blind to case.  None takes a null.

/// Types by name.
class KELM_EXPORT meta_object_name_sorter {
public:
    /// \param case_sensitive  false: letters compare as lower case
    explicit meta_object_name_sorter(bool case_sensitive) : case_sensitive_(case_sensitive) {}
    /// \returns whether `a` comes before `b`
    bool operator()(const meta_object* a, const meta_object* b) const;

private:
    bool case_sensitive_;
};

/// Properties by name.
class KELM_EXPORT meta_property_name_sorter {
public:
    /// \param case_sensitive  false: letters compare as lower case
    explicit meta_property_name_sorter(bool case_sensitive) : case_sensitive_(case_sensitive) {}
    /// \returns whether `a` comes before `b`
    bool operator()(const meta_property* a, const meta_property* b) const;

private:
    bool case_sensitive_;
};

/// Compositions by name, or by alternative name.
class KELM_EXPORT meta_composition_name_sorter {
public:
    /// \param case_sensitive        false: letters compare as lower case
    /// \param use_alternative_name  compares alternative names instead
    meta_composition_name_sorter(bool case_sensitive, bool use_alternative_name)
        : case_sensitive_(case_sensitive), use_alternative_name_(use_alternative_name) {}
    /// \returns whether `a` comes before `b`
    bool operator()(const meta_composition* a, const meta_composition* b) const;

private:
    bool case_sensitive_;
    bool use_alternative_name_;
};

/// Types by name, or by alternative name, each read once and kept until clear().
/// A copy has a copy of the names: pass it to algorithms by std::ref.
class KELM_EXPORT meta_obj_sort_name {
public:
    /// \param case_sensitive        false: letters compare as lower case
    /// \param use_alternative_name  compares alternative names instead
    meta_obj_sort_name(bool case_sensitive, bool use_alternative_name)
        : case_sensitive_(case_sensitive), use_alternative_name_(use_alternative_name) {}
    /// \returns whether `a` comes before `b`
    bool operator()(const meta_object* a, const meta_object* b) const;
    /// Forgets the names.
    void clear() { cache_.clear(); }

private:
    const std::string& name(const meta_object* of) const;

    bool case_sensitive_;
    bool use_alternative_name_;
    mutable std::map<const meta_object*, std::string> cache_;
};

} // namespace kelm
