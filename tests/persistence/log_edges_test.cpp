// Logs at their edges: values that messages share, deleted objects that a log knows half, logs without a transaction.
// What a log brings back of every sort of change is told by the tests of streams and documents.
#include "tests/persistence/document_world.h"
#include "tests/persistence/every_change.h"
#include "tests/support/consistency.h"
#include "tests/support/counted_value.h"
#include "tests/support/stored_fields.h"
#include "tests/support/unregistered_value.h"
#include "util/document_state.h"

#include <kelm/message_history.h>
#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace kelm::test {
namespace {

class log_edges : public every_change<document_world> {
protected:
    log_edges() { counted_value::enter(); }

    static std::string stream_of(kelm::model& which, bool with_history = true) {
        std::ostringstream out;
        EXPECT_TRUE(which.write(&out, with_history, 0, false, nullptr));
        return out.str();
    }
    bool load_stream(const std::string& bytes) {
        make_copy();
        std::istringstream in{bytes};
        return copy->read(&in, nullptr);
    }
    static std::string counted(int value) {
        return stored_fields{}.byte(1).byte(1).word(700100).word(static_cast<u32>(value)).bytes();
    }
    /// The log of one transaction with these two messages.
    std::string stream_with(const std::string& first, const std::string& second) {
        stored_fields history;
        history.word(9).word(0).word(0).word(1).word(4);
        history.word(message_type::tran_begin).word(1).byte(1).word(0).word(1).text("t");
        const std::string end = stored_fields{}
                                    .word(message_type::tran_end)
                                    .word(1)
                                    .byte(1)
                                    .word(0)
                                    .word(1)
                                    .word(0)
                                    .text("")
                                    .bytes();
        std::string tree = stream_of(*model, false);
        tree.back() = 1;
        return tree + history.bytes() + first + second + end;
    }
    stored_fields about_a(u32 code, u32 property) const {
        return stored_fields{}.word(code).word(a->id()).byte(1).word(property).word(a->id());
    }
};

TEST_F(log_edges, value_of_an_earlier_message_is_one_box_for_a_later_one) {
    const auto bytes_of = [](stored_fields fields) { return fields.bytes(); };
    const struct {
        const char* why;
        std::string first;
        std::string second;
    } rows[] = {
        {"a value that was deleted, then set",
         bytes_of(about_a(message_type::property_delete, props::number)) + counted(77) + '\0',
         about_a(message_type::property_set, props::number)
             .shared_value(1, 0)
             .word(0)
             .no_value()
             .byte(0)
             .bytes()},
        {"a value that was deleted, then put into a list",
         bytes_of(about_a(message_type::property_delete, props::number)) + counted(77) + '\0',
         about_a(message_type::property_set_vec_prop, props::list)
             .word(0)
             .shared_value(1, 0)
             .owned_number(5)
             .bytes()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string bytes = stream_with(row.first, row.second);
        make_copy(); // the one of the row before has gone
        const long before = counted_value::alive;
        ASSERT_TRUE(load_stream(bytes));
        ASSERT_EQ(copy->message_count(), 4U);
        EXPECT_EQ(counted_value::alive, before + 1);
        EXPECT_EQ(hex(stream_of(*copy)), hex(bytes)) << "written once, and referred to";
        copy->clear_history();
        EXPECT_EQ(counted_value::alive, before);
    }
}

TEST_F(log_edges, messages_about_objects_that_a_document_lost_fit_streams_of_every_version) {
    object* made = nullptr;
    change([&] {
        made = fw.create_object(types::part, a);
        ASSERT_TRUE(made->set_property(props::text, text("x")));
        ASSERT_TRUE(made->add_inherits_from(b));
    });
    change([&] { ASSERT_TRUE(fw.delete_object(made)); });
    ASSERT_TRUE(load(saved(true)));
    ASSERT_EQ(copy->message_count(), model->message_count());
    ASSERT_EQ(copy->message_at(1)->object(), nullptr) << "the document has the messages, not the object";
    for (const u32 minor : {3U, 6U, 12U, 20U}) {
        SCOPED_TRACE(minor);
        ASSERT_TRUE(load(saved(true)));
        copy->meta_model()->set_version(7);
        copy->meta_model()->set_minor_version(minor);
        const std::string bytes = stream_of(*copy);
        const std::size_t count = copy->message_count();
        const std::string words = told_by(*copy);
        ASSERT_TRUE(load_stream(bytes));
        EXPECT_EQ(copy->message_count(), count);
        EXPECT_EQ(told_by(*copy), words);
    }
}

TEST_F(log_edges, type_of_an_object_that_a_document_lost_is_written_again) {
    object* made = nullptr;
    change([&] { made = fw.create_object(types::part, a); });
    change([&] { ASSERT_TRUE(fw.delete_object(made)); });
    std::string document = saved(true);
    for (int round = 0; round != 3; ++round) {
        SCOPED_TRACE(round);
        ASSERT_TRUE(load(document));
        const auto* const create = message_cast<obj_create_message>(copy->message_at(1));
        ASSERT_TRUE(create);
        EXPECT_EQ(create->object_type(), types::part);
        document = saved(*copy, true);
    }
}

TEST_F(log_edges, object_whose_deletion_was_refused_at_its_last_step_comes_back_by_undo) {
    object* const child = part("child", a);
    ASSERT_TRUE(child->set_property(props::reference, reference(b)));
    model->clear_history();
    model->clear_modified();
    const std::string before = dump();
    struct : observer {
        bool update(subject*, message* what) override { return what->type() != message_type::obj_delete; }
    } refusing;
    a->attach(&refusing);
    change([&] { fw.delete_object(a); });
    a->detach(&refusing);
    ASSERT_TRUE(load_stream(stream_of(*model)));
    const std::string behind = dump_of(*copy);
    while (copy->can_undo()) copy->undo();
    EXPECT_EQ(dump_of(*copy), before);
    EXPECT_EQ(broken_links(*copy), "");
    while (copy->can_redo()) copy->redo();
    EXPECT_EQ(dump_of(*copy), behind);
}

TEST_F(log_edges, document_of_a_log_without_a_transaction_needs_the_stream_beside) {
    ASSERT_TRUE(a->set_property(props::text, text("x"))); // in no transaction
    ASSERT_GT(model->message_count(), 0U);
    std::ostringstream good;
    const dom_document into;
    EXPECT_TRUE(model->write(&good, true, 0, false, into.root()));
    EXPECT_NE(good.str(), "") << "the messages have no other place";
    std::ostringstream bad;
    bad.setstate(std::ios::badbit);
    const dom_document again;
    EXPECT_FALSE(model->write(&bad, true, 0, false, again.root()));
    change([&] { ASSERT_TRUE(a->set_property(props::text, text("y"))); });
    const dom_document closed;
    EXPECT_TRUE(model->write(&bad, true, 0, false, closed.root())) << "now the document has a place for them";
}

TEST_F(log_edges, value_that_cannot_be_stored_fails_its_own_log_and_nothing_later) {
    object* const gone = hooked("gone");
    hooks.on<obj_delete_semantic>([](hook_call& last) { // behind this nobody looks at the values any more
        return last.at->set_property(props::text, unregistered_value{});
    });
    change([&] { ASSERT_TRUE(fw.delete_object(gone)); });
    for (const bool for_replay : {false, true}) {
        SCOPED_TRACE(for_replay);
        const dom_document alone;
        model->history()->write_messages(alone.root(), nullptr, 0, for_replay);
        EXPECT_FALSE(document_pass::has_failed()) << "the failure is not that of whoever writes next";
    }
    const dom_document whole;
    EXPECT_FALSE(model->write(nullptr, true, 0, false, whole.root()));
    EXPECT_FALSE(document_pass::has_failed());
    const dom_document without_log;
    EXPECT_TRUE(model->write(nullptr, false, 0, false, without_log.root()));
}

TEST_F(log_edges, what_lies_below_a_deleted_object_is_deleted_too) {
    stored_fields history;
    history.word(0).word(0).word(1);              // counters, one deleted object
    history.word(0).word(types::thing).word(55);  // of no owner
    for (int i = 0; i != 4; ++i) history.word(0); // without values and links
    history.word(1).word(types::thing).word(56);  // with a child
    for (int i = 0; i != 4; ++i) history.word(0);
    history.word(1).word(types::part).word(57); // that has one itself
    for (int i = 0; i != 5; ++i) history.word(0);
    history.word(0).word(0); // no transactions, no messages
    std::string bytes = stream_of(*model, false);
    bytes.back() = 1;
    ASSERT_TRUE(load_stream(bytes + history.bytes()));
    for (const u32 id : {55U, 56U, 57U}) EXPECT_EQ(copied(id), nullptr) << id;
    EXPECT_EQ(dump_of(*copy), dump());
    EXPECT_EQ(broken_links(*copy), "");
}

} // namespace
} // namespace kelm::test
