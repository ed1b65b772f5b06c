// Messages from streams that no history could have written: they may leave odd values behind, never a broken graph.
// What sound streams look like is told by the other tests of records.
#include "message/transaction_messages.h"
#include "tests/message/record_world.h"
#include "tests/support/consistency.h"

#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class hostile_record : public record_world {
protected:
    static void back_and_forth(message& what) {
        for (int i = 0; i != 2; ++i) {
            what.undo();
            what.redo();
        }
        what.undo();
    }
    object* a = thing("a");
    object* b = thing("b", a);
    object* c = part("c", b);
};

// Each field in turn may say anything: the graph stays whole, and nothing is looked at that is not there.
TEST_F(hostile_record, message_of_any_kind_with_any_numbers_in_it_breaks_nothing) {
    begin();
    ASSERT_TRUE(a->append_vector_element(props::list, number(1)));
    ASSERT_TRUE(a->add_inherits_from(c));
    end();
    int kinds = 0;
    int played = 0;
    for (u32 code = 1; code != 40; ++code) {
        if (!message_row_of(code)) continue;
        ++kinds;
        for (object* const about : {static_cast<object*>(nullptr), root, a, b})
            for (const u32 first : {0U, a->id(), c->id(), props::list, npos32})
                for (const u32 second : {0U, root->id(), b->id(), types::thing, npos32})
                    for (const u32 rest : {0U, 1U, 0x01010101U, 0x7FFFFFFFU, npos32}) {
                        SCOPED_TRACE(std::to_string(code) + " about " +
                                     std::to_string(about ? about->id() : 0) + ": " + std::to_string(first) +
                                     " " + std::to_string(second) + " " + std::to_string(rest));
                        stored_fields fields = stored_fields{}.word(first).word(second);
                        for (int i = 0; i != 20; ++i) fields.word(rest);
                        std::istringstream in{fields.bytes()};
                        auto made = message_row_of(code)->blank(static_cast<silent_edit*>(about));
                        if (!made->read(&in, earlier, model, &references, &fixups, nullptr, 8, 0)) continue;
                        ++played;
                        back_and_forth(*made);
                        std::string words;
                        made->to_string(words);
                        std::ostringstream out;
                        made->write(&out, positions, nullptr, false);
                        made->release_values();
                        EXPECT_EQ(broken_links_of_hostile(*model), "");
                    }
    }
    EXPECT_GT(kinds, 20);
    EXPECT_GT(played, 1000);
}

TEST_F(hostile_record, transaction_about_nobody_makes_no_sound) {
    for (const u32 code : {message_type::tran_begin, message_type::tran_end}) {
        const auto made = read(code, nullptr, stored_fields{}.word(0).word(1).text("").bytes());
        back_and_forth(*made);
        std::string words;
        EXPECT_FALSE(made->to_string(words).empty());
    }
}

TEST_F(hostile_record, model_neither_comes_nor_goes_by_a_message) {
    const std::string before = dump();
    for (const u32 code : {message_type::obj_create, message_type::obj_delete}) {
        SCOPED_TRACE(code);
        const auto made = read(code, root, stored_fields{}.word(0).word(1).bytes());
        made->redo();
        EXPECT_EQ(dump(), before);
        made->undo();
        EXPECT_EQ(dump(), before);
        made->release_values();
        EXPECT_EQ(root->state(), state::normal);
        EXPECT_EQ(model->find_object(root->id()), root);
    }
}

// Two messages may claim one object, and others name it: an object that a stream speaks of goes with its model.
TEST_F(hostile_record, object_that_two_messages_delete_stays_in_memory) {
    const std::string bytes = stored_fields{}.word(a->id()).word(types::thing).bytes();
    const auto first = read(message_type::obj_delete, b, bytes);
    const auto second = read(message_type::obj_delete, b, bytes);
    const auto creation = read(message_type::obj_create, b, bytes);
    first->redo();
    first->release_values();
    second->release_values();
    creation->undo();
    creation->release_values();
    EXPECT_EQ(second->object(), b);
    EXPECT_EQ(b->state(), state::deleted);
    EXPECT_EQ(as_text(b->get_own_property(props::name)), "b");
}

TEST_F(hostile_record, owners_close_no_circle) {
    const std::string before = dump();
    struct {
        const char* why;
        object* about;
        object* owner;
    } const rows[] = {
        {"itself", a, a}, {"what it owns", a, b}, {"what that owns", a, c}, {"the model owned", root, a}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto made = read(message_type::owner_set, row.about,
                               stored_fields{}
                                   .word(row.about->owner() ? row.about->owner()->id() : 0)
                                   .word(row.owner->id())
                                   .bytes());
        made->undo();
        EXPECT_EQ(dump(), before);
    }
}

