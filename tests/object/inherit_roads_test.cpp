// How values and changes of bases travel: along chains, through diamonds, past own values and marks, across types.
// What a single change of a list does is inherit_preview_test.
#include "tests/object/inherit_lines.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace kelm::test {

namespace {

class inherit_roads : public inherit_world {
protected:
    /// Makes a change; expects what is told at once, in undo and in redo, and which hooks are asked meanwhile.
    void expect_told(const std::function<bool()>& what, const std::string& asked, const std::string& first,
                     const std::string& undone, const std::string& redone) {
        forget();
        hooks.record(true);
        ASSERT_TRUE(change(what));
        EXPECT_EQ(hook_log(), asked);
        EXPECT_EQ(ears.take(), first);
        for (int round = 0; round != 2; ++round) {
            model->undo();
            EXPECT_EQ(ears.take(), undone) << "undo";
            model->redo();
            EXPECT_EQ(ears.take(), redone) << "redo";
        }
        EXPECT_EQ(hook_log(), "");
        hooks.record(false);
    }
};

/// `low` inherits from `middle`, and that from `a`.
class inherit_chain : public inherit_roads {
protected:
    inherit_chain() {
        give(b, "x");
        link(middle, a);
        link(low, middle);
        listen({a, middle, low});
    }

    object *const a = hooked("a"), *const b = hooked("b");
    object *const middle = hooked("middle"), *const low = hooked("low");
};

/// `bottom` inherits from two sides, and both from `a`.  The side with the lower address is told first.
class inherit_diamond : public inherit_roads {
protected:
    inherit_diamond() {
        give(b, "x");
        if (std::less<>{}(two, one)) std::swap(one, two);
        for (object* side : {one, two}) {
            link(side, a);
            link(bottom, side);
        }
        listen({a, one, two, bottom});
    }
    /// \returns a line for each who hears it, in order; "%" stands for the name
    std::string down(const std::string& line) const {
        std::string out;
        for (const object* each : {a, one, bottom, two, bottom}) {
            std::string copy = line;
            copy.replace(copy.find('%'), 1, object_name(each));
            out += copy + "\n";
        }
        return out;
    }

    object *const a = hooked("a"), *const b = hooked("b"), *const bottom = hooked("bottom");
    object *one = hooked("left"), *two = hooked("right");
};

class inherit_across_types : public inherit_roads {
protected:
    bool set_number(object* of, int value) { return of->set_property(props::number, number(value)); }
};

} // namespace

// Chains

TEST_F(inherit_chain, a_new_base_at_the_top_is_felt_down_to_the_end) {
    expect_told(
        [&] { return a->add_inherits_from(b); },
        "29 a b\n7 a b 10 'x'\n7 middle b 10 'x'\n7 low b 10 'x'\n"
        "30 a b\n8 a b null 10 'x' 'none'\n8 middle b null 10 'x' 'none'\n8 low b null 10 'x' 'none'\n",
        "19 first a: + b\n7 first a: 10 none of nobody -> x in a\n"
        "7 first middle: 10 none of nobody -> x in a\n7 first low: 10 none of nobody -> x in a\n",
        "20 again a: - b\n10 again a: 10 lost x\n10 again middle: 10 lost x\n10 again low: 10 lost x\n",
        "19 again a: + b\n7 again a: 10 none of nobody -> x in a\n"
        "7 again middle: 10 none of nobody -> x in a\n7 again low: 10 none of nobody -> x in a\n");
}

TEST_F(inherit_chain, a_new_base_in_the_middle_is_felt_below_it_alone) {
    expect_told([&] { return middle->insert_inherits_from(b, 0); },
                "35 middle b 0\n7 middle b 10 'x'\n7 low b 10 'x'\n"
                "36 middle b 0\n8 middle b null 10 'x' 'none'\n8 low b null 10 'x' 'none'\n",
                "21 first middle: + b at 0\n7 first middle: 10 none of nobody -> x in middle\n"
                "7 first low: 10 none of nobody -> x in middle\n",
                "20 again middle: - b\n10 again middle: 10 lost x\n10 again low: 10 lost x\n",
                "21 again middle: + b at 0\n7 again middle: 10 none of nobody -> x in middle\n"
                "7 again low: 10 none of nobody -> x in middle\n");
}

