// Walking a log back over copies of its lists, element by element.
// The objects stay as they are; undoing is the business of the messages.
#include "message/read_elements.h"

#include "framework/values.h"
#include "message/vector_messages.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kelm {

namespace {

/// The elements of one list at one moment, borrowed.
using elements = std::vector<abstract_property*>;

elements elements_of(const abstract_property* value) {
    const auto* const list = exact_cast<vector_property>(value);
    return list ? list->elements : elements{};
}

auto at(elements& list, u32 position) { return list.begin() + static_cast<std::ptrdiff_t>(position); }

class walk_back {
public:
    void over(message& what) {
        auto* const change = dynamic_cast<property_change_message_impl*>(&what);
        if (!change || !change->object()) return;
        switch (change->type()) {
        case message_type::property_set: return over(static_cast<property_set_message_impl&>(*change));
        case message_type::property_delete: return over(static_cast<property_delete_message_impl&>(*change));
        case message_type::property_set_vec_prop:
            return over(static_cast<property_set_vec_prop_message_impl&>(*change));
        case message_type::property_insert_vec_prop:
            return over(static_cast<property_insert_vec_prop_message_impl&>(*change));
        case message_type::property_delete_vec_prop:
            return over(static_cast<property_delete_vec_prop_message_impl&>(*change));
        case message_type::element_position_vec_prop:
            return over(static_cast<element_position_vec_prop_message_impl&>(*change));
        default: return;
        }
    }

private:
    /// \returns the list that a message changed, as it was behind the change
    elements& list_behind(const property_change_message_impl& change) {
        const auto [found, is_new] = lists_.try_emplace({&change.edit(), change.property_type()});
        if (is_new) found->second = elements_of(change.edit().own_value(change.property_type()));
        return found->second;
    }

    void over(property_set_message_impl& set) {
        if (set.is_refresh()) return;
        const bool had_own = set.old_owner() == set.object();
        list_behind(set) = elements_of(had_own ? set.custody(1)->get() : nullptr);
    }

    void over(property_delete_message_impl& deleted) {
        if (!deleted.is_refresh()) list_behind(deleted) = elements_of(deleted.custody(0)->get());
    }

    void over(property_set_vec_prop_message_impl& set) {
        elements& list = list_behind(set);
        value_custody& now = *set.custody(0);
        value_custody& before = *set.custody(1);
        if (set.pos() >= list.size() || now.holds() || !before.holds()) return;
        now.borrow(std::exchange(list[set.pos()], before.get()));
    }

    void over(property_insert_vec_prop_message_impl& inserted) {
        elements& list = list_behind(inserted);
        value_custody& element = *inserted.custody(0);
        if (element.holds()) return; // it never came in
        const auto found = place_of(element.get(), list, inserted.pos());
        if (found == list.end()) return element.borrow(nullptr);
        element.borrow(*found);
        list.erase(found);
    }

    /// A place that holds something else belongs to a history in which elements got lost.
    static elements::iterator place_of(const abstract_property* known, elements& list, u32 position) {
        const bool is_there = position < list.size();
        if (is_there && (!known || list[position] == known || known->equals(list[position])))
            return at(list, position);
        return std::ranges::find(list, known);
    }

    void over(property_delete_vec_prop_message_impl& deleted) {
        elements& list = list_behind(deleted);
        if (deleted.pos() <= list.size() && deleted.custody(0)->holds())
            list.insert(at(list, deleted.pos()), deleted.custody(0)->get());
    }

    void over(element_position_vec_prop_message_impl& moved) {
        elements& list = list_behind(moved);
        if (moved.old_pos() >= list.size() || moved.new_pos() >= list.size()) return;
        abstract_property* const element = list[moved.new_pos()];
        list.erase(at(list, moved.new_pos()));
        list.insert(at(list, moved.old_pos()), element);
    }

    std::map<std::pair<const silent_edit*, u32>, elements> lists_;
};

} // namespace

void find_read_elements(const std::vector<message*>& messages, std::size_t first) {
    walk_back walk;
    for (std::size_t i = messages.size(); i-- != first;) walk.over(*messages[i]);
}

} // namespace kelm
