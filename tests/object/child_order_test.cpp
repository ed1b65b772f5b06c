// Giving children another place among those of their type.
// Coming and going is children_test.
#include "tests/object/hook_lines.h"

namespace kelm::test {

namespace {

class child_order_test : public world {
protected:
    object* const owner = hooked("owner");
    object* const before_all = thing("z", owner);
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    object* const c = part("c", owner);
};

} // namespace

TEST_F(child_order_test, moves_inside_the_run_of_the_type) {
    struct row {
        const char* why;
        object* child;
        std::size_t to;
        const char* order;
        const char* described;
    };
    for (const row& r : {row{"to the end", a, 2, "z b c a", "new position 2, old position: 0"},
                         row{"to the front", c, 0, "z c a b", "new position 0, old position: 2"},
                         row{"one further", a, 1, "z b a c", "new position 1, old position: 0"},
                         row{"to where it stands", b, 1, "z a b c", "new position 1, old position: 1"},
                         row{"another run", before_all, 0, "z a b c", "new position 0, old position: 0"}}) {
        SCOPED_TRACE(r.why);
        const std::string before = dump();
        recorder heard;
        heard.watch(owner);
        begin();
        EXPECT_TRUE(owner->set_child_position(r.child, r.to));
        end();
        EXPECT_EQ(names_of(owner->children()), r.order);
        EXPECT_EQ(message_types(), "1 17 2");
        EXPECT_NE(heard.take().find(r.described), std::string::npos);
        expect_undone_and_redone(before);
        model->undo();
        model->clear_history();
    }
}

TEST_F(child_order_test, is_told_in_full_both_ways) {
    recorder heard;
    heard.watch(owner);
    begin();
    owner->set_child_position(a, 2);
    end();
    const auto* const said = message_cast<child_order_message>(model->message_at(1));
    EXPECT_EQ(said->child(), a);
    EXPECT_EQ(said->new_pos(), 2u);
    EXPECT_EQ(said->old_pos(), 0u);
    model->undo();
    model->redo();
    EXPECT_EQ(
        heard.take(),
        "17 first Order Child - object: Part owner.a of Hooked owner: new position 2, old position: 0\n"
        "17 again Order Child - object: Part owner.a of Hooked owner: new position 0, old position: 2\n"
        "17 again Order Child - object: Part owner.a of Hooked owner: new position 2, old position: 0\n");
}

TEST_F(child_order_test, keeps_silent_when_a_position_past_the_end_takes_the_child_out) {
    std::string lines;
    write_down(hooks, lines, {25, 26});
    recorder heard;
    heard.watch(owner);
    for (const std::size_t beyond : {std::size_t{3}, npos}) {
        begin();
        EXPECT_TRUE(owner->set_child_position(b, beyond));
        EXPECT_EQ(names_of(owner->children()), "z a c");
        EXPECT_EQ(b->owner(), owner);
        EXPECT_EQ(message_types(), "1");
        EXPECT_TRUE(owner->set_child_position(b, beyond)); // it is out already
        EXPECT_EQ(message_types(), "1");
        EXPECT_EQ(heard.take(), "");
        EXPECT_TRUE(owner->set_child_position(b, 1));
        end();
        heard.take();
        model->clear_history();
    }
    EXPECT_EQ(lines, "25 owner b 3\n25 owner b 3\n25 owner b 1\n26 owner b 1 2\n"
                     "25 owner b npos\n25 owner b npos\n25 owner b 1\n26 owner b 1 2\n");
}

TEST_F(child_order_test, puts_in_a_child_that_was_taken_out) {
    owner->remove_child(b);
    model->clear_history();
    recorder heard;
    heard.watch(owner);
    begin();
    EXPECT_TRUE(owner->set_child_position(b, 2)); // the length of the run, and its old position as well
    end();
    EXPECT_EQ(names_of(owner->children()), "z a c b");
    EXPECT_EQ(
        heard.take(),
        "17 first Order Child - object: Part owner.b of Hooked owner: new position 2, old position: 2\n");
    owner->remove_child(b);
    model->clear_history();
    begin();
    EXPECT_TRUE(owner->set_child_position(b, 0));
    end();
    EXPECT_EQ(names_of(owner->children()), "z b a c");
    // Kept: taking it back moves the child to its old position, the end of the run; it stays in the list.
    model->undo();
    EXPECT_EQ(names_of(owner->children()), "z a c b");
    model->redo();
    EXPECT_EQ(names_of(owner->children()), "z b a c");
}

TEST_F(child_order_test, of_a_stranger_is_refused) {
    object* const stranger = part("stranger", thing("elsewhere"));
    const std::string before = dump();
    for (object* const child : {stranger, root, static_cast<object*>(nullptr)}) {
        begin();
        EXPECT_FALSE(owner->set_child_position(child, 0));
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
    }
}

TEST_F(child_order_test, without_a_list_ends_behind_the_first_hooks) {
    object* const empty = hooked("empty");
    std::string lines;
    write_down(hooks, lines, {25, 26});
    begin();
    EXPECT_TRUE(empty->set_child_position(a, 0));
    EXPECT_EQ(message_types(), "1");
    end();
    EXPECT_EQ(lines, "25 empty a 0\n");
}

TEST_F(child_order_test, hooks_hear_both_positions_and_may_react) {
    std::string lines;
    write_down(hooks, lines, {25});
    hooks.on<post_set_child_order_semantic>([&](hook_call& call) {
        lines += test::line_of(call) + (fw.in_semantic() ? " marked" : "") + "\n";
        return call.others[0]->set_property(props::number, number(static_cast<int>(call.numbers[0])));
    });
    const std::string before = dump();
    begin();
    EXPECT_TRUE(owner->set_child_position(c, 0));
    end();
    EXPECT_EQ(lines, "25 owner c 0\n26 owner c 0 2 marked\n");
    EXPECT_EQ(message_types(), "1 17 7 2");
    EXPECT_FALSE(model->message_at(2)->is_user_created());
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_F(child_order_test, an_observer_that_refuses_leaves_the_change) {
    std::string lines;
    write_down(hooks, lines, {26});
    recorder heard;
    heard.watch(owner);
    heard.answer = false;
    begin();
    EXPECT_FALSE(owner->set_child_position(c, 0));
    EXPECT_EQ(names_of(owner->children()), "z c a b");
    EXPECT_EQ(message_types(), "1 17");
    EXPECT_EQ(lines, "");
    end();
}

} // namespace kelm::test
