// What observers and hooks hear when a list of bases changes, at once and in undo and redo.
// The operations themselves are inherit_list_test.
#include "tests/object/inherit_lines.h"

#include <functional>
#include <vector>

namespace kelm::test {

class inherit_told : public inherit_world {
protected:
    inherit_told() : a(hooked("a")), b(hooked("b")), c(hooked("c")), below(hooked("below")) {
        link(below, a);
    }
    /// b offers "x", and c offers "y".
    void offer_both() {
        give(b, "x");
        give(c, "y");
    }
    void start() {
        forget();
        listen({a, below});
        hooks.record(true);
    }
    void expect_told(const char* when, const std::string& lines) {
        SCOPED_TRACE(when);
        EXPECT_EQ(ears.take(), lines);
    }

    object *const a, *const b, *const c, *const below;
};

TEST_F(inherit_told, an_added_base_brings_its_values) {
    give(b, "x");
    start();
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    EXPECT_EQ(message_types(), "1 19 2") << "what is told of values is not recorded";
    expect_told("first", "19 first a: + b\n"
                         "7 first a: 10 none of nobody -> x in a\n"
                         "7 first below: 10 none of nobody -> x in a\n");
    EXPECT_EQ(hook_log(), "29 a b\n"
                          "7 a b 10 'x'\n7 below b 10 'x'\n"
                          "30 a b\n"
                          "8 a b null 10 'x' 'none'\n8 below b null 10 'x' 'none'\n");
    model->undo();
    expect_told("undo", "20 again a: - b\n10 again a: 10 lost x\n10 again below: 10 lost x\n");
    model->redo();
    expect_told("redo", "19 again a: + b\n"
                        "7 again a: 10 none of nobody -> x in a\n"
                        "7 again below: 10 none of nobody -> x in a\n");
    EXPECT_EQ(hook_log(), "") << "undo and redo call no hooks";
}

TEST_F(inherit_told, a_base_behind_the_giver_of_a_value_changes_nothing) {
    offer_both();
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->add_inherits_from(c); }));
    expect_told("first", "19 first a: + c\n");
    EXPECT_EQ(hook_log(), "29 a c\n30 a c\n");
}

TEST_F(inherit_told, a_base_put_in_front_brings_other_values) {
    object* const front = hooked("front");
    offer_both();
    give(front, "z");
    link(a, b);
    link(a, c);
    start();
    ASSERT_TRUE(change([&] { return a->cancel_inherits_from(b); }));
    ears.take();
    hook_log();
    link(a, b);
    ears.take();
    hook_log();
    // The list is c b: c gives.
    ASSERT_TRUE(change([&] { return a->insert_inherits_from(front, 0); }));
    expect_told("first", "21 first a: + front at 0\n"
                         "7 first a: 10 y of c -> z in a\n"
                         "7 first below: 10 y of c -> z in a\n");
    model->undo();
    expect_told("undo", "20 again a: - front\n"
                        "7 again a: 10 z of front -> y in a\n"
                        "7 again below: 10 z of front -> y in a\n");
    model->redo();
    expect_told("redo", "21 again a: + front at 0\n"
                        "7 again a: 10 y of c -> z in a\n"
                        "7 again below: 10 y of c -> z in a\n");
}

TEST_F(inherit_told, keeps_silent_to_hooks_before_when_the_very_giver_is_pushed_back) {
    offer_both();
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->insert_inherits_from(c, 0); }));
    EXPECT_EQ(hook_log(), "35 a c 0\n36 a c 0\n8 a c b 10 'y' 'x'\n8 below c b 10 'y' 'x'\n");
}

TEST_F(inherit_told, hooks_are_asked_about_a_base_that_comes_well_in_front_of_the_giver) {
    object* const empty = hooked("empty");
    offer_both();
    link(a, empty);
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->insert_inherits_from(c, 0); }));
    EXPECT_EQ(hook_log(), "35 a c 0\n7 a c 10 'y'\n7 below c 10 'y'\n"
                          "36 a c 0\n8 a c b 10 'y' 'x'\n8 below c b 10 'y' 'x'\n");
}

