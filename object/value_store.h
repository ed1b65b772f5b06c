// The values that one object itself stores, by property id.
// Links of references to their targets are the object's business, not the store's.
#pragma once

#include "util/free_list.h"

#include <kelm/property.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace kelm {

/// A small map sorted by id: one block of memory with the values in front and their ids behind.  Owns the values;
/// gives them up only by moving them out.
class value_store {
public:
    struct entry {
        u32 id;
        abstract_property* value; ///< borrowed
    };

    class const_iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = entry;
        using pointer = void;
        using reference = entry;

        const_iterator(const value_store& of, u32 at) : of_(&of), at_(at) {}
        entry operator*() const { return {of_->ids()[at_], of_->values_[at_]}; }
        const_iterator& operator++() {
            ++at_;
            return *this;
        }
        friend bool operator==(const const_iterator& a, const const_iterator& b) { return a.at_ == b.at_; }

    private:
        const value_store* of_;
        u32 at_;
    };

    value_store() = default;
    value_store(value_store&& other) noexcept { swap(other); }
    value_store& operator=(value_store&& other) noexcept {
        value_store taken{std::move(other)};
        swap(taken);
        return *this;
    }
    ~value_store() {
        for (u32 at = 0; at != size_; ++at) delete values_[at];
        free_pooled(values_, bytes_for(capacity_));
    }

    bool empty() const { return size_ == 0; }
    std::size_t size() const { return size_; }
    const_iterator begin() const { return {*this, 0}; }
    const_iterator end() const { return {*this, size_}; }

    bool holds(u32 id) const { return is_at(place_of(id), id); }
    /// \returns borrowed; null when there is none
    abstract_property* find(u32 id) const {
        const u32 at = place_of(id);
        return is_at(at, id) ? values_[at] : nullptr;
    }
    /// Has exchange() find room for a value of that id, so that it cannot fail.
    void make_room(u32 id) {
        if (size_ == capacity_ && !holds(id)) widen();
    }
    /// \returns the former value
    std::unique_ptr<abstract_property> exchange(u32 id, std::unique_ptr<abstract_property> value) {
        const u32 at = place_of(id);
        if (is_at(at, id))
            return std::unique_ptr<abstract_property>{std::exchange(values_[at], value.release())};
        if (size_ == capacity_) widen();
        std::move_backward(values_ + at, values_ + size_, values_ + size_ + 1);
        std::move_backward(ids() + at, ids() + size_, ids() + size_ + 1);
        values_[at] = value.release();
        ids()[at] = id;
        ++size_;
        return nullptr;
    }
    std::unique_ptr<abstract_property> take(u32 id) {
        const u32 at = place_of(id);
        if (!is_at(at, id)) return nullptr;
        std::unique_ptr<abstract_property> out{values_[at]};
        std::move(values_ + at + 1, values_ + size_, values_ + at);
        std::move(ids() + at + 1, ids() + size_, ids() + at);
        --size_;
        return out;
    }

private:
    static constexpr u32 usual_size = 3;   // most objects have a few values
    static constexpr u32 scanned_size = 8; // up to which a search looks at one after the other

    static std::size_t bytes_for(u32 capacity) {
        return std::size_t{capacity} * (sizeof(abstract_property*) + sizeof(u32));
    }
    u32* ids() const { return reinterpret_cast<u32*>(values_ + capacity_); }

    /// \returns the place of the first id that is not below `id`
    u32 place_of(u32 id) const {
        if (size_ == 0 || ids()[size_ - 1] < id) return size_; // readers and builders come in order
        if (size_ > scanned_size) return static_cast<u32>(std::lower_bound(ids(), ids() + size_, id) - ids());
        u32 at = 0;
        while (ids()[at] < id) ++at;
        return at;
    }
    bool is_at(u32 at, u32 id) const { return at != size_ && ids()[at] == id; }

    void widen() {
        const u32 wider = capacity_ == 0 ? usual_size : 2 * capacity_;
        auto* const values = static_cast<abstract_property**>(allocate_pooled(bytes_for(wider)));
        std::copy(values_, values_ + size_, values);
        std::copy(ids(), ids() + size_, reinterpret_cast<u32*>(values + wider));
        free_pooled(values_, bytes_for(capacity_));
        values_ = values;
        capacity_ = wider;
    }
    void swap(value_store& other) noexcept {
        std::swap(values_, other.values_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    abstract_property** values_ = nullptr;
    u32 size_ = 0;
    u32 capacity_ = 0;
};

} // namespace kelm
