// Values that are inherited: where a read finds them, who sees a change, and what is refused.
// The list of bases is inherit_list_test; what a change of it tells is inherit_told_test.
#include "tests/object/inherit_lines.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace kelm::test {

using inheritance = inherit_world;

TEST_F(inheritance, a_value_is_read_through_a_base_of_a_base) {
    object *const a = thing("a"), *const b = thing("b"), *const c = thing("c");
    give(c, "x");
    link(b, c);
    link(a, b);
    EXPECT_EQ(as_text(a->get_property(props::text)), "x");
    EXPECT_FALSE(a->defines_property(props::text));
    EXPECT_TRUE(a->has_property(props::text));
    EXPECT_EQ(a->property_source(props::text), c);
    EXPECT_EQ(c->property_source(props::text), c);
    EXPECT_TRUE(a->inherits_property(props::text, true));
    EXPECT_TRUE(a->inherits_property(props::text, false));
    EXPECT_FALSE(c->inherits_property(props::text, true)) << "its own value is not inherited";
    EXPECT_FALSE(a->inherits_property(props::number, true));
    EXPECT_FALSE(a->inherits_property(props::number, false));
    EXPECT_EQ(a->property_source(props::number), nullptr);
}

TEST_F(inheritance, a_question_that_is_not_deep_counts_what_hooks_supply_on_a_base) {
    object *const a = hooked("a"), *const b = hooked("b");
    link(a, b);
    hooks.on<post_prop_get_semantic>([&](hook_call& call) {
        if (call.at == b && call.numbers[0] == props::text)
            *call.replaceable = new property<std::string>("supplied");
        return true;
    });
    EXPECT_TRUE(a->inherits_property(props::text, false));
    EXPECT_FALSE(a->inherits_property(props::text, true)) << "no object stores it";
    EXPECT_EQ(a->property_source(props::text), nullptr);
}

TEST_F(inheritance, an_edit_is_heard_by_the_observers_of_all_who_inherit_it) {
    object *const a = thing("a"), *const b = thing("b"), *const c = thing("c");
    link(b, c);
    link(a, b);
    listen({a, b, c});
    give(c, "x");
    EXPECT_EQ(ears.take(), "7 first c: 10 none of nobody -> x in c\n"
                           "7 first b: 10 none of nobody -> x in c\n"
                           "7 first a: 10 none of nobody -> x in c\n");
    EXPECT_EQ(model->message_at(model->message_count() - 2)->object(), c)
        << "the message is its own object's again";
    model->undo();
    EXPECT_EQ(ears.take(), "10 again c: 10 lost x\n10 again b: 10 lost x\n10 again a: 10 lost x\n");
    model->redo();
    EXPECT_EQ(ears.take(), "7 again c: 10 none of nobody -> x in c\n"
                           "7 again b: 10 none of nobody -> x in c\n"
                           "7 again a: 10 none of nobody -> x in c\n");
}

TEST_F(inheritance, an_own_value_hides_what_comes_from_bases_also_from_inheritors) {
    object *const a = thing("a"), *const b = thing("b"), *const c = thing("c");
    link(b, c);
    link(a, b);
    give(b, "own");
    listen({a, b, c});
    give(c, "x");
    EXPECT_EQ(ears.take(), "7 first c: 10 none of nobody -> x in c\n");
    EXPECT_EQ(as_text(a->get_property(props::text)), "own");
}

TEST_F(inheritance, a_value_set_over_an_inherited_one_remembers_its_source_and_undo_brings_that_back) {
    object *const a = thing("a"), *const b = thing("b");
    give(b, "x");
    link(a, b);
    listen({a});
    give(a, "own");
    EXPECT_EQ(ears.take(), "7 first a: 10 x of b -> own in a\n");
    model->undo();
    EXPECT_EQ(ears.take(), "10 again a: 10 lost own\n");
    EXPECT_FALSE(a->defines_property(props::text));
    EXPECT_EQ(as_text(a->get_property(props::text)), "x");
}

TEST_F(inheritance, a_marked_property_is_absent_here_and_on_inheritors) {
    object *const a = thing("a"), *const b = thing("b"), *const c = thing("c");
    give(c, "x");
    link(b, c);
    link(a, b);
    listen({a, b});
    ASSERT_TRUE(change([&] { return b->set_property_not_inheritable(props::text, true); }));
    EXPECT_EQ(ears.take(), "13 first b: 10 marked\n13 first a: 10 marked\n");
    EXPECT_TRUE(b->is_property_not_inheritable(props::text));
    EXPECT_EQ(b->not_inheritable_properties(), std::vector<u32>{props::text});
    EXPECT_FALSE(b->has_property(props::text));
    EXPECT_FALSE(a->has_property(props::text));
    EXPECT_EQ(a->property_source(props::text), nullptr);
    EXPECT_FALSE(b->inherits_property(props::text, true));
    EXPECT_FALSE(b->inherits_property(props::text, false));

    give(c, "y");
    EXPECT_EQ(ears.take(), "") << "the change stops at the mark";

    model->undo();
    model->undo();
    EXPECT_EQ(ears.take(), "13 again b: 10 unmarked\n13 again a: 10 unmarked\n");
    EXPECT_EQ(as_text(a->get_property(props::text)), "x");
    model->redo();
    EXPECT_EQ(ears.take(), "13 again b: 10 marked\n13 again a: 10 marked\n");
    EXPECT_FALSE(a->has_property(props::text));
}

