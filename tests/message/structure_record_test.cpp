// The stored fields of the messages of transactions, the graph, observers and user-defined properties.
// Those of values have a file of their own.
#include "message/transaction_messages.h"
#include "tests/message/record_world.h"

#include <kelm/structure_messages.h>

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class structure_record : public record_world {
protected:
    message_impl& first_of(u32 type) const {
        for (std::size_t i = 0; i != model->message_count(); ++i)
            if (model->message_at(i)->type() == type) return stored(i);
        throw std::runtime_error{"no such message"};
    }
    void link(object* from, object* base) {
        begin();
        ASSERT_TRUE(from->add_inherits_from(base));
        end();
    }

    object* a = thing("a");
    object* b = thing("b");
    object* c = thing("c");
};

TEST_F(structure_record, transaction) {
    begin("outer");
    begin("inner");
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    end();
    end();
    const u32 id = model->last_transaction_id();
    expect_bytes(stored(0), stored_fields{}.word(0).word(id - 1).text("outer"));
    expect_bytes(stored(1), stored_fields{}.word(1).word(id).text("inner"));
    expect_bytes(stored(3), stored_fields{}.word(1).word(id).word(1).text(""));
    auto& end_message = *message_cast<tran_end_message>(model->message_at(4));
    end_message.set_processed_state(7);
    end_message.set_processed_err_msg("late");
    expect_bytes(stored(4), stored_fields{}.word(0).word(id - 1).word(7).text("late"));
}

TEST_F(structure_record, end_finds_the_newest_begin_of_its_id) {
    begin("outer");
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    end();
    const u32 id = model->last_transaction_id();
    const auto older = read(1, root, written(stored(0)));
    const auto newer = read(1, root, written(stored(0)));
    const auto other = read(1, root, stored_fields{}.word(0).word(id + 1).text("").bytes());
    earlier = {older.get(), newer.get(), other.get()};
    const auto closing = read(2, root, written(stored(2)));
    const auto* const found = message_cast<tran_end_message>(closing.get());
    EXPECT_EQ(found->begin_message(), message_cast<tran_begin_message>(newer.get()));
    EXPECT_EQ(message_cast<tran_begin_message>(newer.get())->end_message(), found);
    EXPECT_EQ(message_cast<tran_begin_message>(older.get())->end_message(), nullptr);
    EXPECT_EQ(found->id(), id);
    EXPECT_EQ(hex(written(*closing)), hex(written(stored(2))));
}

TEST_F(structure_record, end_without_its_begin_has_no_partner) {
    const auto closing = read(2, root, stored_fields{}.word(0).word(77).word(3).text("e").bytes());
    const auto* const end_message = message_cast<tran_end_message>(closing.get());
    EXPECT_EQ(end_message->begin_message(), nullptr);
    EXPECT_EQ(end_message->id(), 0U);
    EXPECT_EQ(end_message->processed_state(), 3U);
    EXPECT_EQ(end_message->processed_err_msg(), "e");
    expect_bytes(*closing, stored_fields{}.word(0).word(0).word(3).text("e"));
}

TEST_F(structure_record, older_streams_lack_the_state_of_an_end) {
    const std::string bytes = stored_fields{}.word(2).word(77).word(3).text("e").bytes();
    struct {
        int version, minor_version;
        u32 expected;
    } const rows[] = {{6, 99, 0}, {7, 13, 0}, {7, 14, 3}, {7, 15, 3}, {8, 0, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.version) + "." + std::to_string(row.minor_version));
        const auto closing = read(2, root, bytes, row.version, row.minor_version);
        EXPECT_EQ(message_cast<tran_end_message>(closing.get())->processed_state(), row.expected);
        EXPECT_EQ(message_cast<tran_end_message>(closing.get())->level(), 2U);
    }
}

TEST_F(structure_record, creation) {
    begin();
    object* const made = fw.create_object(types::part, a);
    ASSERT_TRUE(made);
    end();
    auto& said = first_of(message_type::obj_create);
    expect_bytes(said, stored_fields{}.word(a->id()).word(types::part));
    expect_same_again(said);
    EXPECT_EQ(message_cast<obj_create_message>(&said)->object_type(), 0U) << "only a reader knows it";
    const auto again = read(4, made, written(said));
    EXPECT_EQ(message_cast<obj_create_message>(again.get())->object_type(), types::part);
    EXPECT_EQ(message_cast<obj_create_message>(again.get())->owner(), a);
    const auto old = read(4, made, written(said), 7, 12);
    EXPECT_EQ(message_cast<obj_create_message>(old.get())->object_type(), 0U);
    const auto since = read(4, made, written(said), 7, 13);
    EXPECT_EQ(message_cast<obj_create_message>(since.get())->object_type(), types::part);

    auto& added = first_of(message_type::child_add);
    expect_bytes(added, stored_fields{}.word(made->id()).word(0));
    expect_same_again(added);
}

TEST_F(structure_record, deletion) {
    object* const gone = part("gone", a);
    part("stays", a);
    const u32 id = gone->id();
    begin();
    ASSERT_TRUE(fw.delete_object(gone));
    end();
    expect_bytes(first_of(message_type::obj_pre_delete), stored_fields{}.word(a->id()));
    expect_bytes(first_of(message_type::child_pre_remove), stored_fields{}.word(id));
    expect_bytes(first_of(message_type::child_remove), stored_fields{}.word(id).word(0));
    expect_bytes(first_of(message_type::obj_delete), stored_fields{}.word(a->id()));
    expect_same_again(first_of(message_type::obj_pre_delete));
    // An object that is in no id map cannot be found by a single message.
    const auto removed = read(16, a, written(first_of(message_type::child_remove)));
    EXPECT_EQ(message_cast<child_remove_message>(removed.get())->child(), nullptr);
    const auto deleted = read(6, nullptr, written(first_of(message_type::obj_delete)));
    EXPECT_EQ(message_cast<obj_delete_message>(deleted.get())->owner(), a);
}

