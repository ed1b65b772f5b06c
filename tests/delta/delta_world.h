// A model whose changes are asked for as a delta.
// How a delta becomes lines is delta_text.h.
#pragma once

#include "tests/delta/delta_text.h"
#include "tests/support/counted_value.h"
#include "tests/support/summed_type.h"
#include "tests/support/world.h"

#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace kelm::test {

/// A list of values; the box owns them.
template <class... Values>
std::unique_ptr<vector_property> list(const Values&... values) {
    auto made = std::make_unique<vector_property>();
    (made->elements.push_back(values.clone()), ...);
    return made;
}

inline property<double> not_a_number() { return property<double>{std::numeric_limits<double>::quiet_NaN()}; }

class delta_world : public world {
protected:
    object* summed(const std::string& name) { return make(types::summed, name); }

    /// Runs a change in a transaction of its own.
    void change(const std::function<void()>& what) {
        begin();
        what();
        end();
    }
    /// Prepares what is then there before the stretch.
    void before(const std::function<void()>& what) {
        change(what);
        model->clear_history();
    }
    /// \returns the lines of all that has happened since the history begins
    std::string told() const { return text_of(model->delta_since(nullptr).get(), *model); }
    /// \returns the lines of one change, in a transaction of its own
    std::string told_of(const std::function<void()>& what) {
        model->clear_history();
        change(what);
        return told();
    }
    std::string last_told() const { return text_of(model->last_delta(), *model); }

    /// \returns the modified detail of an object; null when it is not told
    delta_detail* modified(const delta& in, const object* what) const {
        for (delta_detail* each : in.modified_details())
            if (each->object_id() == what->id()) return each;
        return nullptr;
    }
    /// \returns what is known of the start of an object that was modified or, on top, deleted; null when it is not told
    detail_base_original_properties* before_of(const delta& in, const object* what) const {
        for (delta_detail* each : in.deleted_details())
            if (each->object_id() == what->id()) return detail_cast<detail_base_original_properties>(each);
        return detail_cast<detail_base_original_properties>(modified(in, what));
    }
};

} // namespace kelm::test
