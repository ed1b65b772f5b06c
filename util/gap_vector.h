// A contiguous list with spare room at both ends.
// Putting in and taking out moves the shorter side, so that working from either end of a long list costs no shift.
#pragma once

#include "util/free_list.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace kelm {

template <class T>
class gap_vector {
    static_assert(std::is_trivially_copyable_v<T>, "elements are moved about as bytes");

    using room = std::vector<T, pool_allocator<T>>;

public:
    using iterator = typename room::iterator;
    using const_iterator = typename room::const_iterator;

    std::size_t size() const { return room_.size() - gap_; }
    bool empty() const { return size() == 0; }
    const T& operator[](std::size_t i) const { return room_[gap_ + i]; }
    T& operator[](std::size_t i) { return room_[gap_ + i]; }
    const T& front() const { return room_[gap_]; }
    const T& back() const { return room_.back(); }
    const_iterator begin() const { return room_.begin() + offset(gap_); }
    const_iterator end() const { return room_.end(); }

    void push_back(T element) {
        make_room_behind();
        room_.push_back(element);
    }

    /// \param at  at most size()
    void insert(std::size_t at, T element) {
        if (at >= size() / 2 && !(at == 0 && size() == 0 && gap_ != 0)) {
            make_room_behind();
            room_.insert(room_.begin() + offset(gap_ + at), element);
            return;
        }
        if (gap_ == 0) make_gap();
        std::copy(room_.begin() + offset(gap_), room_.begin() + offset(gap_ + at),
                  room_.begin() + offset(gap_ - 1));
        --gap_;
        room_[gap_ + at] = element;
    }

    /// \param at  below size()
    void erase(std::size_t at) {
        if (at >= size() / 2) {
            room_.erase(room_.begin() + offset(gap_ + at));
            return;
        }
        std::copy_backward(room_.begin() + offset(gap_), room_.begin() + offset(gap_ + at),
                           room_.begin() + offset(gap_ + at + 1));
        ++gap_;
    }

    /// Moves an element; allocates nothing.
    /// \param to  where it stands then; both below size()
    void move(std::size_t from, std::size_t to) {
        const auto first = room_.begin() + offset(gap_);
        if (from < to)
            std::rotate(first + offset(from), first + offset(from + 1), first + offset(to + 1));
        else
            std::rotate(first + offset(to), first + offset(from), first + offset(from + 1));
    }

    void clear() {
        room_.clear();
        gap_ = 0;
    }

private:
    static std::ptrdiff_t offset(std::size_t n) { return static_cast<std::ptrdiff_t>(n); }

    /// What is put in behind and taken out in front for ever needs no more room than what is there at one time.
    void make_room_behind() {
        if (room_.size() != room_.capacity() || gap_ <= size()) return;
        room_.erase(room_.begin(), room_.begin() + offset(gap_));
        gap_ = 0;
    }

    void make_gap() {
        const std::size_t wanted = size() + 4;
        room wider(wanted + size());
        std::copy(begin(), end(), wider.begin() + offset(wanted));
        room_ = std::move(wider);
        gap_ = wanted;
    }

    room room_;
    std::size_t gap_ = 0; // unused places in front
};

} // namespace kelm