TEST_F(structure_record, order_of_children) {
    object* const p = part("p", a);
    part("q", a);
    auto& said = after([&] { return a->set_child_position(p, 1); });
    expect_bytes(said, stored_fields{}.word(p->id()).word(1).word(0));
    expect_same_again(said);
}

TEST_F(structure_record, change_of_owner) {
    object* const p = part("p", a);
    auto& said = after([&] { return p->set_owner(b); });
    ASSERT_EQ(said.type(), message_type::owner_set);
    expect_bytes(said, stored_fields{}.word(b->id()).word(a->id()));
    expect_same_again(said);
}

TEST_F(structure_record, bases) {
    auto& added = after([&] { return a->add_inherits_from(b); });
    expect_bytes(added, stored_fields{}.word(b->id()).word(0));
    expect_same_again(added);
    auto& inserted = after([&] { return a->insert_inherits_from(c, 0); });
    expect_bytes(inserted, stored_fields{}.word(c->id()).word(0));
    expect_same_again(inserted);
    auto& ordered = after([&] { return a->set_inherits_from_position(c, 1); });
    expect_bytes(ordered, stored_fields{}.word(c->id()).word(1).word(0));
    expect_same_again(ordered);
    object* const d = thing("d");
    auto& replaced = after([&] { return a->replace_inherits_from(d, c); });
    expect_bytes(replaced, stored_fields{}.word(d->id()).word(c->id()).word(1));
    expect_same_again(replaced);
    auto& cancelled = after([&] { return a->cancel_inherits_from(d); });
    expect_bytes(cancelled, stored_fields{}.word(d->id()).word(1));
    expect_same_again(cancelled);
}

TEST_F(structure_record, observers) {
    auto& added = after([&] { return a->attach(message_cast<observer>(b)); });
    expect_bytes(added, stored_fields{}.word(b->id()));
    expect_same_again(added);
    const auto again = read(24, a, written(added));
    EXPECT_EQ(message_cast<observer_add_message>(again.get())->observer(), message_cast<observer>(b));
    auto& removed = after([&] { return a->detach_object(b); });
    expect_bytes(removed, stored_fields{}.word(b->id()));
    expect_same_again(removed);

    const auto unknown = read(24, a, stored_fields{}.word(999999).bytes());
    EXPECT_EQ(message_cast<observer_add_message>(unknown.get())->observer(), nullptr);
    expect_bytes(*unknown, stored_fields{}.word(999999));
    const auto none = read(25, a, stored_fields{}.word(0).bytes());
    EXPECT_EQ(message_cast<observer_remove_message>(none.get())->observer(), nullptr);
}

TEST_F(structure_record, user_defined_property) {
    begin();
    meta_property* const made =
        model->add_user_defined_property(types::thing, "Colour", data_type::string, "d", 0);
    ASSERT_TRUE(made);
    end();
    const u32 id = made->id();
    const auto set_default = [&](const char* value) {
        meta_object* const type = model->meta_model()->find_meta_object(types::thing);
        return model->set_user_defined_property_attribute(type, made, attribute_id::default_value,
                                                          text(value));
    };
    auto& added = first_of(message_type::udp_add);
    expect_bytes(added, stored_fields{}.word(types::thing).word(id).text("Colour").word(6));
    expect_same_again(added);

    auto& first = after([&] { return set_default("red"); });
    expect_bytes(first, stored_fields{}.word(types::thing).word(id).word(7).owned_text("red").no_value());
    expect_same_again(first);
    auto& second = after([&] { return set_default("blue"); });
    expect_bytes(second,
                 stored_fields{}.word(types::thing).word(id).word(7).owned_text("blue").owned_text("red"));
    expect_same_again(second);
    second.register_values(positions, 6);
    EXPECT_EQ(positions.at(second.get_value(0, -1)), (value_position{6, 0, npos32}));
    EXPECT_EQ(positions.at(second.get_value(1, -1)), (value_position{6, 1, npos32}));
    EXPECT_EQ(second.get_value(0, -1)->to_string(), "blue");
    positions.clear();

    auto& removed = after([&] { return model->remove_user_defined_property(types::thing, id); });
    expect_bytes(removed,
                 stored_fields{}.word(types::thing).word(id).text("Colour").word(6).owned_text("blue"));
    expect_same_again(removed);
    removed.register_values(positions, 8);
    ASSERT_EQ(positions.size(), 1U);
    EXPECT_EQ(positions.begin()->second, (value_position{8, 0, npos32}));
    EXPECT_EQ(removed.get_value(0, -1), nullptr);
}

TEST_F(structure_record, type_that_is_gone_reads_as_none) {
    const auto again = read(26, root, stored_fields{}.word(987654).word(50001).text("x").word(6).bytes());
    EXPECT_EQ(message_cast<udp_add_message>(again.get())->owner_meta_type(), nullptr);
    EXPECT_EQ(message_cast<udp_add_message>(again.get())->udp_type(), 50001U);
    EXPECT_TRUE(again->redo());
    EXPECT_TRUE(again->undo());
}

TEST_F(structure_record, told_messages_store_nothing) {
    tran_rollback_message_impl rolled_back{static_cast<silent_edit*>(root), nullptr, false};
    model_close_message_impl closed{static_cast<silent_edit*>(root)};
    EXPECT_EQ(written(rolled_back), "");
    EXPECT_EQ(written(closed), "");
}

} // namespace
} // namespace kelm::test
