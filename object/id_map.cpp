// Entering and taking out ids.
// Places stay when they are empty: ids come back with undo.
#include "object/id_map.h"

namespace kelm {

namespace {

/// How many pages the table may have for each id: one of them in use is as dense as it has to be.
constexpr std::size_t pages_an_id = 8;
constexpr std::size_t pages_at_least = 512;

} // namespace

bool id_map::enter(u32 id, object_impl* what) {
    object_impl*& slot = slot_of(id);
    if (slot) return false;
    slot = what;
    ++size_;
    return true;
}

void id_map::leave(u32 id, const object_impl* what) {
    if (find(id) != what || !what) return;
    slot_of(id) = nullptr;
    --size_;
}

object_impl* id_map::find_far(u32 id) const {
    const auto found = far_.find(id);
    return found == far_.end() ? nullptr : found->second;
}

object_impl*& id_map::slot_of(u32 id) {
    const std::size_t at = id / page_size;
    if (at < pages_.size()) return slot_in_page(id);
    // One that has been here keeps its place, since the map may be under way over it.
    if (const auto found = far_.find(id); found != far_.end()) return found->second;
    if (at >= pages_at_least + pages_an_id * size_) return far_[id];
    make_room(at + 1);
    return slot_in_page(id);
}

object_impl*& id_map::slot_in_page(u32 id) {
    auto& place = pages_[id / page_size];
    if (!place) place = std::make_unique<page>();
    return place->objects[id % page_size];
}

// Each id moves once: the table never gets shorter.
void id_map::make_room(std::size_t page_count) {
    pages_.resize(page_count);
    while (!far_.empty() && far_.begin()->first / page_size < page_count) {
        slot_in_page(far_.begin()->first) = far_.begin()->second;
        far_.erase(far_.begin());
    }
}

} // namespace kelm