TEST_F(inherit_chain, an_own_value_on_the_way_keeps_a_new_base_from_all_below) {
    give(middle, "own");
    expect_told([&] { return a->add_inherits_from(b); },
                "29 a b\n7 a b 10 'x'\n30 a b\n8 a b null 10 'x' 'none'\n",
                "19 first a: + b\n7 first a: 10 none of nobody -> x in a\n",
                "20 again a: - b\n10 again a: 10 lost x\n",
                "19 again a: + b\n7 again a: 10 none of nobody -> x in a\n");
    EXPECT_EQ(as_text(low->get_property(props::text)), "own");
}

TEST_F(inherit_chain, a_mark_on_the_way_keeps_a_new_base_from_all_below) {
    ASSERT_TRUE(change([&] { return middle->set_property_not_inheritable(props::text, true); }));
    expect_told([&] { return a->add_inherits_from(b); },
                "29 a b\n7 a b 10 'x'\n30 a b\n8 a b null 10 'x' 'none'\n",
                "19 first a: + b\n7 first a: 10 none of nobody -> x in a\n",
                "20 again a: - b\n10 again a: 10 lost x\n",
                "19 again a: + b\n7 again a: 10 none of nobody -> x in a\n");
    EXPECT_FALSE(low->has_property(props::text));
}

TEST_F(inherit_chain, a_mark_refuses_what_comes_and_not_what_the_object_has_itself) {
    link(a, b);
    give(middle, "own");
    ASSERT_TRUE(change([&] { return middle->set_property_not_inheritable(props::text, true); }));
    EXPECT_EQ(as_text(low->get_property(props::text)), "own");
    EXPECT_EQ(low->property_source(props::text), middle);
    ears.take();
    give(middle, "other");
    EXPECT_EQ(ears.take(), "7 first middle: 10 own of middle -> other in middle\n"
                           "7 first low: 10 own of middle -> other in middle\n");
}

TEST_F(inherit_chain, no_change_of_a_value_passes_one_who_has_its_own) {
    ASSERT_TRUE(change([&] {
        for (object* each : {a, middle})
            if (!each->append_vector_element(props::list, number(1)) ||
                !each->append_vector_element(props::list, number(2)))
                return false;
        return a->set_property(props::text, text("of a")) && middle->set_property(props::text, text("own"));
    }));
    ears.line = [](message* said) { return std::to_string(said->type()) + " " + short_name(said->object()); };
    struct row {
        const char* why;
        std::function<bool()> what;
        const char* asked;
        const char* told;
        const char* undone;
    };
    for (const row& r : {
             row{"set", [&] { return a->set_property(props::text, text("new")); },
                 "7 a a 10 'new'\n8 a a a 10 'new' 'of a'\n", "7 a\n", "7 a\n"},
             row{"insert", [&] { return a->insert_vector_element(props::list, number(7), 0); },
                 "11 a a 14 0 '7'\n12 a a 14 0 '7'\n", "9 a\n", "11 a\n"},
             row{"set element", [&] { return a->set_vector_element(props::list, number(8), 0); },
                 "9 a a 14 0 '8'\n10 a a 14 0 '8' '7'\n", "8 a\n", "8 a\n"},
             row{"move", [&] { return a->move_vector_element(props::list, 0, 1); },
                 "13 a a 14 0 1\n14 a a 14 0 1\n", "12 a\n", "12 a\n"},
             row{"delete element", [&] { return a->delete_vector_element(props::list, 0); },
                 "17 a a 14 0\n18 a a 14 0 '1'\n", "11 a\n", "9 a\n"},
             row{"delete", [&] { return a->delete_property(props::text); }, "15 a a 10\n16 a a 10 'new'\n",
                 "10 a\n", "7 a\n"},
             row{"mark", [&] { return a->set_property_not_inheritable(props::text, true); },
                 "19 a a 10 1\n20 a a 10 1 'none'\n", "13 a\n", "13 a\n"},
         }) {
        SCOPED_TRACE(r.why);
        expect_told(r.what, r.asked, r.told, r.undone, r.told);
    }
}

