// Which properties a summary leaves out.
// What it says of the others is made by summary.h.
#pragma once

#include <kelm/types.h>

namespace kelm {

/// Leaves properties out of a listing.
class filter_property {
public:
    virtual ~filter_property() = default;
    /// \returns whether the property is left out for that object
    virtual bool do_it(object* of, meta_property* which) = 0;
};

/// What the attributes of a property say about summaries.
enum class summary_part { kept, kept_where_own, left_out };

/// \returns what holds for the property in all objects
summary_part part_in_summary(const meta_property& which);
/// \returns whether a property of which that holds is left out for that object
bool is_left_out(summary_part part, u32 id, const object& of);

/// Leaves out what the attributes 12, 13 (unless the object has a value of its own) and 5 mark.
class skip_in_tran_history_fp final : public filter_property {
public:
    bool do_it(object* of, meta_property* which) override;
};

} // namespace kelm
