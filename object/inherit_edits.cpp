// The silent edits of bases, with their inheritors in step, and of refusals to inherit.
// The protocol around a change of the list is inherit_mutations.cpp.
#include "object/base_search.h"
#include "object/object_impl.h"

#include <algorithm>
#include <set>
#include <unordered_set>

namespace kelm {

namespace {

using links = std::unique_ptr<std::vector<object_impl*>>;

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
std::size_t place_of(const links& list, const object_impl* base, std::size_t position) {
    if (!list) return npos;
    if (position < list->size() && (*list)[position] == base) return position;
    const auto at = std::ranges::find(*list, base);
    return at == list->end() ? npos : static_cast<std::size_t>(at - list->begin());
}

void insert_at(links& list, object_impl* base, std::size_t position) {
    if (!list) list = std::make_unique<std::vector<object_impl*>>();
    list->insert(list->begin() + static_cast<std::ptrdiff_t>(position), base);
}

void erase_at(links& list, std::size_t position) {
    list->erase(list->begin() + static_cast<std::ptrdiff_t>(position));
    if (list->empty()) list.reset();
}

} // namespace

bool object_impl::may_inherit_from(const object_impl& base) const {
    return &base != this && base.model_ == model_ && place_of(inherits_from_, &base, 0) == npos &&
           !inherits_in_turn(base, *this);
}

void object_impl::insert_base(object& base, std::size_t position) {
    object_impl& what = *impl_of(&base);
    if (position > (inherits_from_ ? inherits_from_->size() : 0) || !may_inherit_from(what)) return;
    insert_at(inherits_from_, &what, position);
    enter_inheritor(what.inheritors_, this);
}

void object_impl::append_bases(const std::vector<object_impl*>& bases, bool may_close_circles) {
    std::unordered_set<const object_impl*> known;
    if (inherits_from_) known.insert(inherits_from_->begin(), inherits_from_->end());
    for (object_impl* const base : bases) {
        if (!base || !known.insert(base).second || base == this || base->model_ != model_ ||
            (may_close_circles && inherits_in_turn(*base, *this)))
            continue;
        insert_at(inherits_from_, base, inherits_from_ ? inherits_from_->size() : 0);
        enter_inheritor(base->inheritors_, this);
    }
}

void object_impl::take_base(object& base, std::size_t position) {
    object_impl& what = *impl_of(&base);
    const std::size_t place = place_of(inherits_from_, &what, position);
    if (place == npos) return;
    erase_at(inherits_from_, place);
    strike_inheritor(what.inheritors_, this);
}

void object_impl::exchange_base(object& base, object& former, std::size_t position) {
    object_impl& what = *impl_of(&base);
    object_impl& gone = *impl_of(&former);
    const std::size_t place = place_of(inherits_from_, &gone, position);
    if (place == npos || !may_inherit_from(what)) return;
    (*inherits_from_)[place] = &what;
    strike_inheritor(gone.inheritors_, this);
    enter_inheritor(what.inheritors_, this);
}

void object_impl::move_base(object& base, std::size_t position) {
    object_impl* const what = impl_of(&base);
    const std::size_t place = place_of(inherits_from_, what, position);
    if (place == npos || position >= inherits_from_->size()) return;
    inherits_from_->erase(inherits_from_->begin() + static_cast<std::ptrdiff_t>(place));
    insert_at(inherits_from_, what, position);
}

void object_impl::mark_not_inheritable(u32 id, bool flag) {
    if (flag == is_property_not_inheritable(id)) return;
    if (flag) {
        if (!not_inheritable_) not_inheritable_ = std::make_unique<std::vector<u32>>();
        not_inheritable_->push_back(id);
        return;
    }
    std::erase(*not_inheritable_, id);
    if (not_inheritable_->empty()) not_inheritable_.reset();
}

void object_impl::mark_not_inheritable(const std::vector<u32>& ids) {
    if (ids.empty()) return;
    if (!not_inheritable_) not_inheritable_ = std::make_unique<std::vector<u32>>();
    std::set<u32> known{not_inheritable_->begin(), not_inheritable_->end()};
    for (const u32 id : ids)
        if (known.insert(id).second) not_inheritable_->push_back(id);
}

void object_impl::unlink_bases(bool whole_model) {
    if (inherits_from_) {
        for (object_impl* const base : std::vector<object_impl*>(*inherits_from_))
            if (is_elsewhere(*base, whole_model)) take_base(*base, 0);
    }
    if (inheritors_) {
        for (object_impl* const inheritor : inheritors_->copy())
            if (is_elsewhere(*inheritor, whole_model)) inheritor->take_base(*this, 0);
    }
}

} // namespace kelm
