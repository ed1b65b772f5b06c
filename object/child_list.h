// The children of one object: ordered by type, and inside one type as the user has put them.
// Owners of children and telling of changes are the object's business.
#pragma once

#include "util/gap_vector.h"

#include <kelm/types.h>

#include <vector>

namespace kelm {

class object_impl;

/// One run a type.  Every position counts inside the run.
class child_list {
public:
    bool empty() const { return count_ == 0; }
    std::size_t size() const { return count_; }
    /// \returns the first child of the lowest type; the list is not empty
    object_impl* front() const { return runs_.front().objects.front(); }

    std::size_t run_size(u32 type) const;
    /// \returns null past the end
    object_impl* at(u32 type, std::size_t position) const;
    /// \returns npos for a stranger
    std::size_t position_of(const object_impl& child) const;
    /// \param position  at most the size of the run
    void insert(object_impl& child, std::size_t position);
    /// \returns where it stood; npos, and nothing happens, for a stranger
    std::size_t remove(const object_impl& child);
    /// Puts a child at another place of its run, the last for a position behind the end; nothing happens for a stranger.
    void move(const object_impl& child, std::size_t position);

    /// Appends all, or the run of one type.
    void append_to(std::vector<object*>& out) const;
    void append_run_to(std::vector<object*>& out, u32 type) const;
    /// Calls `visit` for each child; the list must not change meanwhile.
    template <class Visit>
    void for_each(Visit&& visit) const {
        for (const run& r : runs_)
            for (object_impl* child : r.objects) visit(*child);
    }

private:
    struct run {
        u32 type;
        gap_vector<object_impl*> objects; // never empty
    };
    using place = std::vector<run>::const_iterator;
    place find(u32 type) const;

    std::vector<run> runs_; // ascending by type
    std::size_t count_ = 0;
};

} // namespace kelm
