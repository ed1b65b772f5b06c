// The stored form of one value of a message: whole, by reference to another message, or to the object.
// Which values a message has is told by the tests of its record.
#include "message/value_record.h"
#include "tests/message/record_world.h"
#include "tests/support/unregistered_value.h"

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class value_record : public record_world {
protected:
    std::string bytes_of(const abstract_property* value, bool owned) {
        std::ostringstream out;
        binary_out to{out};
        write_message_value(value, owned, props::number, to, positions);
        failed = !out;
        return hex(out.str());
    }
    void read_into(value_custody& out, const std::string& bytes, const value_place& where) {
        std::istringstream in{bytes};
        read_context from{earlier, model, references, fixups, {8, 0}};
        binary_in fields{in};
        read_message_value(out, *self, where, fields, from);
        failed = !in;
    }

    bool failed = false;
    object* a = thing("a");
    std::unique_ptr<message_impl> self =
        message_row_of(message_type::property_set)->blank(static_cast<silent_edit*>(a));
};

std::unique_ptr<vector_property> list_of(std::initializer_list<int> values) {
    auto list = std::make_unique<vector_property>();
    for (const int each : values) list->elements.push_back(new property<int>{each});
    return list;
}

TEST_F(value_record, null_is_a_single_zero) {
    EXPECT_EQ(bytes_of(nullptr, true), "00 ");
    EXPECT_EQ(bytes_of(nullptr, false), "00 ");
}

TEST_F(value_record, owned_value_has_its_type_and_itself) {
    const auto seven = number(7);
    EXPECT_EQ(bytes_of(&seven, true), hex(stored_fields{}.owned_number(7).bytes()));
}

TEST_F(value_record, unsigned_value_is_stored_as_an_integer_since_it_has_no_code) {
    const property<unsigned> value{5};
    EXPECT_EQ(bytes_of(&value, true), hex(stored_fields{}.owned_number(5).bytes()));
}

TEST_F(value_record, value_that_no_message_owns_has_no_further_index) {
    const auto seven = number(7);
    EXPECT_EQ(bytes_of(&seven, false), "01 00 ff ff ff ff ");
}

TEST_F(value_record, value_that_a_message_owns_is_named_by_three_numbers) {
    const auto seven = number(7);
    positions[&seven] = {3, 1, 2};
    EXPECT_EQ(bytes_of(&seven, false), hex(stored_fields{}.shared_value(3, 1, 2).bytes()));
}

TEST_F(value_record, value_that_nobody_could_read_back_fails_the_stream) {
    const unregistered_value value;
    EXPECT_EQ(bytes_of(&value, true), "");
    EXPECT_TRUE(failed);
    EXPECT_EQ(bytes_of(&value, false), "01 00 ff ff ff ff ");
    EXPECT_FALSE(failed);
}

TEST_F(value_record, absent_value_leaves_what_is_there) {
    const auto before = number(1);
    value_custody out;
    out.borrow(const_cast<property<int>*>(&before));
    read_into(out, stored_fields{}.no_value().bytes(), {.source = a});
    EXPECT_EQ(out.get(), &before);
}

TEST_F(value_record, owned_value_is_read_and_owned) {
    value_custody out;
    read_into(out, stored_fields{}.owned_text("x").bytes(), {.source = a});
    ASSERT_TRUE(out.get());
    EXPECT_TRUE(out.holds());
    EXPECT_EQ(out.get()->to_string(), "x");
}

TEST_F(value_record, references_of_an_owned_value_are_marked_as_from_a_message) {
    references.references.push_back({});
    value_custody out;
    read_into(out, stored_fields{}.owned_reference(a->id()).bytes(), {.source = a});
    ASSERT_EQ(references.references.size(), 2U);
    EXPECT_FALSE(references.references[0].from_message);
    EXPECT_TRUE(references.references[1].from_message);
    EXPECT_EQ(references.references[1].target_id, a->id());
    EXPECT_EQ(references.references[1].holder, a);
    EXPECT_EQ(references.references[1].value, out.get());
}

TEST_F(value_record, value_of_another_message_waits_for_a_fixup) {
    value_custody out;
    read_into(out, stored_fields{}.shared_value(5, 1, 2).bytes(), {.index = 1, .source = a});
    EXPECT_FALSE(out.get());
    ASSERT_EQ(fixups.size(), 1U);
    EXPECT_EQ(fixups.begin()->first, std::pair(static_cast<message*>(self.get()), 1));
    EXPECT_EQ(fixups.begin()->second, (value_position{5, 1, 2}));
}

