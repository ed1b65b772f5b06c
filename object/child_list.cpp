// The children of one object by type.
// No hooks, no messages.
#include "object/child_list.h"

#include "object/object_impl.h"

#include <algorithm>

namespace kelm {

namespace {

/// Children mostly come and go at the ends of their run; only what is neither first nor last is searched for.
std::size_t place_in(const gap_vector<object_impl*>& objects, const object_impl* child) {
    if (objects.front() == child) return 0;
    if (objects.back() == child) return objects.size() - 1;
    const auto at = std::find(objects.begin(), objects.end(), child);
    return at == objects.end() ? npos : static_cast<std::size_t>(at - objects.begin());
}

} // namespace

child_list::place child_list::find(u32 type) const {
    return std::lower_bound(runs_.begin(), runs_.end(), type,
                            [](const run& r, u32 wanted) { return r.type < wanted; });
}

std::size_t child_list::run_size(u32 type) const {
    const place at = find(type);
    return at != runs_.end() && at->type == type ? at->objects.size() : 0;
}

object_impl* child_list::at(u32 type, std::size_t position) const {
    const place at = find(type);
    return at != runs_.end() && at->type == type && position < at->objects.size() ? at->objects[position]
                                                                                  : nullptr;
}

std::size_t child_list::position_of(const object_impl& child) const {
    const place at = find(child.type());
    return at != runs_.end() && at->type == child.type() ? place_in(at->objects, &child) : npos;
}

void child_list::insert(object_impl& child, std::size_t position) {
    const u32 type = child.type();
    auto at = runs_.begin() + (find(type) - runs_.cbegin());
    if (at == runs_.end() || at->type != type) {
        run first{type, {}}; // no run is ever empty
        first.objects.push_back(&child);
        runs_.insert(at, std::move(first));
    } else if (position >= at->objects.size()) {
        at->objects.push_back(&child);
    } else {
        at->objects.insert(position, &child);
    }
    ++count_;
}

std::size_t child_list::remove(const object_impl& child) {
    const auto at = runs_.begin() + (find(child.type()) - runs_.cbegin());
    if (at == runs_.end() || at->type != child.type()) return npos;
    const std::size_t position = place_in(at->objects, &child);
    if (position == npos) return npos;
    at->objects.erase(position);
    if (at->objects.empty()) runs_.erase(at);
    --count_;
    return position;
}

void child_list::move(const object_impl& child, std::size_t position) {
    const auto at = runs_.begin() + (find(child.type()) - runs_.cbegin());
    if (at == runs_.end() || at->type != child.type()) return;
    const std::size_t from = place_in(at->objects, &child);
    if (from != npos) at->objects.move(from, std::min(position, at->objects.size() - 1));
}

void child_list::append_to(std::vector<object*>& out) const {
    out.reserve(out.size() + count_);
    for (const run& r : runs_) out.insert(out.end(), r.objects.begin(), r.objects.end());
}

void child_list::append_run_to(std::vector<object*>& out, u32 type) const {
    const place at = find(type);
    if (at != runs_.end() && at->type == type) out.insert(out.end(), at->objects.begin(), at->objects.end());
}

} // namespace kelm
