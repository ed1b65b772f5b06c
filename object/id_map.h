// The objects of a model by id: a table in three steps, since ids are dense and ascend.
// It owns nothing.
#pragma once

#include <kelm/types.h>

#include <array>
#include <memory>
#include <vector>

namespace kelm {

class object_impl;

/// Finding is two reads beyond the root; an id costs at most one leaf, whatever a hostile stream asks for.
class id_map {
public:
    object_impl* find(u32 id) const {
        const std::size_t top = id >> 20;
        if (top >= root_.size() || !root_[top]) return nullptr;
        const auto& place = (*root_[top])[id >> 10 & 1023];
        return place ? place->objects[id & 1023] : nullptr;
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
        for (std::size_t top = 0; left != 0 && top != root_.size(); ++top)
            for (std::size_t mid = 0; root_[top] && left != 0 && mid != 1024; ++mid) {
                const leaf* const ids = (*root_[top])[mid].get();
                for (std::size_t low = 0; ids && left != 0 && low != 1024; ++low)
                    if (object_impl* const there = ids->objects[low]) {
                        --left;
                        visit(static_cast<u32>(top << 20 | mid << 10 | low), there);
                    }
            }
    }

private:
    struct leaf {
        std::array<object_impl*, 1024> objects{};
    };
    using branch = std::array<std::unique_ptr<leaf>, 1024>;

    std::vector<std::unique_ptr<branch>> root_; // as long as the highest id needs
    std::size_t size_ = 0;
};

} // namespace kelm