TEST_F(inheritance, marks_stand_in_the_order_of_setting_and_once_each) {
    object* const a = thing("a");
    EXPECT_TRUE(change([&] {
        return a->set_property_not_inheritable(props::text, true) &&
               a->set_property_not_inheritable(props::flag, true) &&
               a->set_property_not_inheritable(props::text, true);
    }));
    EXPECT_EQ(message_types(), "1 13 13 2") << "the third changes nothing";
    EXPECT_EQ(a->not_inheritable_properties(), (std::vector<u32>{props::text, props::flag}));
    EXPECT_TRUE(change([&] { return a->set_property_not_inheritable(props::text, false); }));
    EXPECT_EQ(a->not_inheritable_properties(), std::vector<u32>{props::flag});
}

TEST_F(inheritance, hooks_of_a_mark_are_told_the_value_that_was_effective) {
    object *const a = hooked("a"), *const b = hooked("b");
    give(b, "x");
    link(a, b);
    forget();
    hooks.record(true);
    ASSERT_TRUE(change([&] { return a->set_property_not_inheritable(props::text, true); }));
    const std::string log = hooks.take_log();
    EXPECT_NE(log.find("19 a a 10 1\n"), std::string::npos) << log;
    EXPECT_NE(log.find("20 a a 10 1 'x'\n"), std::string::npos) << log;
}

TEST_F(inheritance, a_property_whose_type_forbids_it_never_passes) {
    object *const a = thing("a"), *const b = thing("b");
    link(a, b);
    listen({a});
    give(b, "x", props::not_inheritable);
    EXPECT_EQ(ears.take(), "");
    EXPECT_FALSE(a->has_property(props::not_inheritable));
    EXPECT_EQ(a->property_source(props::not_inheritable), nullptr);
}

TEST_F(inheritance, a_base_whose_type_lacks_the_property_is_not_asked) {
    object *const a = thing("a"), *const b = make(types::other, "b"), *const c = thing("c");
    ASSERT_TRUE(change([&] { return b->set_property(props::number, number(1)); }));
    ASSERT_TRUE(change([&] { return c->set_property(props::number, number(2)); }));
    give(b, "x");
    link(a, b);
    link(a, c);
    EXPECT_EQ(as_text(a->get_property(props::number)), "2") << "though the first base stores one";
    EXPECT_EQ(a->property_source(props::number), c);
    EXPECT_EQ(as_text(a->get_property(props::text)), "x") << "what both types have passes";
}

TEST_F(inheritance, an_inheritor_whose_type_lacks_the_property_hears_nothing) {
    object *const a = make(types::other, "a"), *const b = thing("b");
    link(a, b);
    listen({a});
    ASSERT_TRUE(change([&] { return b->set_property(props::number, number(1)); }));
    EXPECT_EQ(ears.take(), "");
    EXPECT_FALSE(a->has_property(props::number));
    give(b, "x");
    EXPECT_EQ(ears.take(), "7 first a: 10 none of nobody -> x in b\n");
}

TEST_F(inheritance, the_first_base_with_a_value_wins_also_through_its_own_bases) {
    object *const a = thing("a"), *const b = thing("b"), *const deep = thing("deep"), *const c = thing("c");
    give(deep, "deep");
    give(c, "flat");
    link(b, deep);
    link(a, b);
    link(a, c);
    EXPECT_EQ(as_text(a->get_property(props::text)), "deep");
    EXPECT_EQ(a->property_source(props::text), deep);
}

TEST_F(inheritance, an_inheritor_on_two_roads_hears_a_change_on_each) {
    object *const a = thing("a"), *const b = thing("b"), *const c = thing("c"), *const d = thing("d");
    link(b, d);
    link(c, d);
    link(a, b);
    link(a, c);
    listen({a});
    give(d, "x");
    EXPECT_EQ(ears.take(),
              "7 first a: 10 none of nobody -> x in d\n7 first a: 10 none of nobody -> x in d\n");
}

