// The silent edits of bases, with their inheritors in step, and of refusals to inherit.
// The protocol around a change of the list is inherit_mutations.cpp.
#include "object/base_search.h"
#include "object/object_impl.h"

#include <algorithm>
#include <set>
#include <unordered_set>

namespace kelm {

namespace {

using base_list = std::unique_ptr<std::vector<object_impl*>>;

void enter_inheritor(std::unique_ptr<back_links>& list, object_impl* who) {
    if (!list) list = std::make_unique<back_links>();
    list->add(who);
}

void strike_inheritor(std::unique_ptr<back_links>& list, object_impl* who) {
    if (!list) return;
    list->remove_member(who);
    if (list->empty()) list.reset();
}

/// \returns the place of `base`, looked for at `position` first; npos when it is no base
std::size_t place_of(const base_list& list, const object_impl* base, std::size_t position) {
    if (!list) return npos;
    if (position < list->size() && (*list)[position] == base) return position;
    const auto at = std::ranges::find(*list, base);
    return at == list->end() ? npos : static_cast<std::size_t>(at - list->begin());
}

void insert_at(base_list& list, object_impl* base, std::size_t position) {
    if (!list) list = std::make_unique<std::vector<object_impl*>>();
    list->insert(list->begin() + static_cast<std::ptrdiff_t>(position), base);
}

void erase_at(base_list& list, std::size_t position) {
    list->erase(list->begin() + static_cast<std::ptrdiff_t>(position));
    if (list->empty()) list.reset();
}

} // namespace

bool object_impl::may_inherit_from(const object_impl& base) const {
    return &base != this && base.model_ == model_ && place_of(links().inherits_from, &base, 0) == npos &&
           !inherits_in_turn(base, *this);
}

void object_impl::insert_base(object& base, std::size_t position) {
    object_impl& what = *impl_of(&base);
    if (position > (bases() ? bases()->size() : 0) || !may_inherit_from(what)) return;
    link_base(what, position);
}

// Both ends, or none.
void object_impl::link_base(object_impl& base, std::size_t position) {
    enter_inheritor(base.made_links().inheritors, this);
    try {
        insert_at(made_links().inherits_from, &base, position);
    } catch (...) {
        strike_inheritor(base.made_links().inheritors, this);
        throw;
    }
}

void object_impl::append_bases(const std::vector<object_impl*>& bases, bool may_close_circles) {
    std::unordered_set<const object_impl*> known;
    if (links().inherits_from) known.insert(links().inherits_from->begin(), links().inherits_from->end());
    for (object_impl* const base : bases) {
        if (!base || !known.insert(base).second || base == this || base->model_ != model_ ||
            (may_close_circles && inherits_in_turn(*base, *this)))
            continue;
        link_base(*base, links().inherits_from ? links().inherits_from->size() : 0);
    }
}

void object_impl::take_base(object& base, std::size_t position) {
    object_impl& what = *impl_of(&base);
    const std::size_t place = place_of(links().inherits_from, &what, position);
    if (place == npos) return;
    erase_at(made_links().inherits_from, place);
    strike_inheritor(what.made_links().inheritors, this);
}

void object_impl::exchange_base(object& base, object& former, std::size_t position) {
    object_impl& what = *impl_of(&base);
    object_impl& gone = *impl_of(&former);
    const std::size_t place = place_of(links().inherits_from, &gone, position);
    if (place == npos || !may_inherit_from(what)) return;
    enter_inheritor(what.made_links().inheritors, this); // first: it may fail
    (*made_links().inherits_from)[place] = &what;
    strike_inheritor(gone.made_links().inheritors, this);
}

void object_impl::move_base(object& base, std::size_t position) {
    object_impl* const what = impl_of(&base);
    const std::size_t place = place_of(links().inherits_from, what, position);
    if (place == npos || position >= links().inherits_from->size()) return;
    auto& listed = *made_links().inherits_from;
    listed.erase(listed.begin() + static_cast<std::ptrdiff_t>(place));
    insert_at(made_links().inherits_from, what, position);
}

std::vector<u32>& object_impl::made_marks() {
    auto& marks = made_links().not_inheritable;
    if (!marks) marks = std::make_unique<std::vector<u32>>();
    return *marks;
}

void object_impl::mark_not_inheritable(u32 id, bool flag) {
    if (flag == is_property_not_inheritable(id)) return;
    if (flag) {
        made_marks().push_back(id);
        return;
    }
    auto& marks = made_links().not_inheritable;
    std::erase(*marks, id);
    if (marks->empty()) marks.reset();
}

void object_impl::mark_not_inheritable(const std::vector<u32>& ids) {
    if (ids.empty()) return;
    std::vector<u32>& marks = made_marks();
    std::set<u32> known{marks.begin(), marks.end()};
    for (const u32 id : ids)
        if (known.insert(id).second) marks.push_back(id);
}

void object_impl::unlink_bases(bool whole_model) {
    for (std::size_t i = bases() ? bases()->size() : 0; i-- != 0;)
        if (object_impl* const base = (*bases())[i]; is_elsewhere(*base, whole_model)) take_base(*base, i);
    for (std::size_t i = inheritor_links() ? inheritor_links()->size() : 0; i-- != 0;)
        if (object_impl* const inheritor = *(inheritor_links()->begin() + static_cast<std::ptrdiff_t>(i));
            is_elsewhere(*inheritor, whole_model))
            inheritor->take_base(*this, 0);
}

} // namespace kelm
