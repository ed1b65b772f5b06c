// A stretch of history as its messages tell it, from the newest back: who came, went, moved and was spoken of.
// What values were is delta_values.h.
#pragma once

#include <kelm/kelm.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace kelm::testing {

template <class List, class Value>
bool contains(const List& list, const Value& value) {
    return std::ranges::find(list, value) != list.end();
}

/// Objects are told by their ids, 0 stands for none.
class delta_walk {
public:
    struct order_change {
        u32 child, from, to;
    };

    /// \param stop  of the history; what comes behind it is walked
    delta_walk(kelm::model& in, const message* stop);

    bool is_gone(u32 id) const { return parents_of_gone.contains(id); }
    bool came(u32 id) const { return owners_of_came.contains(id); }
    bool is_looked_at(u32 id) const { return looked_at_ids_.contains(id); }
    /// \returns the messages of a value, newest first; null when there is none
    const std::vector<message*>* messages_of(u32 id, u32 property) const;

    // What is gone, and what came, each below one another.
    std::vector<u32> top_of_gone;
    std::map<u32, std::vector<u32>> below_gone;
    std::map<u32, u32> parents_of_gone; ///< of all; 0 on top
    std::map<u32, u32> owners_at_deletion;
    std::map<u32, u32> places; ///< of what is gone, where it was taken out of a list
    std::vector<u32> top_of_came;
    std::map<u32, std::vector<u32>> below_came;
    std::map<u32, u32> owners_of_came; ///< of all

    // What was there before and is spoken of.
    std::vector<u32> looked_at;       ///< in the order in which it is met; who only inherits comes last
    std::size_t spoken_of = 0;        ///< how many of these messages speak of
    std::map<u32, u32> former_owners; ///< of what has moved
    std::map<u32, std::vector<order_change>> orders; ///< by owner
    /// Children that were put in order, by owner and type, and the runs that others came into or left.
    std::map<std::pair<u32, u32>, std::set<u32>> ordered_in_run;
    std::set<std::pair<u32, u32>> runs_that_grew_or_shrank;

private:
    void walk_back(message& what);
    void look_at(u32 id);
    void meet_making(u32 id, message& what);
    void meet_deletion(u32 id, message& what);
    void forget_gone(u32 id);
    void meet_order(u32 id, message& what);
    void look_at_inheritors(kelm::model& in);

    std::set<u32> looked_at_ids_;
    std::map<std::pair<u32, u32>, std::vector<message*>> values_; // by object and property, newest first
};

} // namespace kelm::testing
