// What a paste could not do at once.
// What is tried again, and how, is the business of paste_run.
#pragma once

#include <set>
#include <vector>

namespace kelm {

/// What trying an entry again has come to.
enum class retried {
    keep,   ///< not yet
    drop,   ///< never more
    settle, ///< done
    fail    ///< the whole paste fails
};

/// Entries in the order in which they came, each once.
template <class Entry>
class pending_list {
public:
    pending_list() { entries_.reserve(usual_size); }

    void add(const Entry& entry) {
        if (known_.insert(entry).second) entries_.push_back(entry);
    }
    const std::vector<Entry>& entries() const { return entries_; }

    /// Tries all entries in rounds, until a round settles none.  What is added meanwhile is tried in the next round.
    /// \param attempt    told an entry, answers `retried`
    /// \param has_moved  set when one is settled
    /// \returns false when one failed
    template <class Attempt>
    bool retry(Attempt attempt, bool& has_moved) {
        bool again = true;
        while (again && !entries_.empty()) {
            again = false;
            if (!retry_once(attempt, again)) return false;
            has_moved = has_moved || again;
        }
        return true;
    }

private:
    static constexpr std::size_t usual_size = 100;

    template <class Attempt>
    bool retry_once(Attempt& attempt, bool& has_settled) {
        const std::size_t count = entries_.size();
        std::size_t kept = 0;
        for (std::size_t i = 0; i != count; ++i) {
            const Entry entry = entries_[i]; // the list may grow meanwhile
            const retried result = attempt(entry);
            if (result == retried::fail) return false;
            if (result == retried::keep) {
                entries_[kept++] = entry;
                continue;
            }
            known_.erase(entry);
            has_settled = has_settled || result == retried::settle;
        }
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(kept),
                       entries_.begin() + static_cast<std::ptrdiff_t>(count));
        return true;
    }

    std::vector<Entry> entries_;
    std::set<Entry> known_;
};

} // namespace kelm
