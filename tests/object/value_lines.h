// Messages of values as lines that show everything they tell at the moment they are heard.
// The descriptions that the library itself makes of them have tests of their own.
#pragma once

#include "tests/support/listening_world.h"

#include <kelm/property_messages.h>

#include <cmath>
#include <limits>
#include <memory>

namespace kelm::test {

/// \returns the text of a value; lists in brackets, texts in quotes, references by name, "none" for an empty one
inline std::string value_text(const abstract_property* value) {
    if (!value) return "none";
    if (const auto* const list = dynamic_cast<const vector_property*>(value)) {
        std::string out;
        for (const abstract_property* each : list->elements)
            out += (out.empty() ? "" : " ") + value_text(each);
        return "[" + out + "]";
    }
    if (const auto* const reference = dynamic_cast<const property<object*>*>(value))
        return "->" + short_name(reference->value);
    return "'" + value->to_string() + "'";
}
inline std::string value_text(const value_ptr& value) { return value_text(value.get()); }

/// \returns what a message of values tells; empty for any other
inline std::string value_details(const message* said) {
    std::string out;
    if (const auto* const change = dynamic_cast<const property_change_message*>(said))
        out = std::to_string(change->property_type()) + " in " + short_name(change->real_owner()) + " ";
    if (const auto* const set = dynamic_cast<const property_set_message*>(said))
        return out + value_text(set->old_value()) + " of " + short_name(set->old_owner()) + " to " +
               value_text(set->new_value());
    if (const auto* const gone = dynamic_cast<const property_delete_message*>(said))
        return out + "lost " + value_text(gone->old_value());
    if (const auto* const element = dynamic_cast<const property_set_vec_prop_message*>(said))
        return out + "at " + std::to_string(element->pos()) + " " + value_text(element->old_value()) +
               " to " + value_text(element->new_value());
    if (const auto* const element = dynamic_cast<const property_insert_vec_prop_message*>(said))
        return out + "at " + std::to_string(element->pos()) + " + " + value_text(element->value()) +
               (value_text(element->raw_value()) == value_text(element->value()) ? "" : " but raw differs");
    if (const auto* const element = dynamic_cast<const property_delete_vec_prop_message*>(said))
        return out + "at " + std::to_string(element->pos()) + " - " + value_text(element->value());
    if (const auto* const order = dynamic_cast<const element_position_vec_prop_message*>(said))
        return out + std::to_string(order->old_pos()) + " to " + std::to_string(order->new_pos());
    if (const auto* const mark = dynamic_cast<const property_set_not_inheritable_message*>(said))
        return std::to_string(mark->property_type()) + (mark->not_inheritable() ? " marked" : " unmarked");
    return out;
}

/// \returns "number first|again user|hook name-of-object: details"
inline std::string value_line(message* said) {
    return std::to_string(said->type()) + (said->is_first_run() ? " first" : " again") +
           (said->is_user_created() ? " user " : " hook ") + short_name(said->object()) + ": " +
           value_details(said);
}

/// A list of values; takes clones.
inline std::unique_ptr<vector_property> list_of(std::initializer_list<const abstract_property*> values) {
    auto out = std::make_unique<vector_property>();
    for (const abstract_property* each : values) out->elements.push_back(each->clone());
    return out;
}

/// A list of numbers.
inline std::unique_ptr<vector_property> numbers(std::initializer_list<int> values) {
    auto out = std::make_unique<vector_property>();
    for (const int each : values) out->elements.push_back(new property<int>{each});
    return out;
}

/// A model whose values are listened to.
class value_world : public listening_world {
protected:
    value_world() { ears.line = value_line; }

    /// Prepares values and links, and forgets the preparation.
    template <class Preparation>
    void prepare(Preparation&& what) {
        begin();
        what();
        end();
        forget();
    }
    /// Gives `to` an own list of numbers.
    void give_list(object* to, std::initializer_list<int> values) {
        prepare([&] { ASSERT_TRUE(to->set_property(props::list, *numbers(values))); });
    }
    static std::string list(const object* of) { return value_text(of->get_own_property(props::list)); }
    /// \returns the messages of the history as lines
    std::string lines() const {
        std::string out;
        for (std::size_t i = 0; i < model->message_count(); ++i)
            if (const std::string details = value_details(model->message_at(i)); !details.empty())
                out += value_line(model->message_at(i)) + "\n";
        return out;
    }
};

} // namespace kelm::test
