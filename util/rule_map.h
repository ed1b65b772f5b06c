// Rules of an application by what they are for, owned as clones.
// When a rule is asked, and what its answer means, is the business of whoever holds the map.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace kelm {

/// One rule a key.  A rule is handed out with a share in it: setting another, also from inside the rule, frees it only
/// when nobody uses it any more.
/// \tparam Key   a type's id, or a pair of ids
/// \tparam Rule  has `Rule* clone() const`
template <class Key, class Rule>
class rule_map {
public:
    struct entry {
        Key key;
        std::shared_ptr<Rule> rule;
    };

    /// Stores a clone, made before the former rule goes: `rule` may be that very one.  The key goes last in order.
    /// A rule that gives no clone leaves the key without one.
    void set(const Key& key, const Rule& rule) {
        std::shared_ptr<Rule> made{rule.clone()};
        if (made)
            by_key_[key] = {std::move(made), next_turn_++};
        else
            by_key_.erase(key);
    }
    /// \returns null when there is none
    std::shared_ptr<Rule> of(const Key& key) const {
        const auto found = by_key_.find(key);
        return found == by_key_.end() ? nullptr : found->second.rule;
    }
    bool holds(const Key& key) const { return by_key_.contains(key); }

    /// \returns all, those first that were set first
    std::vector<entry> in_order_of_setting() const {
        std::map<std::size_t, entry> by_turn;
        for (const auto& [key, held] : by_key_) by_turn.emplace(held.turn, entry{key, held.rule});
        std::vector<entry> all;
        all.reserve(by_turn.size());
        for (auto& [turn, each] : by_turn) all.push_back(std::move(each));
        return all;
    }

private:
    struct held_rule {
        std::shared_ptr<Rule> rule;
        std::size_t turn = 0;
    };

    std::map<Key, held_rule> by_key_;
    std::size_t next_turn_ = 0;
};

} // namespace kelm
