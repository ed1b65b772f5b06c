// Strategies of listings: a filter says what is left out.
// How a listing uses them is object::children.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>
#include <vector>

namespace kelm {

/// Says which objects a listing leaves out.  Applications derive filters of their own.
class KELM_EXPORT filter {
public:
    virtual ~filter() = default;
    /// Decides about an object.  It may be asked in any order, and more than once.
    ///
    /// \param candidate  borrowed; the filters below take no null
    /// \returns true for an object that is left out, false for one that passes
    virtual bool do_it(const object* candidate) const = 0;

protected:
    filter() = default;
    filter(const filter&) = default;
    filter& operator=(const filter&) = default;
};

/// Hands a filter to the standard algorithms by value: a copy asks the same filter.
class object_filter {
public:
    /// \param which  borrowed: it must outlive this and all copies
    explicit object_filter(filter& which) : which_(&which) {}
    /// \returns true for an object that is left out
    bool operator()(const object* candidate) const { return which_->do_it(candidate); }

private:
    filter* which_;
};

// Combinations.  They join what is left out, not what passes: `or_filter` passes what both pass, `and_filter`
// what at least one passes.  The operands are borrowed and must outlive the combination; one that was made
// without operands may be assigned to, but not asked.

/// Leaves out what `a` or `b` leaves out; `b` is asked only about what passes `a`.
class KELM_EXPORT or_filter : public filter {
public:
    or_filter() = default;
    /// Of two filters, which are borrowed.
    or_filter(filter* a, filter* b) : a_(a), b_(b) {}
    bool do_it(const object* candidate) const override;

private:
    filter* a_ = nullptr;
    filter* b_ = nullptr;
};

/// Leaves out what both `a` and `b` leave out; `b` is asked only about what `a` leaves out.
class KELM_EXPORT and_filter : public filter {
public:
    and_filter() = default;
    /// Of two filters, which are borrowed.
    and_filter(filter* a, filter* b) : a_(a), b_(b) {}
    bool do_it(const object* candidate) const override;

private:
    filter* a_ = nullptr;
    filter* b_ = nullptr;
};

/// Leaves out what `a` passes.
class KELM_EXPORT not_filter : public filter {
public:
    not_filter() = default;
    /// Of a filter, which is borrowed.
    explicit not_filter(filter* a) : a_(a) {}
    bool do_it(const object* candidate) const override;

private:
    filter* a_ = nullptr;
};

/// Passes the objects of one type; with `derived`, also those of the types derived from it.
/// Listings of children do not ask it, but take the run of exactly this type; inside a combination it is asked.
class KELM_EXPORT obj_filter_type : public filter {
public:
    /// Passes objects of type 0, that is, none.
    obj_filter_type() = default;
    /// \param derived  looks the type up in the application meta model, once and for all; a type that is not
    ///                 there has none derived from it
    explicit obj_filter_type(u32 type, bool derived = false);
    bool do_it(const object* candidate) const override;
    /// \returns the type that passes; 0 for none
    u32 type() const { return type_; }

private:
    u32 type_ = 0;
    bool derived_ = false;
    meta_object* meta_ = nullptr; // of the application meta model; only with derived_
};

/// Passes the objects of several types; with `derived`, also those of the types derived from them.
/// Listings of children do not ask it, but take the runs of exactly these types, in the order of the list.
class KELM_EXPORT obj_filter_types : public filter {
public:
    /// \param types    none leaves out every object
    /// \param derived  as for obj_filter_type
    explicit obj_filter_types(std::vector<u32> types, bool derived = false);
    bool do_it(const object* candidate) const override;
    /// \returns the types that pass, good as long as the filter
    const std::vector<u32>& types() const { return types_; }

private:
    std::vector<u32> types_;
    bool derived_ = false;
    std::vector<meta_object*> metas_; // of the application meta model; only with derived_
};

/// Passes the objects of exactly one type that have a name, compared byte by byte.
class KELM_EXPORT obj_filter_name_and_type : public filter {
public:
    /// \param name  empty: objects without a name pass
    obj_filter_name_and_type(u32 type, std::string name);
    bool do_it(const object* candidate) const override;

private:
    u32 type_;
    std::string name_;
};

/// Passes the objects of exactly one type that have a name in any case of its letters.
/// A zero byte ends a name here.
class KELM_EXPORT obj_filter_name_and_type_no_case : public filter {
public:
    /// \param name  empty: objects without a name pass
    obj_filter_name_and_type_no_case(u32 type, std::string name);
    bool do_it(const object* candidate) const override;

private:
    u32 type_;
    std::string name_;
};

/// Passes the objects of exactly one type but for one: the others beside it.
class KELM_EXPORT filter_type_and_obj : public filter {
public:
    /// \param but  borrowed, and never looked into; null leaves out no object of the type
    filter_type_and_obj(u32 type, const object* but) : type_(type), but_(but) {}
    bool do_it(const object* candidate) const override;

private:
    u32 type_;
    const object* but_;
};

} // namespace kelm