TEST_F(inheritance, inheritors_are_told_depth_first_in_the_order_of_their_addresses) {
    object* const base = thing("base");
    std::vector<object*> direct{thing("p"), thing("q"), thing("r")};
    std::string expected = "base";
    for (object* each : direct) link(each, base);
    std::ranges::sort(direct, std::less<>{});
    for (object* each : direct) {
        object* const below = thing("below " + object_name(each));
        link(below, each);
        listen({each, below});
        expected += " " + object_name(each) + " below " + object_name(each);
    }
    listen({base});
    std::string told;
    ears.line = [&](message* said) {
        told += (told.empty() ? "" : " ") + object_name(said->object());
        return std::string{};
    };
    give(base, "x");
    EXPECT_EQ(told, expected);
}

TEST_F(inheritance, keeps_telling_siblings_but_nobody_below_when_an_observer_has_refused) {
    object* const base = thing("base");
    std::vector<object*> direct{thing("p"), thing("q")};
    for (object* each : direct) link(each, base);
    std::ranges::sort(direct, std::less<>{});
    object *const below_first = thing("below first"), *const below_second = thing("below second");
    link(below_first, direct[0]);
    link(below_second, direct[1]);
    listen({direct[0], direct[1], below_first, below_second});
    std::string told;
    ears.line = [&](message* said) {
        told += object_name(said->object()) + ";";
        return std::string{};
    };
    ears.answer = false;
    begin();
    EXPECT_FALSE(base->set_property(props::text, text("x")));
    EXPECT_TRUE(model->in_transaction()) << "an observer's refusal rolls nothing back";
    end();
    EXPECT_EQ(told, object_name(direct[0]) + ";" + object_name(direct[1]) + ";");
    EXPECT_EQ(as_text(base->get_property(props::text)), "x");
}

TEST_F(inheritance, a_message_is_its_own_objects_again_when_an_observer_throws) {
    object *const a = thing("a"), *const b = thing("b");
    link(a, b);
    listen({a});
    forget();
    ears.meanwhile = [](message*) { throw std::runtime_error("no"); };
    begin();
    EXPECT_THROW(b->set_property(props::text, text("x")), std::runtime_error);
    ears.meanwhile = nullptr;
    EXPECT_EQ(last_message()->object(), b);
    end();
}

TEST_F(inheritance, an_observer_may_cut_an_inheritor_off_before_its_turn) {
    object* const base = thing("base");
    std::vector<object*> direct{thing("p"), thing("q")};
    for (object* each : direct) link(each, base);
    std::ranges::sort(direct, std::less<>{});
    listen({direct[0], direct[1]});
    ears.meanwhile = [&](message* said) {
        if (said->type() == message_type::property_set && said->object() == direct[0])
            direct[1]->cancel_inherits_from(base);
    };
    ears.line = [](message* said) {
        return std::to_string(said->type()) + " " + object_name(said->object());
    };
    give(base, "x");
    const std::string teller = object_name(direct[0]), cut_off = object_name(direct[1]);
    EXPECT_EQ(ears.take(), "7 " + teller + "\n20 " + cut_off + "\n10 " + cut_off + "\n")
        << "the second hears that it lost the value, and not that it got it";
}

TEST_F(inheritance, hooks_run_here_and_down_the_inheritors_with_the_origin) {
    object *const a = hooked("a"), *const b = hooked("b");
    link(a, b);
    forget();
    std::string log;
    for (const int kind : {pre_prop_set_semantic::kind, post_prop_set_semantic::kind})
        hooks.on(kind, [&](hook_call& call) {
            log += std::to_string(call.kind) + " " + object_name(call.at) + " origin " +
                   object_name(call.others[0]) + "\n";
            return true;
        });
    give(b, "x");
    EXPECT_EQ(log, "7 b origin b\n7 a origin b\n8 b origin b\n8 a origin b\n");
}

TEST_F(inheritance, a_hook_of_an_inheritor_can_refuse_and_the_level_is_rolled_back) {
    object *const a = hooked("a"), *const b = thing("b");
    link(a, b);
    hooks.refuse<pre_prop_set_semantic>();
    begin();
    EXPECT_FALSE(b->set_property(props::text, text("x")));
    EXPECT_FALSE(model->in_transaction());
    hooks.clear();
    hooks.refuse<post_prop_set_semantic>();
    begin();
    EXPECT_FALSE(b->set_property(props::text, text("x")));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(b->has_property(props::text));
}