TEST_F(inherit_chain, a_deleted_own_value_is_told_below_as_a_deletion_though_another_value_comes_through) {
    link(a, b);
    give(middle, "own");
    expect_told([&] { return middle->delete_property(props::text); },
                "15 middle middle 10\n15 low middle 10\n16 middle middle 10 'own'\n16 low middle 10 'own'\n",
                "10 first middle: 10 lost own\n10 first low: 10 lost own\n",
                "7 again middle: 10 none of middle -> own in middle\n"
                "7 again low: 10 none of middle -> own in middle\n",
                "10 again middle: 10 lost own\n10 again low: 10 lost own\n");
    EXPECT_EQ(as_text(low->get_property(props::text)), "x");
}

// Diamonds

TEST_F(inherit_diamond, a_new_base_at_the_top_is_told_on_each_road) {
    expect_told([&] { return a->add_inherits_from(b); },
                "29 a b\n" + down("7 % b 10 'x'") + "30 a b\n" + down("8 % b null 10 'x' 'none'"),
                "19 first a: + b\n" + down("7 first %: 10 none of nobody -> x in a"),
                "20 again a: - b\n" + down("10 again %: 10 lost x"),
                "19 again a: + b\n" + down("7 again %: 10 none of nobody -> x in a"));
}

TEST_F(inherit_diamond, swapped_bases_at_the_top_are_told_on_each_road) {
    object* const c = hooked("c");
    give(c, "y");
    link(a, b);
    link(a, c);
    expect_told([&] { return a->set_inherits_from_position(b, 1); },
                "37 a b 1\n" + down("7 % c 10 'y'") + "38 a b 1 0\n" + down("8 % c b 10 'y' 'x'"),
                "22 first a: b 0 to 1\n" + down("7 first %: 10 x of b -> y in a"),
                "22 again a: b 1 to 0\n" + down("7 again %: 10 y of c -> x in a"),
                "22 again a: b 0 to 1\n" + down("7 again %: 10 x of b -> y in a"));
}

TEST_F(inherit_diamond, one_who_loses_a_road_is_told_of_the_loss_there_though_the_other_road_still_leads) {
    give(a, "of a");
    const std::string side = object_name(one);
    expect_told(
        [&] { return one->cancel_inherits_from(a); },
        "31 " + side + " a\n15 " + side + " a 10\n15 bottom a 10\n32 " + side + " a\n16 " + side +
            " a 10 'of a'\n16 bottom a 10 'of a'\n",
        "20 first " + side + ": - a\n10 first " + side + ": 10 lost of a\n10 first bottom: 10 lost of a\n",
        "19 again " + side + ": + a\n7 again " + side + ": 10 none of nobody -> of a in " + side +
            "\n7 again bottom: 10 none of nobody -> of a in " + side + "\n",
        "20 again " + side + ": - a\n10 again " + side + ": 10 lost of a\n10 again bottom: 10 lost of a\n");
    EXPECT_EQ(as_text(bottom->get_property(props::text)), "of a") << "by the other road";
}

TEST_F(inherit_diamond, a_replaced_side_brings_another_value_though_the_other_road_still_leads) {
    give(a, "of a");
    expect_told(
        [&] { return bottom->replace_inherits_from(b, one); },
        "33 bottom b " + object_name(one) + "\n7 bottom b 10 'x'\n34 bottom b " + object_name(one) +
            "\n8 bottom b a 10 'x' 'of a'\n",
        "23 first bottom: " + object_name(one) + " by b\n7 first bottom: 10 of a of a -> x in bottom\n",
        "23 again bottom: b by " + object_name(one) + "\n7 again bottom: 10 x of b -> of a in bottom\n",
        "23 again bottom: " + object_name(one) + " by b\n7 again bottom: 10 of a of a -> x in bottom\n");
}

