// Which element of a list a message speaks of once its log has been read: of several that look the same, its own.
// The bytes of these messages are told in tests/message.
#include "tests/persistence/stream_world.h"

#include <kelm/property_messages.h>

#include <functional>
#include <limits>
#include <vector>

namespace kelm::test {

namespace {

/// Lists whose messages speak of elements that a stream alone does not tell apart.
class read_elements : public stream_world {
protected:
    /// One transaction that changes the list of `a`.
    void change(const std::function<void(object&)>& how) {
        begin();
        how(*a);
        end();
    }
    void append(const abstract_property& element) {
        change([&](object& at) { at.append_vector_element(props::list, element); });
    }
    void insert(const abstract_property& element, std::size_t position) {
        change([&](object& at) { at.insert_vector_element(props::list, element, position); });
    }
    void reload() { ASSERT_TRUE(load(saved(true))); }
    std::string list() const { return as_text(copied(a)->get_own_property(props::list)); }
    /// \returns the newest message of the read log that is of `type`
    template <class Message>
    const Message& newest(u32 type) const {
        for (std::size_t i = copy->message_count(); i-- != 0;)
            if (copy->message_at(i)->type() == type) return *message_cast<Message>(copy->message_at(i));
        throw std::logic_error("there is no such message");
    }

    object* a = thing("a");
};

} // namespace

TEST_F(read_elements, undo_takes_the_one_that_came_and_not_one_that_equals_it) {
    for (const int each : {1, 2, 3, 1}) append(number(each));
    reload();
    copy->undo();
    EXPECT_EQ(list(), "1, 2, 3");
    copy->redo();
    EXPECT_EQ(list(), "1, 2, 3, 1");
    while (copy->can_undo()) copy->undo();
    while (copy->can_redo()) copy->redo();
    EXPECT_EQ(list(), "1, 2, 3, 1");
}

TEST_F(read_elements, undo_finds_the_older_of_two_equal_ones_when_the_newer_is_gone_for_good) {
    append(number(5));
    append(number(1));
    insert(number(1), 0);
    reload();
    copy->undo();
    copy->begin_transaction("what was undone is dropped, with its element");
    copied(a)->set_property(props::text, text("new"));
    copy->end_transaction();
    EXPECT_EQ(as_text(newest<property_insert_vec_prop_message>(9).value()), "1");
    copy->undo();
    copy->undo();
    EXPECT_EQ(list(), "5");
}

TEST_F(read_elements, undo_takes_one_that_does_not_equal_itself) {
    append(number(1));
    append(property<double>{std::numeric_limits<double>::quiet_NaN()});
    append(reference(nullptr));
    insert(reference(nullptr), 0);
    reload();
    for (const std::size_t left : {3U, 2U, 1U}) {
        copy->undo();
        const value_ptr now = copied(a)->get_own_property(props::list);
        EXPECT_EQ(dynamic_cast<const vector_property&>(*now).elements.size(), left);
    }
    EXPECT_EQ(list(), "1");
}

TEST_F(read_elements, replacement_tells_its_new_element_wherever_that_stands_today) {
    append(number(1));
    append(number(2));
    change([](object& at) { at.set_vector_element(props::list, number(7), 1); });
    insert(number(3), 0);
    change([](object& at) { at.move_vector_element(props::list, 2, 0); });
    reload();
    ASSERT_EQ(list(), "7, 3, 1");
    EXPECT_EQ(as_text(newest<property_set_vec_prop_message>(8).new_value()), "7");
    EXPECT_EQ(as_text(newest<property_set_vec_prop_message>(8).old_value()), "2");
}

TEST_F(read_elements, are_found_behind_deletions_and_new_lists) {
    append(number(1));
    append(number(1));
    change([](object& at) { at.delete_vector_element(props::list, 0); });
    insert(number(1), 0);
    vector_property other;
    other.elements.push_back(new property<int>{1});
    change([&](object& at) { at.set_property(props::list, other); });
    append(number(1));
    change([](object& at) { at.delete_property(props::list); });
    std::vector<std::string> before;
    const auto states_of = [&](kelm::model& of, const object& at) {
        std::vector<std::string> states{dump_of(of)};
        for (; of.can_undo(); states.push_back(as_text(at.get_own_property(props::list)))) of.undo();
        while (of.can_redo()) of.redo();
        states.push_back(dump_of(of));
        return states;
    };
    reload();
    EXPECT_EQ(states_of(*copy, *copied(a)), states_of(*model, *a));
}

} // namespace kelm::test
