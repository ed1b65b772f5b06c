// Asking a model for deltas: of which stretch, kept how long, and what there is in the middle of things.
// What deltas tell is the business of the other tests here.
#include "tests/delta/delta_world.h"

#include "testing/read_model.h"

#include <sstream>

namespace kelm::test {
namespace {

class doors : public delta_world {
protected:
    void set(const std::string& value) { a->set_property(props::text, text(value)); }
    std::string changed(const std::string& from, const std::string& to) {
        const auto quoted = [](const std::string& each) { return each == "none" ? each : "'" + each + "'"; };
        return "modified a\n  10: " + quoted(from) + " -> " + quoted(to) + "\n";
    }
    std::string since(tran_begin_message* from) { return text_of(model->delta_since(from).get(), *model); }
    std::string made(message* stop) {
        const std::unique_ptr<delta> own{model->make_delta(stop)};
        return text_of(own.get(), *model);
    }

    object* const a = thing("a");
};

TEST_F(doors, since_nothing_is_since_the_first_message) {
    EXPECT_FALSE(model->delta_since(nullptr)) << "there is none";
    change([&] { set("1"); });
    change([&] { set("2"); });
    EXPECT_EQ(since(nullptr), changed("none", "2"));
}

TEST_F(doors, since_a_begin_is_with_its_transaction) {
    change([&] { set("1"); });
    change([&] { set("2"); });
    tran_begin_message* const second = model->last_transaction();
    change([&] { set("3"); });
    EXPECT_EQ(since(second), changed("1", "3"));
    EXPECT_EQ(since(model->last_transaction()), changed("2", "3"));
    EXPECT_EQ(since(message_cast<tran_begin_message>(model->message_at(0))), changed("none", "3"));
    EXPECT_EQ(made(message_cast<message>(second)), changed("1", "3"));
}

// Nothing stands for the first message but itself: one that was made outside of transactions is not folded.
TEST_F(doors, a_first_message_without_a_transaction_is_left_out) {
    set("1");
    change([&] { set("2"); });
    EXPECT_EQ(message_types(), "7 1 7 2");
    EXPECT_EQ(since(nullptr), changed("1", "2"));
}

TEST_F(doors, any_message_may_be_the_stop) {
    change([&] {
        set("1");
        set("2");
        set("3");
    });
    EXPECT_EQ(made(model->message_at(0)), changed("none", "3"));
    EXPECT_EQ(made(model->message_at(1)), changed("1", "3"));
    EXPECT_EQ(made(model->message_at(2)), changed("2", "3"));
    EXPECT_EQ(made(model->message_at(3)), "none\n") << "only the end comes behind";
    EXPECT_EQ(made(model->message_at(4)), "none\n") << "nothing does";
}

TEST_F(doors, a_stop_that_is_not_there_gives_none) {
    EXPECT_EQ(made(nullptr), "none\n");
    change([&] { set("1"); });
    EXPECT_EQ(made(nullptr), "none\n");
    tran_begin_message* const undone = model->last_transaction();
    model->undo();
    EXPECT_FALSE(model->delta_since(undone)) << "it is on the other side";
    EXPECT_EQ(made(message_cast<message>(undone)), "none\n");
    change([&] { a->set_property(props::number, number(1)); });
    object* const elsewhere = fw.create_object(type_id::model, nullptr);
    elsewhere->model()->begin_transaction("");
    fw.create_object(types::thing, elsewhere);
    elsewhere->model()->end_transaction();
    EXPECT_EQ(made(elsewhere->model()->message_at(0)), "none\n") << "it is of another model";
    fw.delete_object(elsewhere);
    fw.set_in_semantic(false);
}

TEST_F(doors, an_open_transaction_is_told_so_far) {
    change([&] { set("1"); });
    tran_begin_message* const open = model->begin_transaction("t");
    EXPECT_EQ(since(open), "none\n");
    set("2");
    EXPECT_EQ(since(open), changed("1", "2"));
    EXPECT_EQ(since(nullptr), changed("none", "2"));
    tran_begin_message* const inside = model->begin_transaction("inside");
    set("3");
    EXPECT_EQ(since(inside), changed("2", "3"));
    EXPECT_EQ(model->last_delta(), nullptr);
    model->rollback_transaction();
    EXPECT_EQ(since(open), changed("1", "2"));
    end();
    EXPECT_EQ(last_told(), changed("1", "2"));
}

TEST_F(doors, the_last_delta_is_that_of_the_last_transaction) {
    EXPECT_EQ(model->last_delta(), nullptr);
    change([&] { set("1"); });
    EXPECT_EQ(last_told(), changed("none", "1"));
    change([&] { set("2"); });
    EXPECT_EQ(last_told(), changed("1", "2"));
    EXPECT_EQ(model->last_delta(), model->last_delta()) << "kept";
    change([&] { set("2"); });
    EXPECT_EQ(last_told(), "none\n") << "without effect";
    set("3");
    EXPECT_EQ(last_told(), "none\n") << "the last change is in no transaction";
}

TEST_F(doors, an_end_without_a_begin_is_no_transaction) {
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "2");
    EXPECT_EQ(model->last_delta(), nullptr);
}

// The model keeps its delta, and with it copies of lists, until it could be out of date.
TEST_F(doors, the_last_delta_is_dropped_by_what_may_outdate_it) {
    before([&] { a->set_property(props::list, *list(counted_value{1}, counted_value{2})); });
    const auto append = [&] { a->append_vector_element(props::list, counted_value{3}); };
    change(append);
    change(append);
    const long alive = counted_value::alive;
    const auto keep = [&](long copies) {
        ASSERT_NE(model->last_delta(), nullptr);
        EXPECT_EQ(counted_value::alive, alive + copies);
    };
    keep(3);
    begin();
    EXPECT_EQ(counted_value::alive, alive) << "a begin";
    end();
    keep(3);
    model->undo();
    EXPECT_EQ(counted_value::alive, alive) << "an undo";
    keep(2);
    model->redo();
    EXPECT_EQ(counted_value::alive, alive) << "a redo";
    keep(3);
    model->rollback_last_transaction();
    EXPECT_EQ(counted_value::alive, alive - 1) << "a rollback of what it tells of";
    const std::string of_first = "modified a\n  14: ['counted 1' 'counted 2'] -> "
                                 "['counted 1' 'counted 2' 'counted 3']\n";
    EXPECT_EQ(last_told(), of_first);
    model->set_undo_levels(5);
    change(append);
    ASSERT_NE(model->last_delta(), nullptr);
    const long kept = counted_value::alive;
    model->set_undo_levels(1);
    EXPECT_EQ(counted_value::alive, kept - 3) << "a limit; the old messages hold no values";
    EXPECT_EQ(since(nullptr), last_told()) << "one is left";
    model->clear_history();
    EXPECT_EQ(counted_value::alive, alive) << "what is in the model";
    EXPECT_EQ(model->last_delta(), nullptr);
}

TEST_F(doors, a_rollback_of_the_last_transaction_leads_to_the_delta_of_the_one_before) {
    change([&] { set("1"); });
    change([&] { set("2"); });
    EXPECT_EQ(last_told(), changed("1", "2"));
    model->rollback_last_transaction();
    EXPECT_EQ(last_told(), changed("none", "1"));
    model->rollback_last_transaction();
    EXPECT_EQ(last_told(), "none\n");
}

TEST_F(doors, the_delta_of_a_level_is_not_handed_out_for_the_whole) {
    begin("outer");
    set("1");
    begin("inner");
    set("2");
    end();
    EXPECT_EQ(last_told(), changed("1", "2"));
    end();
    EXPECT_EQ(last_told(), changed("none", "2"));
    begin("outer");
    begin("inner");
    set("3");
    end();
    EXPECT_EQ(last_told(), changed("2", "3"));
    set("4");
    EXPECT_EQ(last_told(), "none\n") << "inside of the outer one again";
    begin("another");
    set("5");
    end();
    EXPECT_EQ(last_told(), changed("4", "5"));
    end();
    EXPECT_EQ(last_told(), changed("2", "5"));
}

TEST_F(doors, undo_and_redo_lead_to_the_deltas_of_what_is_last_then) {
    change([&] { set("1"); });
    change([&] {
        set("2");
        part("n");
    });
    const std::string second = "created n\n" + changed("1", "2");
    EXPECT_EQ(last_told(), second);
    model->undo();
    EXPECT_EQ(last_told(), changed("none", "1"));
    EXPECT_EQ(since(nullptr), changed("none", "1"));
    model->undo();
    EXPECT_EQ(last_told(), "none\n");
    EXPECT_FALSE(model->delta_since(nullptr));
    model->redo();
    EXPECT_EQ(last_told(), changed("none", "1"));
    model->redo();
    EXPECT_EQ(last_told(), second);
    EXPECT_EQ(since(nullptr), "created n\n" + changed("none", "2"));
}

TEST_F(doors, who_is_told_of_an_end_may_ask_for_the_delta) {
    std::string heard;
    {
        recorder ear;
        ear.watch(root);
        ear.meanwhile = [&](message* what) {
            if (what->type() == message_type::tran_end) heard += last_told();
        };
        change([&] { set("1"); });
        EXPECT_EQ(heard, changed("none", "1"));
        change([&] { set("2"); });
        EXPECT_EQ(heard, changed("none", "1") + changed("1", "2"));
    }
}

// Before anything is taken back, the delta tells what will be.
TEST_F(doors, who_is_told_of_an_undo_may_ask_for_the_delta) {
    change([&] { set("1"); });
    change([&] {
        set("2");
        fw.delete_object(part("n"));
    });
    std::string heard;
    recorder ear;
    ear.watch(root);
    ear.meanwhile = [&](message* what) {
        if (model->is_undoing() && what->type() == message_type::tran_begin)
            heard += since(model->last_transaction());
    };
    model->undo();
    EXPECT_EQ(heard, changed("1", "2"));
    model->undo();
    EXPECT_EQ(heard, changed("1", "2") + changed("none", "1"));
}

TEST_F(doors, a_model_that_is_read_tells_what_was_written) {
    object* const b = thing("b");
    object* const c = part("c", b);
    part("d", b);
    before([&] {
        set("0");
        a->set_property(props::reference, reference(c));
        c->add_inherits_from(a);
    });
    change([&] {
        set("1");
        a->append_vector_element(props::list, text("x"));
        a->append_vector_element(props::list, text("y"));
        a->move_vector_element(props::list, 0, 1);
        object* const n = part("n", b);
        b->set_child_position(n, 0);
    });
    change([&] {
        a->delete_vector_element(props::list, 0);
        c->set_property_not_inheritable(props::list, true);
        c->set_owner(a);
        fw.delete_object(c);
        part("m", b)->add_inherits_from(a);
        a->refresh_property(props::flag, nullptr, std::make_unique<property<bool>>(true).get());
    });
    const std::string all = told();
    const std::string last = last_told();
    model->meta_model()->set_version(kelm::testing::newest_version);
    std::ostringstream out;
    ASSERT_TRUE(model->write(&out, true, 0, false, nullptr));
    const kelm::testing::read_model copy;
    copy->begin_transaction("");
    copy->as_object()->set_property(props::definition, text("will be gone"));
    copy->end_transaction();
    ASSERT_NE(copy->last_delta(), nullptr);
    std::istringstream in{out.str()};
    ASSERT_TRUE(copy->read(&in, nullptr));
    EXPECT_EQ(text_of(copy->delta_since(nullptr).get(), *copy), all);
    EXPECT_EQ(text_of(copy->last_delta(), *copy), last);
    copy->undo();
    model->undo();
    EXPECT_EQ(text_of(copy->last_delta(), *copy), last_told());
}

TEST_F(doors, a_delta_outlives_the_next_changes) {
    change([&] { set("1"); });
    const auto first = model->delta_since(nullptr);
    change([&] { set("2"); });
    EXPECT_EQ(detail_cast<detail_modified>(first->modified_details().at(0))->changed_properties(),
              std::vector<u32>{props::text});
    EXPECT_EQ(before_of(*first, a)->original_property_as_string(props::text, nullptr), "");
}

} // namespace
} // namespace kelm::test
