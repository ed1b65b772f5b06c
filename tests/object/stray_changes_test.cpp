// Changes, refusals and ends outside any transaction.
// They are recorded, and belong to nothing that can be taken back.
#include "tests/object/transaction_world.h"

namespace kelm::test {
namespace {

class stray_changes : public transaction_world {};

TEST_F(stray_changes, a_stray_change_is_no_transaction_and_cannot_be_undone) {
    set("stray");
    EXPECT_TRUE(model->in_transaction()) << "the newest message is in no closed one";
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->can_undo());
    model->undo();
    model->rollback_transaction();
    model->rollback_transaction_all();
    EXPECT_EQ(value(), "stray");
    EXPECT_EQ(message_types(), "7");
    EXPECT_EQ(model->current_transaction(), nullptr);

    change("x");
    EXPECT_FALSE(model->in_transaction());
    model->undo();
    EXPECT_EQ(value(), "stray");
    EXPECT_EQ(message_types(), "7");
}

TEST_F(stray_changes, a_refusal_outside_a_transaction_takes_nothing_back) {
    change("x");
    set("stray");
    const std::string before = message_types();
    hooks.refuse<pre_prop_set_semantic>();
    EXPECT_FALSE(a->set_property(props::text, text("y")));
    EXPECT_TRUE(fw.in_semantic());
    EXPECT_EQ(message_types(), before);
    EXPECT_EQ(value(), "stray");
    hooks.clear();
    hooks.refuse<post_prop_set_semantic>();
    EXPECT_FALSE(a->set_property(props::text, text("y")));
    EXPECT_EQ(value(), "y") << "what was done stays";
    EXPECT_EQ(message_types(), before + " 7");
}

TEST_F(stray_changes, an_end_without_a_begin_is_stored_and_harms_no_later_one) {
    begin();
    set("x");
    hooks.refuse<pre_prop_set_semantic>();
    a->set_property(props::text, text("y")); // rolls the level back
    hooks.clear();
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(model->end_transaction(), nullptr) << "the caller ends it all the same";
    EXPECT_EQ(model->end_transaction(), nullptr);
    EXPECT_EQ(message_types(), "2 2");
    EXPECT_FALSE(model->can_undo());
    EXPECT_EQ(model->last_transaction(), nullptr);
    std::string said;
    EXPECT_EQ(model->message_at(0)->to_string(said), " End Transaction - ");
    EXPECT_EQ(message_cast<tran_end_message>(model->message_at(0))->id(), 0u);

    tran_begin_message* const next = model->begin_transaction("next");
    EXPECT_EQ(next->level(), 0u) << "it is outermost";
    set("z");
    EXPECT_TRUE(model->end_transaction());
    EXPECT_TRUE(model->can_undo());
    model->undo();
    EXPECT_EQ(value(), "none");
    EXPECT_EQ(message_types(), "2 2");
}

} // namespace
} // namespace kelm::test
