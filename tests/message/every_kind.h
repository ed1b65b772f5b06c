// A transaction that makes a message of every kind that is stored.
// What becomes of the messages is the business of the tests.
#pragma once

#include "tests/support/listening_world.h"

#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <string>
#include <vector>

namespace kelm::test {

class every_kind : public listening_world {
protected:
    object* const a = thing("a");
    object* const b = thing("b");
    object* const c = thing("c");
    object* const first = part("first", a);
    object* const second = part("second", a);

    /// Every kind of change once, without a transaction around it.
    void change_everything() {
        const property<int> one{1};
        const property<int> two{2};
        EXPECT_TRUE(a->set_property(props::number, one));
        EXPECT_TRUE(a->delete_property(props::number));
        EXPECT_TRUE(a->append_vector_element(props::list, one));
        EXPECT_TRUE(a->append_vector_element(props::list, two));
        EXPECT_TRUE(a->set_vector_element(props::list, two, 0));
        EXPECT_TRUE(a->move_vector_element(props::list, 0, 1));
        EXPECT_TRUE(a->delete_vector_element(props::list, 0));
        EXPECT_TRUE(a->set_property_not_inheritable(props::flag, true));
        EXPECT_TRUE(a->refresh_property(props::real, &two, &one));
        EXPECT_TRUE(a->refresh_property(props::real, nullptr, &two));

        EXPECT_TRUE(a->set_child_position(first, 1));
        EXPECT_TRUE(a->remove_child(second));
        EXPECT_TRUE(a->add_child(second));
        EXPECT_TRUE(second->set_owner(b));

        EXPECT_TRUE(a->add_inherits_from(b));
        EXPECT_TRUE(a->insert_inherits_from(c, 0));
        EXPECT_TRUE(a->set_inherits_from_position(c, 1));
        EXPECT_TRUE(a->cancel_inherits_from(b));
        EXPECT_TRUE(a->replace_inherits_from(b, c));

        EXPECT_TRUE(a->attach(dynamic_cast<observer*>(b)));
        EXPECT_TRUE(a->detach_object(b));

        meta_property* const own =
            model->add_user_defined_property(types::thing, "Own", data_type::string, "", 0);
        ASSERT_TRUE(own);
        meta_object* const type = model->meta_model()->find_meta_object(types::thing);
        EXPECT_TRUE(
            model->set_user_defined_property_attribute(type, own, attribute_id::default_value, text("Ann")));
        EXPECT_TRUE(model->remove_user_defined_property(types::thing, own->id()));

        made = fw.create_object(types::part, a);
        ASSERT_TRUE(made);
        EXPECT_TRUE(fw.delete_object(first));
    }
    /// The same inside a level of its own.  \returns the messages, the oldest first
    std::vector<message*> changed_everything() {
        forget();
        begin("outer");
        begin("inner");
        change_everything();
        end();
        end();
        return stored();
    }
    std::vector<message*> stored() const {
        std::vector<message*> all;
        for (std::size_t i = 0; i != model->message_count(); ++i) all.push_back(model->message_at(i));
        return all;
    }
    static bool is_bracket(const message* what) {
        return what->type() == message_type::tran_begin || what->type() == message_type::tran_end;
    }
    /// A message of an observer or of a user-defined property.
    static bool is_silent(const message* what) { return what->type() >= message_type::observer_add; }
    static bool is_refresh(const message* what) {
        std::string text;
        return what->to_string(text).starts_with("Refresh ");
    }
    static std::string described(const message* what) {
        std::string text;
        return std::to_string(what->type()) + " " + what->to_string(text);
    }

    object* made = nullptr;
};

} // namespace kelm::test
