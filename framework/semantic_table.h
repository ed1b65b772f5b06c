// The hooks of a type by kind: 45 lists, each made when its first hook comes.
// Which types pass which hooks on is the business of the meta objects.
#pragma once

#include <kelm/semantic.h>

#include <array>
#include <memory>
#include <vector>

namespace kelm {

/// Marks the library's own hook behind reads, which touches only values that are absent.
class supplies_absent_values {
protected:
    supplies_absent_values() = default;
    virtual ~supplies_absent_values() = default;
};

/// Hooks by kind.  A meta object owns one for its own hooks and one merged with its bases; objects borrow the
/// merged one.
class semantic_table {
public:
    using hooks = std::vector<shared_ptr<semantic>>;

    /// \returns the list of a kind; null when it has none, or is not 0 to 44
    const hooks* of(int kind) const {
        return kind >= 0 && kind < all_semantics::size ? lists_[static_cast<std::size_t>(kind)].get()
                                                       : nullptr;
    }
    template <class Hook>
    const hooks* of() const {
        return lists_[static_cast<std::size_t>(Hook::kind)].get();
    }

    /// Files `hook` under its kind.
    /// \returns false, with nothing entered, when the kind is out of range or its list holds one of the same id
    bool add(const shared_ptr<semantic>& hook);

    /// Appends the hooks of `other` that `keep(hook)` lets through, save those whose id a kind's list holds already.
    template <class Keep>
    void merge(const semantic_table& other, Keep keep) {
        for (const auto& list : other.lists_) {
            if (!list) continue;
            for (const auto& hook : *list)
                if (keep(*hook)) add(hook);
        }
    }

    /// \returns the first hook with that id, by ascending kind; null when there is none
    semantic* find(u32 id) const;
    bool empty() const;

    /// \returns whether the one hook behind reads is the library's own, which touches only values that are absent.
    ///          Reads use it to skip the copy that other hooks must be given.
    bool reads_are_plain() const { return reads_are_plain_; }

private:
    std::array<std::unique_ptr<hooks>, all_semantics::size> lists_{};
    bool reads_are_plain_ = false;
};

} // namespace kelm