TEST_F(inherit_told, a_cancelled_only_source_takes_its_value_with_it) {
    give(b, "x");
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->cancel_inherits_from(b); }));
    EXPECT_EQ(message_types(), "1 20 2");
    expect_told("first", "20 first a: - b\n10 first a: 10 lost x\n10 first below: 10 lost x\n");
    EXPECT_EQ(hook_log(), "31 a b\n15 a b 10\n15 below b 10\n"
                          "32 a b\n16 a b 10 'x'\n16 below b 10 'x'\n");
    model->undo();
    expect_told("undo", "19 again a: + b\n"
                        "7 again a: 10 none of nobody -> x in a\n"
                        "7 again below: 10 none of nobody -> x in a\n");
    model->redo();
    expect_told("redo", "20 again a: - b\n10 again a: 10 lost x\n10 again below: 10 lost x\n");
}

TEST_F(inherit_told, a_cancelled_source_lets_the_next_one_through) {
    offer_both();
    link(a, b);
    link(a, c);
    start();
    ASSERT_TRUE(change([&] { return a->cancel_inherits_from(b); }));
    expect_told("first", "20 first a: - b\n"
                         "7 first a: 10 x of b -> y in a\n"
                         "7 first below: 10 x of b -> y in a\n");
    EXPECT_EQ(hook_log(), "31 a b\n7 a c 10 'y'\n7 below c 10 'y'\n"
                          "32 a b\n8 a c b 10 'y' 'x'\n8 below c b 10 'y' 'x'\n");
}

TEST_F(inherit_told, a_replaced_source_is_told_as_the_change_that_it_is) {
    offer_both();
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->replace_inherits_from(c, b); }));
    EXPECT_EQ(message_types(), "1 23 2");
    expect_told("first", "23 first a: b by c\n"
                         "7 first a: 10 x of b -> y in a\n"
                         "7 first below: 10 x of b -> y in a\n");
    EXPECT_EQ(hook_log(), "33 a c b\n7 a c 10 'y'\n7 below c 10 'y'\n"
                          "34 a c b\n8 a c b 10 'y' 'x'\n8 below c b 10 'y' 'x'\n");
    model->undo();
    expect_told("undo", "23 again a: c by b\n"
                        "7 again a: 10 y of c -> x in a\n"
                        "7 again below: 10 y of c -> x in a\n");
}

TEST_F(inherit_told, keeps_a_loss_by_replacement_from_undo_and_redo) {
    give(b, "x");
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->replace_inherits_from(c, b); }));
    expect_told("first", "23 first a: b by c\n10 first a: 10 lost x\n10 first below: 10 lost x\n");
    EXPECT_EQ(hook_log(), "33 a c b\n15 a b 10\n15 below b 10\n34 a c b\n16 a b 10 'x'\n16 below b 10 'x'\n");
    model->undo();
    expect_told("undo", "23 again a: c by b\n"
                        "7 again a: 10 none of nobody -> x in a\n"
                        "7 again below: 10 none of nobody -> x in a\n");
    model->redo();
    expect_told("redo", "23 again a: b by c\n");
}

