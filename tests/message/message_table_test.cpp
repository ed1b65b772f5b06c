// The table of stored messages, and messages as a reader makes them, before and without their fields.
// What each stores is told by the tests of records.
#include "message/message_table.h"
#include "tests/message/record_world.h"

#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class message_table : public record_world {
protected:
    std::unique_ptr<message_impl> blank(const message_row& row, object* about) const {
        return row.blank(static_cast<silent_edit*>(about));
    }
    object* a = thing("a");
};

TEST_F(message_table, covers_every_number_but_those_that_are_only_told) {
    std::string codes;
    for (const message_row& row : message_rows()) codes += std::to_string(row.code) + " ";
    EXPECT_EQ(codes, "1 2 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 ");
    for (const u32 code : {0U, 3U, 31U, 0xFFFFFFFFU}) EXPECT_EQ(message_row_of(code), nullptr) << code;
}

TEST_F(message_table, rows_make_messages_of_their_number) {
    for (const message_row& row : message_rows()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(message_row_of(row.code), &row);
        const auto made = blank(row, a);
        EXPECT_EQ(made->object(), a);
        EXPECT_EQ(stored_code(*made), row.code);
        const bool silent =
            row.code >= message_type::observer_add && row.code <= message_type::udp_set_attribute_value;
        EXPECT_EQ(made->is_first_run(), !silent);
    }
}

TEST_F(message_table, fresh_positions_are_behind_every_end) {
    const auto make = [&](u32 code) { return blank(*message_row_of(code), a); };
    EXPECT_EQ(message_cast<property_set_vec_prop_message>(make(8).get())->pos(), npos32);
    EXPECT_EQ(message_cast<property_insert_vec_prop_message>(make(9).get())->pos(), npos32);
    EXPECT_EQ(message_cast<property_delete_vec_prop_message>(make(11).get())->pos(), npos32);
    EXPECT_EQ(message_cast<element_position_vec_prop_message>(make(12).get())->old_pos(), npos32);
    EXPECT_EQ(message_cast<element_position_vec_prop_message>(make(12).get())->new_pos(), npos32);
    EXPECT_EQ(message_cast<child_add_message>(make(14).get())->pos(), 0U);
    EXPECT_EQ(message_cast<child_remove_message>(make(16).get())->pos(), npos32);
    EXPECT_EQ(message_cast<child_order_message>(make(17).get())->new_pos(), npos32);
    EXPECT_EQ(message_cast<inherits_insert_message>(make(21).get())->pos(), npos32);
    EXPECT_EQ(message_cast<inherits_from_order_message>(make(22).get())->old_pos(), npos32);
    EXPECT_TRUE(message_cast<property_set_not_inheritable_message>(make(13).get())->not_inheritable());
    EXPECT_EQ(message_cast<tran_end_message>(make(2).get())->processed_state(), 0U);
}

// A stream may end in the middle, and name objects that nobody has: such a message says little, and does no harm.
TEST_F(message_table, messages_about_nothing_do_nothing) {
    const std::string before = dump();
    for (const message_row& row : message_rows()) {
        SCOPED_TRACE(row.name);
        if (row.code == message_type::tran_begin || row.code == message_type::tran_end) continue;
        const auto made = blank(row, nullptr);
        std::string words;
        EXPECT_EQ(&made->to_string(words), &words);
        EXPECT_FALSE(words.empty());
        EXPECT_TRUE(made->undo());
        EXPECT_TRUE(made->redo());
        made->release_values();
        EXPECT_EQ(written(*made).empty(), false);
    }
    EXPECT_EQ(dump(), before);
}

TEST_F(message_table, fresh_messages_about_an_object_do_nothing_either) {
    const std::string before = dump();
    for (const message_row& row : message_rows()) {
        SCOPED_TRACE(row.name);
        // These change the state of the object itself, whatever else they know.
        if (row.code == message_type::obj_create || row.code == message_type::obj_delete) continue;
        if (row.code == message_type::property_set_not_inheritable || row.code == message_type::owner_set)
            continue;
        const auto made = blank(row, a);
        EXPECT_TRUE(made->undo());
        EXPECT_TRUE(made->redo());
        made->release_values();
    }
    EXPECT_EQ(dump(), before);
}

TEST_F(message_table, fields_stay_as_they_are_where_the_stream_ends) {
    for (const message_row& row : message_rows()) {
        SCOPED_TRACE(row.name);
        const std::string whole = written(*blank(row, a));
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const auto made = read(row.code, a, whole.substr(0, length));
            EXPECT_EQ(hex(written(*made)), hex(whole)) << "cut at " << length;
        }
    }
}

} // namespace
} // namespace kelm::test
