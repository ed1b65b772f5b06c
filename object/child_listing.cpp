// Reading the children of an object: listings with filters and sorters, counts, positions.
// The list itself is child_list.
#include "object/read_in_progress.h"

#include <kelm/filters.h>
#include <kelm/sorters.h>

#include <algorithm>

namespace kelm {

namespace {

/// Sorts with a bounded merge sort: an order of an application's that contradicts itself costs order, and reads
/// nothing out of bounds.
void sort_by(std::vector<object*>& objects, const sorter& order) {
    std::vector<object*> spare(objects.size());
    const auto before = [&](object* a, object* b) { return order.do_it(a, b); };
    for (std::size_t width = 1; width < objects.size(); width *= 2) {
        for (std::size_t from = 0; from < objects.size(); from += 2 * width) {
            const auto at = [&](std::size_t n) {
                return objects.begin() + static_cast<std::ptrdiff_t>(std::min(from + n, objects.size()));
            };
            std::merge(at(0), at(width), at(width), at(2 * width), spare.begin() + (at(0) - objects.begin()),
                       before);
        }
        objects.swap(spare);
    }
}

/// Copies what a filter keeps.  The two filters by type are not asked: they stand for the runs of their types.
void select(const child_list& from, const filter& leave_out, std::vector<object*>& out) {
    if (const auto* const one = dynamic_cast<const obj_filter_type*>(&leave_out)) {
        from.append_run_to(out, one->type());
        return;
    }
    if (const auto* const several = dynamic_cast<const obj_filter_types*>(&leave_out)) {
        for (const u32 type : several->types()) from.append_run_to(out, type);
        return;
    }
    std::vector<object*> all; // a filter of an application's may change the list while it is asked
    from.append_to(all);
    constexpr std::size_t usual_size = 8;
    out.reserve(usual_size);
    std::ranges::copy_if(all, std::back_inserter(out), [&](object* each) { return !leave_out.do_it(each); });
}

} // namespace

std::size_t object_impl::children(std::vector<object*>& out, filter* leave_out, sorter* order) const {
    out.clear();
    const read_in_progress guard{model_};
    object* const face = face_for_hooks();
    const bool passed = run_hooks<pre_children_get_semantic>(
        semantic_table_, [&](pre_children_get_semantic& h) { return h.do_it(face); });
    if (!passed || !children_) return 0; // the hooks before may have made the children
    if (leave_out)
        select(*children_, *leave_out, out);
    else
        children_->append_to(out);
    if (order) sort_by(out, *order);
    if (!run_hooks<post_children_get_semantic>(semantic_table_,
                                               [&](post_children_get_semantic& h) { return h.do_it(face); }))
        out.clear();
    return out.size();
}

std::size_t object_impl::children(std::vector<object*>& out, sorter* order) const {
    return children(out, nullptr, order);
}
std::size_t object_impl::children(std::vector<object*>& out, filter* leave_out) const {
    return children(out, leave_out, nullptr);
}
std::size_t object_impl::children(std::vector<object*>& out) const { return children(out, nullptr, nullptr); }

std::vector<object*> object_impl::children(filter* leave_out, sorter* order) const {
    std::vector<object*> out;
    children(out, leave_out, order);
    return out;
}
std::vector<object*> object_impl::children(sorter* order) const { return children(nullptr, order); }
std::vector<object*> object_impl::children(filter* leave_out) const { return children(leave_out, nullptr); }
std::vector<object*> object_impl::children() const { return children(nullptr, nullptr); }

std::size_t object_impl::child_count(u32 type) const {
    obj_filter_type of_type{type};
    return child_count(&of_type);
}

std::size_t object_impl::child_count(filter* leave_out) const {
    if (!children_) return 0;
    if (!leave_out) return children_->size();
    if (const auto* const one = dynamic_cast<const obj_filter_type*>(leave_out))
        return children_->run_size(one->type());
    const read_in_progress guard{model_};
    std::vector<object*> all;
    children_->append_to(all);
    return static_cast<std::size_t>(
        std::ranges::count_if(all, [&](const object* each) { return !leave_out->do_it(each); }));
}

std::size_t object_impl::child_position(object* child) const {
    return children_ && child && impl_of(child)->is_listed() ? children_->position_of(*impl_of(child)) : npos;
}

object* object_impl::child_at(u32 type, std::size_t index) const {
    return children_ ? children_->at(type, index) : nullptr;
}

} // namespace kelm