TEST_F(inherit_told, swapped_bases_are_told_with_the_value_that_wins_now) {
    offer_both();
    link(a, b);
    link(a, c);
    start();
    ASSERT_TRUE(change([&] { return a->set_inherits_from_position(c, 0); }));
    EXPECT_EQ(message_types(), "1 22 2");
    expect_told("first", "22 first a: c 1 to 0\n"
                         "7 first a: 10 x of b -> y in a\n"
                         "7 first below: 10 x of b -> y in a\n");
    EXPECT_EQ(hook_log(), "37 a c 0\n7 a c 10 'y'\n7 below c 10 'y'\n"
                          "38 a c 0 1\n8 a c b 10 'y' 'x'\n8 below c b 10 'y' 'x'\n");
    model->undo();
    expect_told("undo", "22 again a: c 0 to 1\n"
                        "7 again a: 10 y of c -> x in a\n"
                        "7 again below: 10 y of c -> x in a\n");
    model->redo();
    expect_told("redo", "22 again a: c 1 to 0\n"
                        "7 again a: 10 x of b -> y in a\n"
                        "7 again below: 10 x of b -> y in a\n");
    ears.take();
    hook_log();
    ASSERT_TRUE(change([&] { return a->set_inherits_from_position(c, 1); }));
    EXPECT_EQ(hook_log(), "37 a c 1\n7 a b 10 'x'\n7 below b 10 'x'\n"
                          "38 a c 1 0\n8 a b c 10 'x' 'y'\n8 below b c 10 'x' 'y'\n")
        << "the giver goes back: the one behind it is asked about";
}

TEST_F(inherit_told, keeps_asking_hooks_when_the_giver_stays_in_front_of_a_move) {
    object* const empty = hooked("empty");
    offer_both();
    link(a, b);
    link(a, empty);
    link(a, c);
    start();
    ASSERT_TRUE(change([&] { return a->set_inherits_from_position(c, 1); }));
    expect_told("first", "22 first a: c 2 to 1\n");
    EXPECT_EQ(hook_log(), "37 a c 1\n7 a c 10 'y'\n7 below c 10 'y'\n38 a c 1 2\n");
}

TEST_F(inherit_told, own_values_marks_and_other_types_keep_a_new_base_out) {
    object* const other = make(types::other, "o");
    give(b, "x");
    give(a, "own");
    ASSERT_TRUE(change([&] { return b->set_property(props::number, number(1)); }));
    ASSERT_TRUE(change([&] { return a->set_property_not_inheritable(props::number, true); }));
    give(b, "stays", props::not_inheritable);
    link(below, other);
    start();
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    expect_told("first", "19 first a: + b\n");
}

TEST_F(inherit_told, values_are_told_in_the_order_of_the_types_properties) {
    ASSERT_TRUE(change([&] {
        return b->set_property(props::real, property<double>{1.5}) &&
               b->set_property(props::number, number(1)) && b->set_property(props::text, text("x"));
    }));
    start();
    hooks.record(false);
    ears.line = [](message* said) {
        const auto* const set = dynamic_cast<const property_set_message*>(said);
        return set ? std::to_string(set->property_type()) : std::string{"+"};
    };
    link(below, b);
    const std::vector<meta_property*> declared =
        model->meta_model()->find_meta_object(types::hooked)->properties();
    std::string expected = "+\n";
    for (const meta_property* each : declared)
        if (each->id() == props::real || each->id() == props::number || each->id() == props::text)
            expected += std::to_string(each->id()) + "\n";
    EXPECT_EQ(ears.take(), expected);
}

TEST_F(inherit_told, an_equal_value_from_another_base_is_no_change) {
    give(b, "same");
    give(c, "same");
    link(a, b);
    start();
    ASSERT_TRUE(change([&] { return a->replace_inherits_from(c, b); }));
    expect_told("first", "23 first a: b by c\n");
    EXPECT_EQ(a->property_source(props::text), c);
}

