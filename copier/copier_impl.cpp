// What the copier does itself: questions about the top nodes, and keeping copies and pastes apart.
// Everything else is done by its parts.
#include "copier/copier_impl.h"

#include "copier/collector.h"
#include "copier/paste.h"
#include "util/scoped_mark.h"

#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object.h>

#include <algorithm>

namespace kelm {

namespace {

/// Makes a paste known as the running one.
class running_mark {
public:
    running_mark(const paste_run*& mark, const paste_run& run) : mark_(mark) { mark_ = &run; }
    running_mark(const running_mark&) = delete;
    running_mark& operator=(const running_mark&) = delete;
    ~running_mark() { mark_ = nullptr; }

private:
    const paste_run*& mark_;
};

} // namespace

copier_impl::copier_impl(const model& source) { source.model_id(snapshot_.source_model_id); }

copier_impl::~copier_impl() = default;

bool copier_impl::copy_object(object* what, bool selected) {
    if (running_paste_) return false;
    const auto self = weak_from_this().lock(); // a rule may let go of the last pointer to the copier
    const scoped_mark mark{is_copying_};
    return collector{snapshot_, rules_, positions_}.copy(what, selected);
}

bool copier_impl::paste(model* destination, const std::vector<object*>& owners,
                        std::vector<object*>* pasted) {
    if (!destination || is_busy()) return false;
    const auto self = weak_from_this().lock(); // a rule may let go of the last pointer to the copier
    paste_run run{snapshot_, rules_, *destination, owners};
    const running_mark mark{running_paste_, run};
    const bool stands = run.run();
    // Kept: also of a paste that has failed.  What it made is deleted by now, unless it was committed meanwhile; what
    // stood in for a new object is there as before.
    if (pasted) run.pasted_objects(*pasted);
    return stands;
}

bool copier_impl::can_paste_into(const object* owner) const {
    model* const in = owner ? owner->model() : nullptr;
    const meta_object* const type = in ? in->meta_model()->find_meta_object(owner->type()) : nullptr;
    return type && std::ranges::any_of(snapshot_.top_nodes, [type](const copy_node& top) {
               return type->has_composition(top.type);
           });
}

GUID copier_impl::destination_model_id() const {
    GUID id;
    if (running_paste_) running_paste_->destination().model_id(id);
    return id;
}

void copier_impl::selected_objects(std::vector<std::pair<u32, u32>>& out) const {
    for (const copy_node& top : snapshot_.top_nodes)
        if (top.selected) out.emplace_back(top.type, top.id);
}

bool copier_impl::has_selected_object(u32 id) const {
    return std::ranges::any_of(snapshot_.top_nodes,
                               [id](const copy_node& top) { return top.selected && top.id == id; });
}

bool copier_impl::read(std::istream& in) { return !is_busy() && read_snapshot(in, snapshot_); }

void copier_impl::pasted_objects(std::vector<object*>& out) const {
    if (running_paste_) running_paste_->pasted_objects(out);
}

} // namespace kelm
