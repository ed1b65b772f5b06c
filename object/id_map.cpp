// Entering and taking out ids.
// Leaves stay when they are empty: ids come back with undo.
#include "object/id_map.h"

namespace kelm {

bool id_map::enter(u32 id, object_impl* what) {
    const std::size_t top = id >> 20;
    if (top >= root_.size()) root_.resize(top + 1);
    if (!root_[top]) root_[top] = std::make_unique<branch>();
    auto& place = (*root_[top])[id >> 10 & 1023];
    if (!place) place = std::make_unique<leaf>();
    object_impl*& slot = place->objects[id & 1023];
    if (slot) return false;
    slot = what;
    ++size_;
    return true;
}

void id_map::leave(u32 id, const object_impl* what) {
    if (find(id) != what || !what) return;
    (*root_[id >> 20])[id >> 10 & 1023]->objects[id & 1023] = nullptr;
    --size_;
}

} // namespace kelm
