// Adopting and freeing objects.
// Who may ask for it is told with the messages of objects.
#include "object/object_pool.h"

#include "object/object_impl.h"

namespace kelm {

void object_pool::make_room() {
    if (objects_.size() == objects_.capacity()) objects_.reserve(2 * objects_.size() + 1);
}

void object_pool::adopt(object_impl& what) {
    objects_.push_back(&what);
    what.pool_place_ = static_cast<u32>(objects_.size() - 1);
}

void object_pool::release(object_impl& what) {
    object_impl* const last = objects_.back();
    objects_[what.pool_place_] = last;
    last->pool_place_ = what.pool_place_;
    objects_.pop_back();
}

// An object may outlive its owner: it was taken out of the list before the owner was deleted, or a rollback keeps it.
// As long as it does, the owner stays too, so that every question that leads upwards has an answer.  What stays_ says of
// one goes for all above it.
void object_pool::destroy(object_impl& what) {
    for (object_impl* at = &what; at;) {
        at->unlink(false);
        at->values_ = {};
        at->is_condemned_ = at->named_as_owner_ != 0 || at->stays_;
        if (at->is_condemned_) return;
        object_impl* const owner = at->owner_object_;
        release(*at);
        delete at;
        at = owner && --owner->named_as_owner_ == 0 && owner->is_condemned_ ? owner : nullptr;
    }
}

// All of them go: only what other models and observers hold of them has to be cut.
void object_pool::destroy_all() {
    for (object_impl* what : objects_) what->unlink(true);
    // The oldest last: its place is then the first to be given again, so that addresses are in order of making again.
    while (!objects_.empty()) {
        delete objects_.back();
        objects_.pop_back();
    }
}

object_pool& bare_objects() {
    static object_pool pool;
    return pool;
}

} // namespace kelm