TEST_F(inherit_told, a_hook_that_is_asked_about_a_value_refuses_the_whole_change) {
    offer_both();
    link(a, b);
    struct row {
        const char* why;
        int kind;
        std::function<bool()> what;
    };
    const auto add_c = [&] { return a->insert_inherits_from(c, 0); };
    const auto cancel_b = [&] { return a->cancel_inherits_from(b); };
    const auto replace = [&] { return a->replace_inherits_from(c, b); };
    for (const row& r :
         {row{"kind hook before an insert", 35, add_c}, row{"kind hook behind an insert", 36, add_c},
          row{"value hook behind an insert", 8, add_c}, row{"value hook before a loss", 15, cancel_b},
          row{"value hook behind a loss", 16, cancel_b}, row{"kind hook before", 31, cancel_b},
          row{"kind hook behind", 32, cancel_b}, row{"value hook before", 7, replace},
          row{"value hook behind", 8, replace}}) {
        SCOPED_TRACE(r.why);
        const std::string before = dump();
        hooks.refuse(r.kind);
        begin();
        EXPECT_FALSE(r.what());
        EXPECT_FALSE(model->in_transaction());
        hooks.clear();
        EXPECT_EQ(dump(), before);
    }
}

TEST_F(inherit_told, a_refusing_observer_ends_the_change_and_leaves_it_standing) {
    give(b, "x");
    start();
    ears.answer = false;
    begin();
    EXPECT_FALSE(a->add_inherits_from(b));
    EXPECT_TRUE(model->in_transaction());
    end();
    EXPECT_EQ(bases_of(a), "b");
    expect_told("refused at once", "19 first a: + b\n");
    model->undo();
    ears.take();

    ears.answer = true;
    ears.meanwhile = [&](message* said) { ears.answer = said->type() != message_type::property_set; };
    hooks.take_log();
    begin();
    EXPECT_FALSE(a->add_inherits_from(b));
    EXPECT_TRUE(model->in_transaction());
    end();
    ears.meanwhile = nullptr;
    ears.answer = true;
    expect_told("refused at the value", "19 first a: + b\n7 first a: 10 none of nobody -> x in a\n");
    EXPECT_EQ(hook_log(), "29 a b\n7 a b 10 'x'\n7 below b 10 'x'\n") << "hooks behind do not run";
    EXPECT_EQ(as_text(a->get_property(props::text)), "x");
}

TEST_F(inherit_told, an_observer_may_roll_back_while_it_hears_of_inherited_values) {
    give(b, "x");
    give(b, "more", props::definition);
    start();
    const std::string before = dump();
    ears.meanwhile = [&](message* said) {
        if (said->type() == message_type::property_set && model->in_transaction())
            model->rollback_transaction_all();
    };
    begin();
    b->set_property(props::text, text("newer"));
    a->add_inherits_from(b);
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(dump(), before);
}

TEST_F(inherit_told, a_hook_may_take_the_value_away_that_it_is_asked_about) {
    give(b, "x");
    forget();
    hooks.on<pre_prop_set_semantic>([&](hook_call& call) {
        if (call.at != a) return true;
        hooks.clear();
        return b->delete_property(props::text);
    });
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    EXPECT_FALSE(a->has_property(props::text));
    model->undo();
    EXPECT_EQ(as_text(b->get_property(props::text)), "x");
}

TEST_F(inherit_told, descriptions_name_both_sides) {
    object* const p = thing("p");
    object* const q = thing("q");
    object* const r = thing("r");
    begin();
    p->add_inherits_from(q);
    p->insert_inherits_from(r, 0);
    p->set_inherits_from_position(r, 1);
    p->cancel_inherits_from(q);
    p->replace_inherits_from(q, r);
    p->set_property_not_inheritable(props::text, true);
    const auto full = [](const object* what) { return "Thing " + object_full_path_name(what); };
    EXPECT_EQ(history(1), "19 Add Inherits - " + full(p) + " from " + full(q) + "\n21 Insert Inherits - " +
                              full(p) + " from " + full(r) + "\n22 Inherits From Order - object: " + full(p) +
                              ": new position 1, old position: 0" + "\n20 Cancel Inherits - " + full(p) +
                              " from " + full(q) + "\n23 Replace Inherits - " + full(p) +
                              " from: " + full(r) + " with " + full(q) + "\n13 Set " + full(p) +
                              " Text not inheritable.\n");
    end();
}

} // namespace kelm::test
