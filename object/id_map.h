// The objects of a model by id: pages for ids that are dense, as ids of models are, and a tree for those far apart.
// It owns nothing.
#pragma once

#include <kelm/types.h>

#include <array>
#include <map>
#include <memory>
#include <vector>

namespace kelm {

class object_impl;

/// Finding is two reads for an id that has a page.  An id costs a few hundred bytes at most, whatever a stream asks for:
/// the table of pages only grows with the number of ids.
class id_map {
public:
    object_impl* find(u32 id) const {
        const std::size_t at = id / page_size;
        if (at >= pages_.size()) return find_far(id);
        return pages_[at] ? pages_[at]->objects[id % page_size] : nullptr;
    }
    /// \returns false, and nothing changes, when the id is taken
    bool enter(u32 id, object_impl* what);
    /// Takes the id out when it stands for that very object.
    void leave(u32 id, const object_impl* what);
    std::size_t size() const { return size_; }

    /// Calls `visit(id, object)` in ascending order; the map may change meanwhile, save for new ids.
    template <class Visit>
    void for_each(Visit&& visit) const {
        std::size_t left = size_; // most models are small: behind the last id there is nothing to look at
        for (std::size_t at = 0; left != 0 && at != pages_.size(); ++at) {
            const page* const ids = pages_[at].get();
            for (std::size_t low = 0; ids && left != 0 && low != page_size; ++low)
                if (object_impl* const there = ids->objects[low]) {
                    --left;
                    visit(static_cast<u32>(at * page_size + low), there);
                }
        }
        for (auto at = far_.begin(); left != 0 && at != far_.end(); ++at)
            if (object_impl* const there = at->second) {
                --left;
                visit(at->first, there);
            }
    }

private:
    static constexpr std::size_t page_size = 32;
    struct page {
        std::array<object_impl*, page_size> objects{};
    };

    object_impl* find_far(u32 id) const;
    object_impl*& slot_of(u32 id);
    object_impl*& slot_in_page(u32 id);
    void make_room(std::size_t page_count);

    std::vector<std::unique_ptr<page>> pages_;
    std::map<u32, object_impl*> far_; // ids behind the last page
    std::size_t size_ = 0;
};

} // namespace kelm
