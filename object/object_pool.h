// The one owner of the objects of a model.
// Tree, messages and maps only borrow, so that no order of their ends frees anything twice.
#pragma once

#include <vector>

namespace kelm {

class object_impl;

/// Frees each object exactly once: when its message asks for it, or all when the model goes.
class object_pool {
public:
    object_pool() = default;
    object_pool(const object_pool&) = delete;
    object_pool& operator=(const object_pool&) = delete;
    ~object_pool() { destroy_all(); }

    /// Has adopt() find room, so that it cannot fail.
    void make_room();
    void adopt(object_impl& what);
    /// Gives an object over to another pool.
    void release(object_impl& what);
    void destroy(object_impl& what);
    void destroy_all();
    std::size_t size() const { return objects_.size(); }
    const std::vector<object_impl*>& objects() const { return objects_; }

private:
    std::vector<object_impl*> objects_; // an object knows its place here
};

/// The owner of bare objects that no reader has placed in a model yet.
object_pool& bare_objects();

} // namespace kelm
