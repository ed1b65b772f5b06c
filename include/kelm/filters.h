// Strategies of listings: a filter says what is left out.
// How a listing uses them is object::children.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <vector>

namespace kelm {

/// Says which objects a listing leaves out.
class KELM_EXPORT filter {
public:
    virtual ~filter() = default;
    /// \returns true for an object that is left out
    virtual bool do_it(const object* candidate) const = 0;

protected:
    filter() = default;
    filter(const filter&) = default;
    filter& operator=(const filter&) = default;
};

/// Passes the objects of one type; with `derived`, also those of the types derived from it.
/// Listings of children look only at the type and take its run as it stands.
class KELM_EXPORT obj_filter_type : public filter {
public:
    /// Passes objects of type 0.
    obj_filter_type() = default;
    explicit obj_filter_type(u32 type, bool derived = false);
    bool do_it(const object* candidate) const override;
    u32 type() const { return type_; }

private:
    u32 type_ = 0;
    bool derived_ = false;
    meta_object* meta_ = nullptr; // of the application meta model; only with derived_
};

/// Passes the objects of several types; with `derived`, also those of the types derived from them.
class KELM_EXPORT obj_filter_types : public filter {
public:
    explicit obj_filter_types(std::vector<u32> types, bool derived = false);
    bool do_it(const object* candidate) const override;
    const std::vector<u32>& types() const { return types_; }

private:
    std::vector<u32> types_;
    bool derived_ = false;
    std::vector<meta_object*> metas_; // of the application meta model; only with derived_
};

} // namespace kelm
