// One transaction of each sort of change, for tests of what a stored log says and can take back.
// What the log must be is told by the tests.
#pragma once

#include "tests/support/world.h"

#include <functional>
#include <string>

namespace kelm::test {

/// \returns the descriptions of all messages, one a line
inline std::string told_by(kelm::model& of) {
    std::string out;
    std::string words;
    for (std::size_t i = 0; i != of.message_count(); ++i) {
        message& each = *of.message_at(i);
        out += std::to_string(each.type()) + (each.is_user_created() ? " " : " by the library ") +
               each.to_string(words) + "\n";
    }
    return out;
}

/// \tparam World  derived from world
template <class World>
class every_change : public World {
protected:
    void change(const std::function<void()>& what) {
        this->begin();
        what();
        this->end();
    }
    void change_everything() {
        change_all_that_stays();
        change([&] { ASSERT_TRUE(this->fw.delete_object(a)); });
    }
    /// The same without the deletion of an object.
    void change_all_that_stays() {
        change_values();
        change_lists();
        change_bases();
        change([&] { ASSERT_TRUE(a->attach(dynamic_cast<observer*>(c))); });
        change([&] { ASSERT_TRUE(b->set_owner(c)); });
        change([&] { ASSERT_TRUE(a->set_child_position(a->children().front(), 0)); });
        change([&] {
            const auto now = number(2);
            const auto before = number(1);
            ASSERT_TRUE(a->refresh_property(props::number, &now, &before));
            ASSERT_TRUE(a->refresh_property(props::number, nullptr, &now));
        });
        change([&] { ASSERT_TRUE(a->delete_property(props::text)); });
        change([&] { ASSERT_TRUE(a->detach_object(c)); });
    }

    object* a = this->thing("a");
    object* b = this->thing("b");
    object* c = this->thing("c");

private:
    void change_values() {
        change([&] {
            object* const made = this->fw.create_object(types::part, a);
            ASSERT_TRUE(made);
            ASSERT_TRUE(made->set_property(props::name, text("made")));
        });
        change([&] { ASSERT_TRUE(a->set_property(props::text, text("first"))); });
        change([&] { ASSERT_TRUE(a->set_property(props::text, text("second"))); });
        change([&] { ASSERT_TRUE(a->set_property_not_inheritable(props::number, true)); });
        change([&] { ASSERT_TRUE(c->set_property(props::reference, reference(a))); });
    }
    void change_lists() {
        change([&] {
            vector_property list;
            for (const int each : {1, 2, 3}) list.elements.push_back(new property<int>{each});
            ASSERT_TRUE(a->set_property(props::list, list));
        });
        change([&] { ASSERT_TRUE(a->set_vector_element(props::list, number(9), 1)); });
        change([&] { ASSERT_TRUE(a->insert_vector_element(props::list, number(8), 0)); });
        change([&] { ASSERT_TRUE(a->move_vector_element(props::list, 0, 2)); });
        change([&] { ASSERT_TRUE(a->delete_vector_element(props::list, 1)); });
    }
    void change_bases() {
        change([&] { ASSERT_TRUE(b->add_inherits_from(a)); });
        change([&] { ASSERT_TRUE(b->set_property(props::text, text("own"))); });
        change([&] { ASSERT_TRUE(b->insert_inherits_from(c, 0)); });
        change([&] { ASSERT_TRUE(b->set_inherits_from_position(c, 1)); });
        change([&] { ASSERT_TRUE(b->cancel_inherits_from(c)); });
        change([&] { ASSERT_TRUE(b->replace_inherits_from(c, a)); });
    }
};

} // namespace kelm::test
