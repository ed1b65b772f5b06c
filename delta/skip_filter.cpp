// Reading the attributes that keep a property out of summaries.
// The attributes themselves are declared with the built-in ones.
#include "delta/skip_filter.h"

#include "meta/marked_property.h"

#include <kelm/meta_model.h>
#include <kelm/object.h>

namespace kelm {

summary_part part_in_summary(const meta_property& which) {
    if (is_marked(which, attribute_id::skip_in_summary) || is_marked(which, attribute_id::non_persistent))
        return summary_part::left_out;
    return is_marked(which, attribute_id::skip_in_summary_unless_local) ? summary_part::kept_where_own
                                                                        : summary_part::kept;
}

bool is_left_out(summary_part part, u32 id, const object& of) {
    return part == summary_part::left_out ||
           (part == summary_part::kept_where_own && !of.defines_property(id));
}

bool skip_in_tran_history_fp::do_it(object* of, meta_property* which) {
    return is_left_out(part_in_summary(*which), which->id(), *of);
}

} // namespace kelm