TEST_F(inheritance, a_refresh_is_recorded_and_told_and_changes_nothing) {
    object *const a = thing("a"), *const b = thing("b");
    link(a, b);
    forget();
    listen({a, b});
    const std::string before = dump();
    const property<std::string> old_value = text("old"), new_value = text("new");
    ASSERT_TRUE(change([&] { return b->refresh_property(props::text, &new_value, &old_value); }));
    EXPECT_EQ(ears.take(),
              "7 first b: 10 old of nobody -> new in b\n7 first a: 10 old of nobody -> new in b\n");
    EXPECT_EQ(message_types(), "1 7 2");
    EXPECT_NE(history().find("7 Refresh Set Property - Text of Thing "), std::string::npos) << history();
    for (int round = 0; round != 2; ++round) {
        SCOPED_TRACE(round);
        model->undo();
        EXPECT_EQ(ears.take(),
                  "7 again b: 10 new of nobody -> old in b\n7 again a: 10 new of nobody -> old in b\n");
        model->redo();
        EXPECT_EQ(ears.take(),
                  "7 again b: 10 old of nobody -> new in b\n7 again a: 10 old of nobody -> new in b\n");
    }
    EXPECT_EQ(dump(), before);
}

TEST_F(inheritance, a_refresh_without_an_old_or_a_new_value_speaks_of_coming_and_going) {
    object* const a = thing("a");
    listen({a});
    const property<std::string> value = text("x");
    ASSERT_TRUE(change([&] { return a->refresh_property(props::text, &value, nullptr); }));
    EXPECT_EQ(ears.take(), "7 first a: 10 none of nobody -> x in a\n");
    model->undo();
    EXPECT_EQ(ears.take(), "10 again a: 10 lost x\n");
    ASSERT_TRUE(change([&] { return a->refresh_property(props::text, nullptr, &value); }));
    EXPECT_EQ(ears.take(), "10 first a: 10 lost x\n");
    EXPECT_NE(history().find("10 Refresh Delete Property - Text of Thing "), std::string::npos) << history();
    model->undo();
    EXPECT_EQ(ears.take(), "7 again a: 10 none of nobody -> x in a\n");
    model->redo();
    EXPECT_EQ(ears.take(), "10 again a: 10 lost x\n");

    forget();
    EXPECT_TRUE(a->refresh_property(props::text, nullptr, nullptr));
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(inheritance, hooks_of_a_refresh_are_told_of_no_origin) {
    object *const a = hooked("a"), *const b = hooked("b");
    link(a, b);
    forget();
    hooks.record(true);
    const property<std::string> old_value = text("old"), new_value = text("new");
    ASSERT_TRUE(change([&] { return b->refresh_property(props::text, &new_value, &old_value); }));
    EXPECT_EQ(hooks.take_log(), "7 b null 10 'new'\n7 a null 10 'new'\n"
                                "8 b null null 10 'new' 'old'\n8 a null null 10 'new' 'old'\n");
    ASSERT_TRUE(change([&] { return b->refresh_property(props::text, nullptr, &old_value); }));
    EXPECT_EQ(hooks.take_log(), "15 b null 10\n15 a null 10\n16 b null 10 'old'\n16 a null 10 'old'\n");
}

TEST_F(inheritance, stacked_diamonds_are_searched_in_linear_time) {
    constexpr int levels = 60; // as many roads as grains of sand
    object *left = thing("l"), *right = thing("r");
    object* const top = left;
    give(top, "x");
    for (int i = 0; i != levels; ++i) {
        object *const next_left = thing("l"), *const next_right = thing("r");
        for (object* next : {next_left, next_right}) {
            link(next, left);
            link(next, right);
        }
        left = next_left;
        right = next_right;
    }
    EXPECT_EQ(right->property_source(props::text), top);
    EXPECT_FALSE(right->inherits_property(props::number, true));
    EXPECT_EQ(right->property_source(props::number), nullptr);
    EXPECT_TRUE(right->inherits_from(top, true));
    EXPECT_FALSE(right->inherits_from(thing("stranger"), true));
}

TEST_F(inheritance, chains_may_be_as_long_as_a_model_is_big) {
    constexpr std::size_t length = 100000;
    std::vector<object*> chain(length);
    begin();
    for (object*& each : chain) each = fw.create_object(types::thing, root);
    for (std::size_t i = 0; i + 1 != length; ++i) ASSERT_TRUE(chain[i]->add_inherits_from(chain[i + 1]));
    listen({chain.front()});
    ears.line = [](message* said) { return std::to_string(said->type()); };
    ASSERT_TRUE(chain.back()->set_property(props::text, text("x")));
    end();
    EXPECT_EQ(ears.take(), "7\n");
    EXPECT_EQ(chain.front()->property_source(props::text), chain.back());
    EXPECT_TRUE(chain.front()->inherits_property(props::text, true));
    EXPECT_TRUE(chain.front()->inherits_from(chain.back(), true));
    EXPECT_EQ(as_text(chain.front()->get_property(props::text)), "x");
    begin();
    EXPECT_FALSE(chain.back()->add_inherits_from(chain.front())) << "the longest circle of all";
    EXPECT_FALSE(model->in_transaction());
}

} // namespace kelm::test