TEST_F(inherit_diamond, a_circle_through_either_side_is_refused) {
    for (object* low : {one, two, bottom}) {
        SCOPED_TRACE(object_name(low));
        begin();
        EXPECT_FALSE(a->add_inherits_from(low));
        EXPECT_FALSE(model->in_transaction());
        begin();
        EXPECT_FALSE(a->insert_inherits_from(low, 0));
        EXPECT_FALSE(model->in_transaction());
    }
    EXPECT_EQ(bases_of(a), "");
}

// Types

TEST_F(inherit_across_types, a_new_base_brings_what_both_types_have_and_passes_it_to_types_that_have_it) {
    object *const a = thing("a"), *const special = make(types::special_thing, "special");
    object *const other = make(types::other, "other"), *const below_other = thing("below other");
    object* const base = make(types::special_thing, "base");
    give(base, "x");
    ASSERT_TRUE(change([&] { return set_number(base, 1); }));
    link(special, a);
    link(other, a);
    link(below_other, other);
    listen({a, special, other, below_other});
    forget();
    ears.line = [](message* said) {
        return std::to_string(said->type()) + " " + short_name(said->object()) + " " + details_of(said);
    };
    link(a, base);
    std::vector<std::string> heard;
    std::istringstream in{ears.take()};
    for (std::string line; std::getline(in, line);) heard.push_back(line);
    const auto count = [&](const std::string& line) { return std::ranges::count(heard, line); };
    const std::string text_in_a = " 10 none of nobody -> x in a",
                      number_in_a = " 11 none of nobody -> 1 in a";
    EXPECT_EQ(heard.size(), 7u);
    EXPECT_EQ(heard.front(), "19 a + base");
    for (const char* name : {"a", "special", "other", "below other"})
        EXPECT_EQ(count("7 " + std::string{name} + text_in_a), 1) << name;
    for (const char* name : {"a", "special"})
        EXPECT_EQ(count("7 " + std::string{name} + number_in_a), 1) << name;
    EXPECT_FALSE(below_other->has_property(props::number)) << "what is between does not know it";
}

TEST_F(inherit_across_types, a_base_that_stores_what_its_type_lacks_does_not_give_it) {
    object *const a = thing("a"), *const base = make(types::other, "base"), *const next = thing("next");
    ASSERT_TRUE(change([&] { return set_number(base, 1) && set_number(next, 2); }));
    listen({a});
    link(a, base);
    EXPECT_EQ(ears.take(), "19 first a: + base\n");
    link(a, next);
    EXPECT_EQ(ears.take(), "19 first a: + next\n7 first a: 11 none of nobody -> 2 in a\n");
    ASSERT_TRUE(change([&] { return a->cancel_inherits_from(base); }));
    EXPECT_EQ(ears.take(), "20 first a: - base\n");
}