TEST_F(hostile_record, children_close_no_circle) {
    const auto removed =
        read(message_type::child_remove, root, stored_fields{}.word(a->id()).word(0).bytes());
    removed->redo(); // from here on `a` stands in no list
    const std::string before = dump();
    struct {
        const char* why;
        object* about;
        object* child;
    } const rows[] = {
        {"itself", a, a}, {"its owner", b, a}, {"the owner of that", c, a}, {"the model", a, root}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string bytes = stored_fields{}.word(row.child->id()).word(0).bytes();
        read(message_type::child_add, row.about, bytes)->redo();
        EXPECT_EQ(dump(), before);
        read(message_type::child_remove, row.about, bytes)->undo();
        EXPECT_EQ(dump(), before);
    }
    removed->undo();
    EXPECT_EQ(root->child_position(a), 0U);
}

TEST_F(hostile_record, object_that_stands_in_the_list_of_another_than_its_owner_leaves_it_when_it_goes) {
    const auto moved = read(message_type::owner_set, c, stored_fields{}.word(b->id()).word(a->id()).bytes());
    moved->undo();
    EXPECT_EQ(c->owner(), a);
    EXPECT_EQ(b->child_count(types::part), 1U);
    begin();
    ASSERT_TRUE(fw.delete_object(c));
    end();
    model->clear_history();
    EXPECT_EQ(b->child_count(types::part), 0U);
}

TEST_F(hostile_record, value_that_a_set_drives_out_is_kept_by_it) {
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(5)));
    end();
    model->clear_history();
    // The old value is the one in the object, which the message says was not the object's own.
    const auto made = read(message_type::property_set, a,
                           stored_fields{}
                               .word(props::number)
                               .word(a->id())
                               .owned_number(6)
                               .word(0)
                               .held_value()
                               .byte(0)
                               .bytes());
    made->redo();
    std::string words;
    EXPECT_TRUE(made->to_string(words).ends_with(" from 5 to 6")) << words;
    back_and_forth(*made);
    made->release_values();
}

TEST_F(hostile_record, deleted_value_does_not_drive_out_another) {
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(5)));
    end();
    const auto made = read(message_type::property_delete, a,
                           stored_fields{}.word(props::number).word(a->id()).owned_number(6).byte(0).bytes());
    made->undo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "5");
    made->release_values();
    std::string words;
    EXPECT_TRUE(stored(1).to_string(words).ends_with(" to 5")) << words;
}

TEST_F(hostile_record, old_value_without_an_owner_was_not_the_objects) {
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(6)));
    end();
    model->clear_history();
    const auto made = read(message_type::property_set, a,
                           stored_fields{}
                               .word(props::number)
                               .word(999999)
                               .held_value()
                               .word(999999)
                               .owned_number(5)
                               .byte(0)
                               .bytes());
    made->undo();
    EXPECT_FALSE(a->defines_property(props::number));
    made->redo();
    EXPECT_EQ(as_text(a->get_own_property(props::number)), "6");
    made->release_values();
}

TEST_F(hostile_record, end_forgets_a_begin_that_goes_before_it) {
    const std::string bytes = stored_fields{}.word(0).word(77).word(3).text("").bytes();
    auto opening = read(message_type::tran_begin, root, stored_fields{}.word(0).word(77).text("t").bytes());
    earlier = {opening.get()};
    const auto first = read(message_type::tran_end, root, bytes);
    auto second = read(message_type::tran_end, root, bytes);
    auto* const begun = message_cast<tran_begin_message>(opening.get());
    EXPECT_EQ(begun->end_message(), message_cast<tran_end_message>(second.get()));
    second.reset();
    EXPECT_EQ(begun->end_message(), nullptr);
    second = read(message_type::tran_end, root, bytes);
    opening.reset();
    for (auto* each : {first.get(), second.get()}) {
        EXPECT_EQ(message_cast<tran_end_message>(each)->begin_message(), nullptr);
        EXPECT_EQ(message_cast<tran_end_message>(each)->id(), 0U);
    }
}

TEST_F(hostile_record, properties_of_the_application_are_no_business_of_a_model) {
    meta_object* const type = model->meta_model()->find_meta_object(types::thing);
    meta_property* const shared = type->find_property(props::text);
    ASSERT_TRUE(shared);
    const std::string before = as_text(shared->attribute_value(attribute_id::default_value));
    const auto changed = read(message_type::udp_set_attribute_value, root,
                              stored_fields{}
                                  .word(types::thing)
                                  .word(props::text)
                                  .word(attribute_id::default_value)
                                  .owned_text("evil")
                                  .owned_text("worse")
                                  .bytes());
    changed->redo();
    EXPECT_EQ(as_text(shared->attribute_value(attribute_id::default_value)), before);
    changed->undo();
    EXPECT_EQ(as_text(shared->attribute_value(attribute_id::default_value)), before);
    const auto removed =
        read(message_type::udp_remove, root,
             stored_fields{}.word(types::thing).word(props::text).text("Text").word(6).no_value().bytes());
    removed->redo();
    EXPECT_EQ(type->find_property(props::text), shared);
}

} // namespace
} // namespace kelm::test
