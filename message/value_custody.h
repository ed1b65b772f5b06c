// A value that a message and an object share.
// Which of the two owns it is kept in the pointer itself: messages are many.
#pragma once

#include <kelm/property.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace kelm {

/// Owns the value exactly while the object does not hold it.
class value_custody {
public:
    value_custody() = default;
    explicit value_custody(std::unique_ptr<abstract_property> held) { take_back(std::move(held)); }
    explicit value_custody(abstract_property* lent) : tagged_(reinterpret_cast<char*>(lent)) {}
    value_custody(const value_custody&) = delete;
    value_custody& operator=(const value_custody&) = delete;
    ~value_custody() { release(); }

    abstract_property* get() const {
        return reinterpret_cast<abstract_property*>(tagged_ - (holds() ? 1 : 0));
    }
    bool holds() const { return (reinterpret_cast<std::uintptr_t>(tagged_) & 1) != 0; }

    /// Gives the value to the object; it stays known here.  \returns null when it is not held
    [[nodiscard]] std::unique_ptr<abstract_property> hand_over() {
        if (!holds()) return nullptr;
        --tagged_;
        return std::unique_ptr<abstract_property>{get()};
    }
    /// Has `edit` take a held value over, by reference; what it does not take, also when it throws, is held on.
    template <class Edit>
    auto hand_to(Edit&& edit) {
        struct remaining {
            value_custody& of;
            std::unique_ptr<abstract_property> value;
            ~remaining() {
                if (value) of.take_back(std::move(value));
            }
        } rest{*this, hand_over()};
        return edit(rest.value);
    }
    /// Takes what left the object.  It is that very value from now on, whatever was known before, so that each box
    /// has one owner even where a stored history tells less than memory did.
    void take_back(std::unique_ptr<abstract_property> left) {
        release();
        const bool some = left != nullptr;
        tagged_ = reinterpret_cast<char*>(left.release()) + (some ? 1 : 0);
    }
    /// Knows `lent`, which somebody else owns; what was held is freed.
    void borrow(abstract_property* lent) {
        release();
        tagged_ = reinterpret_cast<char*>(lent);
    }
    /// Frees a held value.
    void release() {
        if (holds()) {
            delete get();
            tagged_ = nullptr;
        }
    }

private:
    static_assert(alignof(abstract_property) >= 2, "the lowest bit of a box's address is free");
    char* tagged_ = nullptr; // one beyond the box's address while it is held
};

} // namespace kelm