TEST_F(value_record, value_that_the_object_holds_is_found_there) {
    const auto list = list_of({4, 5});
    begin();
    ASSERT_TRUE(a->set_property(props::list, *list));
    end();
    const std::string bytes = stored_fields{}.held_value().bytes();
    struct {
        const char* why;
        value_place where;
        const char* expected;
    } const rows[] = {
        {"the whole value", {.source = a, .property_id = props::list}, "4, 5"},
        {"an element", {.source = a, .property_id = props::list, .sub_index = 1}, "5"},
        {"no such element", {.source = a, .property_id = props::list, .sub_index = 2}, "none"},
        {"an element that is none", {.source = a, .property_id = props::list, .is_element = true}, "none"},
        {"no vector", {.source = a, .property_id = props::name, .sub_index = 0}, "none"},
        {"no such value", {.source = a, .property_id = props::text}, "none"},
        {"no object", {.source = nullptr, .property_id = props::list}, "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        value_custody out;
        read_into(out, bytes, row.where);
        EXPECT_EQ(out.get() ? out.get()->to_string() : "none", row.expected);
        EXPECT_FALSE(out.holds());
    }
}

TEST_F(value_record, inherited_value_is_not_the_objects) {
    object* const base = thing("base");
    begin();
    ASSERT_TRUE(base->set_property(props::text, text("t")));
    ASSERT_TRUE(a->add_inherits_from(base));
    end();
    value_custody out;
    read_into(out, stored_fields{}.held_value().bytes(), {.source = a, .property_id = props::text});
    EXPECT_FALSE(out.get());
}

TEST_F(value_record, unknown_type_fails_and_owns_nothing) {
    value_custody out;
    read_into(out, stored_fields{}.byte(1).byte(1).word(4711).word(0).bytes(), {.source = a});
    EXPECT_TRUE(failed);
    EXPECT_FALSE(out.get());
}

TEST_F(value_record, every_shortened_form_gives_up_without_a_fixup) {
    for (const std::string& whole :
         {stored_fields{}.owned_text("text").bytes(), stored_fields{}.shared_value(5, 1, 2).bytes()}) {
        for (std::size_t length = 0; length != whole.size(); ++length) {
            SCOPED_TRACE(length);
            value_custody out;
            read_into(out, whole.substr(0, length), {.source = a});
            EXPECT_TRUE(failed);
        }
    }
    EXPECT_TRUE(fixups.empty());
}

TEST(register_value, enters_a_value_and_each_element_of_a_vector) {
    value_position_map positions;
    register_value(nullptr, positions, 4, 1);
    EXPECT_TRUE(positions.empty());

    const auto seven = number(7);
    register_value(&seven, positions, 4, 1);
    EXPECT_EQ(positions.at(&seven), (value_position{4, 1, npos32}));

    const auto list = list_of({1, 2});
    register_value(list.get(), positions, 5, 0);
    EXPECT_EQ(positions.size(), 4U);
    EXPECT_EQ(positions.at(list.get()), (value_position{5, 0, npos32}));
    EXPECT_EQ(positions.at(list->elements[0]), (value_position{5, 0, 0}));
    EXPECT_EQ(positions.at(list->elements[1]), (value_position{5, 0, 1}));
}

TEST(resolve_value, gives_the_value_or_an_element) {
    auto seven = number(7);
    EXPECT_EQ(resolve_value(&seven, -1), &seven);
    EXPECT_EQ(resolve_value(&seven, 3), nullptr);
    EXPECT_EQ(resolve_value(nullptr, -1), nullptr);
    EXPECT_EQ(resolve_value(nullptr, 0), nullptr);

    const auto list = list_of({1, 2});
    EXPECT_EQ(resolve_value(list.get(), -1), list.get());
    EXPECT_EQ(resolve_value(list.get(), 1), list->elements[1]);
    EXPECT_EQ(resolve_value(list.get(), 2), nullptr);
    EXPECT_EQ(resolve_value(list.get(), -2), nullptr);
}

} // namespace
} // namespace kelm::test