TEST_F(inherit_across_types, hooks_of_an_inheritor_are_asked_when_its_type_has_the_property) {
    object *const a = hooked("a"), *const b = hooked("b"), *const part_of_it = make(types::hooked_part, "p");
    const u32 only_hooked =
        model->add_user_defined_property(types::hooked, "Colour", data_type::string, "", 0)->id();
    const std::string id = std::to_string(only_hooked);
    link(part_of_it, a);
    give(b, "red", only_hooked);
    give(b, "x");
    listen({a, part_of_it});
    // What the model itself adds to a type comes before what the type has from the application.
    const std::string colour = id + " none of nobody -> red in a\n";
    expect_told([&] { return a->add_inherits_from(b); },
                "29 a b\n7 a b " + id + " 'red'\n7 a b 10 'x'\n7 p b 10 'x'\n30 a b\n8 a b null " + id +
                    " 'red' 'none'\n8 a b null 10 'x' 'none'\n8 p b null 10 'x' 'none'\n",
                "19 first a: + b\n7 first a: " + colour +
                    "7 first a: 10 none of nobody -> x in a\n7 first p: 10 none of nobody -> x in a\n",
                "20 again a: - b\n10 again a: " + id +
                    " lost red\n10 again a: 10 lost x\n10 again p: 10 lost x\n",
                "19 again a: + b\n7 again a: " + colour +
                    "7 again a: 10 none of nobody -> x in a\n7 again p: 10 none of nobody -> x in a\n");
    EXPECT_FALSE(part_of_it->has_property(only_hooked));
    expect_told([&] { return b->set_property(only_hooked, text("blue")); },
                "7 b b " + id + " 'blue'\n7 a b " + id + " 'blue'\n8 b b b " + id +
                    " 'blue' 'red'\n8 a b b " + id + " 'blue' 'red'\n",
                "7 first a: " + id + " red of b -> blue in b\n",
                "7 again a: " + id + " blue of b -> red in b\n",
                "7 again a: " + id + " red of b -> blue in b\n");
}

TEST_F(inherit_across_types, a_default_of_a_user_defined_property_is_read_and_never_told) {
    object *const a = thing("a"), *const b = thing("b");
    meta_property* const colour =
        model->add_user_defined_property(types::thing, "Colour", data_type::string, "", 0);
    colour->set_attribute_value(attribute_id::default_value, text("grey"));
    EXPECT_EQ(as_text(b->get_property(colour->id())), "grey");
    listen({a});
    link(a, b);
    EXPECT_EQ(ears.take(), "19 first a: + b\n");
    EXPECT_EQ(a->property_source(colour->id()), nullptr);
    EXPECT_FALSE(a->inherits_property(colour->id(), true));
    EXPECT_TRUE(a->inherits_property(colour->id(), false)) << "the base answers with its default";
    give(b, "red", colour->id());
    EXPECT_EQ(as_text(a->get_property(colour->id())), "red");
    ears.take();
    colour->set_attribute_value(attribute_id::not_inheritable, flag(true));
    give(b, "blue", colour->id());
    EXPECT_EQ(ears.take(), "") << "the model may forbid it later";
    EXPECT_EQ(as_text(a->get_property(colour->id())), "grey");
}

// Reads with hooks

TEST_F(inherit_chain, a_change_of_the_list_looks_at_what_is_stored_and_asks_no_hook_of_reads) {
    int reads = 0;
    for (const int kind : {pre_prop_get_semantic::kind, post_prop_get_semantic::kind})
        hooks.on(kind, [&](hook_call& call) {
            if (call.numbers[0] == props::text || call.numbers[0] == props::real) ++reads;
            if (call.at == b && call.kind == post_prop_get_semantic::kind && call.numbers[0] == props::real)
                *call.replaceable = new property<double>{1.5};
            return call.at != b || call.numbers[0] != props::text; // b keeps its text to itself
        });
    EXPECT_FALSE(b->has_property(props::text));
    EXPECT_TRUE(b->has_property(props::real));
    reads = 0;
    link(a, b);
    EXPECT_EQ(ears.take(),
              "19 first a: + b\n7 first a: 10 none of nobody -> x in a\n"
              "7 first middle: 10 none of nobody -> x in a\n7 first low: 10 none of nobody -> x in a\n")
        << "the stored text though it reads as absent, and not the supplied number";
    ASSERT_TRUE(change([&] { return a->cancel_inherits_from(b); }));
    EXPECT_EQ(reads, 0);
    model->undo();
    EXPECT_EQ(reads, 0);
    EXPECT_FALSE(a->has_property(props::text));
    EXPECT_EQ(as_text(low->get_property(props::real)), "1.5");
    EXPECT_GT(reads, 0);
}

} // namespace kelm::test
